"""Plays a video of the TV's on this computer, in the window and on the full screen; hands it over to the TV
and back at its position; meets a video that nobody can decode."""

import os
import subprocess

from control_playback import row_button
from desktop import element, elements, wait_for
from television import journey, pair, shows


def position():
    """Seconds that the panel's timeline shows."""
    sliders = elements("slider", "Position here")
    minutes, _, seconds = sliders[0].get_description().partition(":") if sliders else ("0", "", "0")
    return 60 * int(minutes) + int(seconds)


def windows(desktop):
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "."], env=desktop.environment,
                           capture_output=True, text=True, check=False).stdout.split()
    return [subprocess.run(["xdotool", "getwindowname", each], env=desktop.environment, capture_output=True,
                           text=True, check=True).stdout for each in found]


def play(desktop, tv):
    desktop.click(row_button("Harbour Tour", "Play or pause"))
    wait_for("the message", shows("Streaming on this Mac: Harbour Tour"))
    desktop.press_key("Tab")  # into the controls, which stay while the keyboard is there
    wait_for("the picture to go on", lambda: position() >= 4, 60)
    assert tv.requests("GET", "api/files/stream")[-1]["authToken"]
    titles = windows(desktop)
    assert titles and not [each for each in titles if "Token" in each or "api/" in each], titles
    desktop.screenshot()
    desktop.press_key("f")
    wait_for("the full screen", lambda: not elements("push button", "Close"))
    desktop.press_key("space")
    desktop.press_key("Escape")
    element("push button", "Close")
    desktop.drag(element("slider", "Position here"), 0.02, 0.5)
    wait_for("the seek", lambda: 330 < position() < 400, 60)
    volume = element("slider", "Volume")
    volume.set_current_value(0.3)
    wait_for("the volume", lambda: abs(volume.get_current_value() - 0.3) < 0.01)


def hand_over(desktop, tv):
    desktop.click(element("push button", "Play on TV"))
    wait_for("the message", shows("Playing on TV: Harbour Tour"))
    assert not elements("push button", "Close"), "the panel stays"
    commands = tv.requests("POST", "api/playback")
    assert [each["command"] for each in commands] == ["play", "seek_to"], commands
    assert 330_000 < int(commands[-1]["positionMs"]) < 400_000, commands
    desktop.click(element("push button", "Play Here"))
    wait_for("the picture where the TV was", lambda: position() > 330, 60)
    assert tv.playback().get("currentVideoName") is None, tv.playback()
    wait_for("the dock to go", lambda: not elements("push button", "Play Here"))
    desktop.click(element("push button", "Close"))
    wait_for("the panel to go", lambda: not elements("slider", "Position here"))


def meet_the_undecodable(desktop):
    desktop.click(element("text", "Search files on this TV"))
    desktop.type("broken")
    desktop.click(row_button("Broken Download", "Play or pause"))
    wait_for("the failure", lambda: [each for each in elements("label") if each.get_name().startswith(
        "macOS could not decode this stream (") and each.get_name().endswith("). Open in VLC or use Play on TV.")])
    element("label", "Install VLC to play this format on Mac.")
    desktop.click(element("push button", "Close"))


def main():
    with journey("--name", "Living Room") as (desktop, tv):
        pair(desktop)
        play(desktop, tv)
        hand_over(desktop, tv)
        meet_the_undecodable(desktop)
        for process in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{process}/cmdline", "rb") as line:
                    assert b"authToken" not in line.read(), "credentials among the processes"
            except FileNotFoundError:
                continue
        desktop.click(element("push button", "Clear search"))
        desktop.click(row_button("Harbour Tour", "Play or pause"))  # and quits while it plays
        wait_for("the picture", lambda: position() >= 1)
    print("played here, handed over and back")


if __name__ == "__main__":
    main()
