"""Hands a video over to the TV, drags its timeline, changes speed and tracks, moves a file to the USB drive
and back, deletes a group; looks at the TV's own disk and player."""

from desktop import Announcements, element, elements, names, wait_for
from television import journey, pair, shows


def row_button(title, label):
    """The control of a row: rows and their controls are read out in order."""
    def find():
        found = None
        for each in elements():
            if each.get_role_name() == "list item":
                found = each.get_name() == title
            elif found and each.get_role_name() == "push button" and each.get_name() == label:
                return each
        return None
    return wait_for(f"{label} of {title}", find)


def play(desktop, tv):
    desktop.click(row_button("Harbour Tour", "Play or pause"))
    desktop.click(element("push button", "Play on TV"))
    wait_for("the dock", shows("Playing on TV"))
    assert tv.playback()["currentVideoName"] == "Harbour Tour.mkv"
    desktop.drag(element("slider", "Position"), 0.02, 0.5)
    wait_for("the seek", lambda: 330_000 < tv.playback()["positionMs"] < 400_000)
    element("slider", "Position").set_current_value(0.25)
    wait_for("the place that was set", lambda: 160_000 < tv.playback()["positionMs"] < 230_000)
    commands = [each["command"] for each in tv.requests("POST", "api/playback")]
    assert commands.count("seek_to") >= 2, commands


def choose(desktop, menu, entry):
    element("push button", menu)
    desktop.click(elements("push button", menu)[-1])  # the dock's; rows have a button of that name, too
    desktop.click(element("menu item", entry))


def change(desktop, tv):
    choose(desktop, "Speed", "1.5x")
    wait_for("the speed", lambda: tv.playback()["playbackSpeed"] == 1.5)
    choose(desktop, "Subtitle", "Deutsch")
    wait_for("the subtitles", lambda: tv.playback()["subtitleTracks"][1]["selected"])
    choose(desktop, "Audio", "Deutsch")
    wait_for("the language", lambda: tv.playback()["audioTracks"][1]["selected"])
    choose(desktop, "Subtitle", "Off")
    wait_for("no subtitles", lambda: not any(each["selected"] for each in tv.playback()["subtitleTracks"]))


def move(desktop, tv):
    desktop.click(element("text", "Search files on this TV"))
    desktop.type("card.mp4")
    wait_for("one row", lambda: names("list item") == ["Test Card"])
    desktop.click(row_button("Test Card", "Move to USB"))
    wait_for("the move", lambda: "Moving Test Card.mp4" in names("label"))
    wait_for("its progress", lambda: elements("progress bar", "Move"))
    desktop.screenshot()
    wait_for("the file on the drive", lambda: tv.has("USB folder", "Test Card.mp4"))
    assert not tv.has("Media folder", "Test Card.mp4")
    back = row_button("Test Card", "Move to Internal")
    wait_for("the end of the move", lambda: not elements("progress bar", "Move"))
    desktop.click(back)
    wait_for("the file back", lambda: tv.has("Media folder", "Test Card.mp4"))
    assert not tv.has("USB folder", "Test Card.mp4")


def delete(desktop, tv):
    announcements = Announcements()
    desktop.click(element("push button", "Clear search"))
    wait_for("all rows again", lambda: len(names("list item")) > 5)
    desktop.click(element("text", "Search files on this TV"))
    desktop.type("colours")
    wait_for("one row", lambda: names("list item") == ["Colours"])
    desktop.click(row_button("Colours", "Delete"))
    element("heading", "Delete media from TV?")
    desktop.press_key("Escape")
    wait_for("the prompt to go", lambda: not elements("heading", "Delete media from TV?"))
    assert tv.has("Media folder", "Colours.webm")
    desktop.click(row_button("Colours", "Delete"))
    element("heading", "Delete media from TV?")
    desktop.press_key("Tab")
    desktop.press_key("Return")
    wait_for("the deletion", shows("Deleted Colours"))
    wait_for("its announcement", lambda: "Deleted Colours" in announcements.said())
    assert not tv.has("Media folder", "Colours.webm") and not tv.has("Media folder", "Colours.srt")
    wait_for("the row to go", lambda: "Colours" not in names("list item"))


def main():
    with journey("--name", "Living Room", "--move-seconds", "5") as (desktop, tv):
        pair(desktop)
        play(desktop, tv)
        change(desktop, tv)
        move(desktop, tv)
        delete(desktop, tv)
        desktop.click(element("push button", "Stop"))
        wait_for("the dock to go", lambda: not elements("slider", "Position"))
    print("played, moved, deleted")


if __name__ == "__main__":
    main()
