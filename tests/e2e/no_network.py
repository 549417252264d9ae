"""Starts where there is no network, says so, and finds a TV once there is one."""

import subprocess

from desktop import Desktop, element, elements, wait_for
from television import Television

PROBLEM = "This computer is not connected to a network"


def ip(*arguments):
    subprocess.run(["ip", *arguments], check=True)


def main():
    ip("link", "set", "lo", "multicast", "off")
    ip("link", "add", "cable", "type", "veth", "peer", "name", "socket")
    ip("address", "add", "192.168.77.1/24", "dev", "cable")
    with Desktop() as desktop:
        desktop.start_application()
        element("label", PROBLEM)
        desktop.screenshot()
        ip("link", "set", "cable", "up")
        ip("link", "set", "socket", "up")
        wait_for("the words to go", lambda: elements("label", "No TV Selected") and not elements("label", PROBLEM))
        Television(desktop, "--name", "Living Room")
        element("push button", "Living Room")
    print("connected and found")


main()
