"""Uploads a video and a subtitle that are chosen in the window, attaches a subtitle to the video, drops
another video on the window; compares what the TV has with what was sent."""

import os
import subprocess

from desktop import BIN, element, elements, names, wait_for
from television import journey, pair, same, shows


def make_video(path):
    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc2=s=640x360:d=3",
                    "-c:v", "libx264", "-preset", "ultrafast", path], check=True)


def choose(desktop, accept, *files):
    for name in files:
        desktop.click(element("push button", name))
    desktop.click(element("push button", accept))


def main():
    with journey("--name", "Den", "--no-samples", "--no-usb") as (desktop, tv):
        video = os.path.join(desktop.videos, "My Film.mp4")
        make_video(video)
        for name in ("My Film.srt", "other.srt"):
            with open(os.path.join(desktop.videos, name), "w", encoding="utf-8") as subtitle:
                subtitle.write("1\n00:00:00,000 --> 00:00:01,000\n" + name + "\n")
        pair(desktop)
        desktop.click(element("push button", "Upload to the TV"))
        element("heading", "Upload to the TV")
        desktop.screenshot()
        choose(desktop, "Upload", "My Film.mp4", "My Film.srt")
        wait_for("the uploads", shows("Upload queue finished: 2 uploaded"))
        for name in ("My Film.mp4", "My Film.srt"):
            assert same(os.path.join(desktop.videos, name), tv.path(name))
        assert tv.thumbnail("My Film.mp4").startswith(b"\xff\xd8"), "the TV has no still"
        wait_for("the row", lambda: names("list item") == ["My Film"])

        desktop.click(element("push button", "Subtitle"))
        choose(desktop, "Attach", "other.srt")
        element("heading", "Subtitle name mismatch")
        desktop.click(element("push button", "Attach & Rename"))
        wait_for("the subtitle", shows("Upload queue finished: 1 uploaded"))
        assert same(os.path.join(desktop.videos, "other.srt"),
                    tv.path("My Film (1).srt"))

        dropped = os.path.join(desktop.videos, "Dropped Film.mp4")
        make_video(dropped)
        stored = tv.path("Dropped Film.mp4")
        desktop.drop_files(
            element("list", "Library"), dropped,
            held=lambda: wait_for("the overlay", shows("Drop video files to upload")),
            taken=lambda: wait_for("the dropped film", lambda: os.path.exists(stored)))
        assert same(dropped, stored)
        assert not elements("label", "Drop video files to upload"), "the overlay stays"

        opened = os.path.join(desktop.videos, "Opened Film.mp4")
        make_video(opened)
        second = desktop.start(os.path.join(BIN, "quiv-controller"), opened)
        assert second.wait(20) == 0, "the second start did not hand over"
        wait_for("the opened film", lambda: os.path.exists(tv.path("Opened Film.mp4")))
    print("uploaded, attached, dropped, opened")


main()
