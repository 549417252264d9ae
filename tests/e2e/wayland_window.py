"""The window on Wayland: found by a screen reader, paired by typing and clicking."""

import json
import os
import subprocess

from desktop import Desktop, names, wait_for
from television import journey, pair

# Windows fill the output, so that a place in a window is the same place on the display.
CONFIGURATION = f"""
output X11-1 mode --custom {Desktop.SIZE}
default_border none
"""


class WaylandDesktop(Desktop):
    """A compositor in the virtual display."""

    def _start_display(self):
        super()._start_display()
        runtime = os.environ["XDG_RUNTIME_DIR"]
        configuration = os.path.join(runtime, "sway.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION)
        self.environment.update(
            WLR_BACKENDS="x11", WLR_RENDERER="pixman", QT_QPA_PLATFORM="wayland",
            SWAYSOCK=os.path.join(runtime, "sway.sock"))
        # It refuses to run as root, which a network of one's own makes everybody.
        self.start("unshare", "--user", "--map-user=1000", "--map-group=1000", "sway", "-c", configuration,
                   stderr=subprocess.DEVNULL)
        self.environment["WAYLAND_DISPLAY"] = "wayland-1"
        wait_for("the compositor", lambda: os.path.exists(os.path.join(runtime, "wayland-1"))
                 and self._ask("-t", "get_outputs"))

    def _ask(self, *arguments):
        answer = subprocess.run(["swaymsg", "-r", *arguments], env=self.environment, capture_output=True)
        return json.loads(answer.stdout) if answer.returncode == 0 else None


def main():
    with journey("--name", "Living Room", kind=WaylandDesktop) as (desktop, _tv):
        pair(desktop)
        wait_for("the library", lambda: "Holiday" in names("list item"))
        desktop.screenshot()
    print("paired and browsed on Wayland")


main()
