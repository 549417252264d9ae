"""Does all that a person does with a TV by keyboard alone: selects and pairs it, searches, plays, pauses,
seeks, opens menus, moves, downloads, uploads and deletes."""

import os
import shutil

from desktop import element, elements, focused, names, wait_for
from television import journey, same, shows


def tab_to(desktop, name):
    """Presses Tab until what has this name has the focus."""
    for _ in range(60):
        if focused() == name:
            return
        before = focused()
        desktop.press_key("Tab")
        wait_for("the focus to move", lambda: focused() not in (None, before), 5)
    raise AssertionError(f"Tab does not lead to '{name}', but to '{focused()}'")


def pair(desktop, tv):
    wait_for("the sheet", lambda: focused() == "3-digit code")
    desktop.type(tv.CODE)
    tab_to(desktop, "Verify code")
    desktop.press_key("Return")
    wait_for("the pairing", shows("Quiv Controller paired successfully."))
    wait_for("the sheet to go", lambda: focused() != "Verify code" and not elements("dialog"))
    tab_to(desktop, "Living Room")
    desktop.press_key("Return")
    wait_for("the rows", lambda: "Harbour Tour" in names("list item"))


def play(desktop, tv):
    desktop.press_key("ctrl+f")
    wait_for("the search", lambda: focused() == "Search files on this TV")
    desktop.type("harbour")
    wait_for("one row", lambda: names("list item") == ["Harbour Tour"])
    desktop.press_key("Down")
    wait_for("the row", lambda: focused() == "Harbour Tour")
    desktop.press_key("Return")
    element("push button", "Play on TV")
    tab_to(desktop, "Play on TV")
    desktop.press_key("Return")
    wait_for("the dock", shows("Playing on TV"))
    for is_playing in (False, True):
        desktop.press_key("space")
        wait_for("the TV to obey", lambda: tv.playback()["isPlaying"] == is_playing)
    tab_to(desktop, "Position")
    before = tv.playback()["positionMs"]
    desktop.press_key("Right")
    wait_for("the seek", lambda: tv.playback()["positionMs"] >= before + 10_000)
    tab_to(desktop, "Speed")
    desktop.press_key("Return")
    element("menu item", "1.5x")
    desktop.press_key("Down")
    desktop.press_key("Return")
    wait_for("the speed", lambda: tv.playback()["playbackSpeed"] > 1)


def go_to(desktop, title):
    """Leaves the search for the list and types the beginning of a title."""
    desktop.press_key("slash")
    wait_for("the search", lambda: focused() == "Search files on this TV")
    desktop.press_key("Escape")
    wait_for("the list", lambda: focused() in names("list item"))
    desktop.type(title.lower())
    wait_for(title, lambda: focused() == title)


def choose(desktop, title, entry):
    """By the menu of a row."""
    desktop.press_key("Menu")
    element("menu item", entry)
    for _ in range(names("menu item").index(entry)):
        desktop.press_key("Down")
    desktop.press_key("Return")
    wait_for("the menu to go", lambda: not elements("menu item"))


def move_and_download(desktop, tv):
    go_to(desktop, "Colours")
    choose(desktop, "Colours", "Move to USB")
    wait_for("the file on the drive", lambda: tv.has("USB folder", "Colours.webm"))
    go_to(desktop, "Colours")
    choose(desktop, "Colours", "Download Colours.srt")
    element("heading", "Download from TV")
    desktop.press_key("Return")
    place = os.path.join(os.environ["HOME"], "Colours.srt")  # there is no folder for downloads
    wait_for("the download", lambda: os.path.exists(place))
    assert same(place, tv.path("Colours.srt"))
    shutil.copy(place, desktop.videos)  # where uploads begin


def upload(desktop, tv):
    desktop.press_key("ctrl+o")
    element("heading", "Upload to the TV")
    tab_to(desktop, "Colours.srt")
    desktop.press_key("space")
    desktop.press_key("Return")
    wait_for("the upload", lambda: tv.requests("PUT", "api/files/upload"))


def delete(desktop, tv):
    go_to(desktop, "Colours")
    desktop.press_key("Delete")
    element("heading", "Delete media from TV?")
    wait_for("the question", lambda: focused() == "Cancel")
    tab_to(desktop, "Delete")
    desktop.press_key("Return")
    wait_for("the deletion", shows("Deleted Colours"))
    assert not tv.has("USB folder", "Colours.webm") and not tv.has("Media folder", "Colours.srt")


def main():
    with journey("--name", "Living Room", "--move-seconds", "2") as (desktop, tv):
        pair(desktop, tv)
        play(desktop, tv)
        move_and_download(desktop, tv)
        delete(desktop, tv)
        upload(desktop, tv)
    print("paired, played, moved, downloaded, deleted, uploaded by keyboard")


main()
