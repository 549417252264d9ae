"""The simulated TV as a test sees it from outside: its requests, its player, its disk, its pictures."""

import contextlib
import json
import os
import re
import urllib.parse
import urllib.request

from desktop import Desktop, element, elements, wait_for

CLIENT = {"X-Quiv-Client-Id": "someone else"}


class Television:
    CODE = "123"

    def __init__(self, desktop, *options):
        self.told = desktop.start_simulator("--code", self.CODE, "--port", "0", *options)

    def get(self, path, base="Address"):
        with urllib.request.urlopen(self.told[base] + path) as reply:
            return json.load(reply)

    def statuses(self, method, path):
        """What each such request was answered with, 0 for not at all."""
        return [request["status"] for request in self.get("/requests", "Control")["requests"]
                if (request["method"], request["path"]) == (method, path)]

    def requests(self, method, path):
        """The query of each such request it received, oldest first."""
        return [{item["name"]: item["value"] for item in request["query"]}
                for request in self.get("/requests", "Control")["requests"]
                if (request["method"], request["path"]) == (method, path)]

    def playback(self):
        return self.get("/api/playback")

    def thumbnail(self, name):
        """What any paired client gets to see of a video."""
        verify = urllib.request.Request(
            f"{self.told['Address']}/api/mac/auth/verify?code={self.CODE}", method="POST", headers=CLIENT)
        with urllib.request.urlopen(verify) as reply:
            token = reply.headers["X-Quiv-Auth-Token"]
        fetch = urllib.request.Request(
            f"{self.told['Address']}/api/thumbnail?name={urllib.parse.quote(name)}",
            headers=dict(CLIENT, **{"X-Quiv-Auth-Token": token}))
        with urllib.request.urlopen(fetch) as reply:
            return reply.read()

    def path(self, name, folder="Media folder"):
        return os.path.join(self.told[folder], name)

    def has(self, folder, name):
        return os.path.exists(self.path(name, folder))


def same(one, other):
    with open(one, "rb") as first, open(other, "rb") as second:
        return first.read() == second.read()


def shows(text):
    return lambda: elements("label", text)


def pair(desktop):
    element("text", "3-digit code")
    desktop.type(Television.CODE)
    desktop.click(element("push button", "Verify code"))
    wait_for("the pairing", shows("Quiv Controller paired successfully."))
    wait_for("the sheet to close", lambda: not elements("text", "3-digit code"))


def inherited(process):
    """The files and connections of a process that a program it starts would have too. What libraries wake
    their own threads with (pipes, nameless sockets) is neither."""
    connections = ""
    for kind in "tcp", "tcp6", "udp", "udp6":
        with open(f"/proc/{process}/net/{kind}", encoding="ascii") as table:
            connections += table.read()
    found = []
    for number in os.listdir(f"/proc/{process}/fd"):
        try:
            target = os.readlink(f"/proc/{process}/fd/{number}")
            with open(f"/proc/{process}/fdinfo/{number}", encoding="ascii") as info:
                flags = int(re.search(r"flags:\s*(\d+)", info.read()).group(1), 8)
        except FileNotFoundError:
            continue  # closed meanwhile
        is_connection = target.startswith("socket:") and f" {target[8:-1]} " in connections
        if int(number) > 2 and not flags & os.O_CLOEXEC and (is_connection or target.startswith("/")):
            found.append(target)
    return found


@contextlib.contextmanager
def journey(*options, kind=Desktop):
    """A desktop with a TV and the application, which has to end cleanly."""
    with kind() as desktop:
        tv = Television(desktop, *options)
        application = desktop.start_application()
        yield desktop, tv
        assert not inherited(application.pid), inherited(application.pid)
        application.terminate()
        assert application.wait(20) == 0, "the application did not end cleanly"
