"""Sees the pictures of the library; downloads a subtitle to where the desktop's own dialog says, and a
video through the window's dialog; cancels one under way."""

import json
import os
import subprocess
import urllib.request

from desktop import element, elements, names, wait_for
from television import journey, pair, same, shows

VIDEO = "Colours.webm"
SUBTITLE = "Colours.srt"


def fault(tv, **parameters):
    request = urllib.request.Request(tv.told["Control"] + "/faults", json.dumps(parameters).encode())
    urllib.request.urlopen(request).close()


def choose(desktop, file):
    desktop.click(element("push button", "Download"))
    desktop.click(element("menu item", file))


def by_the_desktop(desktop, tv):
    place = os.path.join(desktop.videos, "kept here.srt")
    portal = desktop.start("/usr/bin/python3", os.path.join(os.path.dirname(__file__), "portal.py"), place,
                           stdout=subprocess.PIPE, text=True)
    assert portal.stdout.readline().strip() == "Ready"
    choose(desktop, SUBTITLE)
    wait_for("the download", shows(f"Downloaded {SUBTITLE}"))
    assert portal.stdout.readline().strip() == f"Download from TV|{SUBTITLE}"
    assert same(place, tv.path(SUBTITLE))
    desktop.stop(portal)


def by_the_window(desktop, tv):
    place = os.path.join(desktop.videos, VIDEO)
    with open(place, "w", encoding="utf-8") as before:
        before.write("before")
    fault(tv, path="api/files/download", kind="trickle", bytesPerSecond=4_000, times=1)
    choose(desktop, VIDEO)
    element("heading", "Download from TV")
    desktop.press_key("Return")
    desktop.press_key("Return")  # it is there already: replace it
    wait_for("progress", lambda: any("..." in each and f"Downloading {VIDEO}" in each and "... 0%" not in each
                                     for each in names("label")))
    desktop.screenshot()
    desktop.click(element("push button", "Cancel download"))
    wait_for("the end", shows("Download canceled"))
    with open(place, encoding="utf-8") as after:
        assert after.read() == "before"
    assert os.listdir(desktop.videos).count(VIDEO) == 1
    assert not [each for each in os.listdir(desktop.videos) if each.startswith(".")]

    choose(desktop, VIDEO)
    element("heading", "Download from TV")
    desktop.press_key("Return")
    desktop.click(element("push button", "Replace"))
    wait_for("the download", shows(f"Downloaded {VIDEO}"))
    assert same(place, tv.path(VIDEO))


def main():
    with journey("--name", "Living Room") as (desktop, tv):
        pair(desktop)
        wait_for("pictures", lambda: tv.statuses("GET", "api/thumbnail").count(200) >= 5)
        desktop.click(element("text", "Search files on this TV"))
        desktop.type("colours")
        wait_for("one row", lambda: names("list item") == ["Colours"])
        by_the_desktop(desktop, tv)
        by_the_window(desktop, tv)
        assert not elements("push button", "Cancel download")
    print("seen, downloaded, cancelled")


main()
