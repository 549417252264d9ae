"""Finds a TV, pairs with it by typing its code, reads its library and searches it."""

import json
import os
import sys
import urllib.request

from desktop import Desktop, element, elements, names, press, wait_for


def shows(text):
    return lambda: elements("label", text)


def pair(desktop):
    element("push button", "Living Room")
    element("text", "3-digit code")
    verify = element("push button", "Verify code")
    desktop.type("99")
    desktop.type("9")
    press(verify)
    wait_for("the TV's refusal", lambda: any("rong" in each for each in names("label")))
    element("text", "3-digit code")  # the sheet stays

    desktop.press_key("ctrl+a")
    desktop.type("123")
    press(element("push button", "Verify code"))
    wait_for("the pairing", shows("Quiv Controller paired successfully."))
    wait_for("the sheet to close", lambda: not elements("text", "3-digit code"))
    assert not elements("push button", "Enter pairing code"), "the pairing strip stays"


def browse():
    rows = wait_for("the library", lambda: names("list item"))
    for title in ("Holiday", "Test Card", "Two Languages 2024"):
        assert title in rows, f"{title} is not among {rows}"


def search(desktop):
    field = element("text", "Search files on this TV")
    desktop.click(field)
    desktop.type("langua")
    wait_for("one row", lambda: names("list item") == ["Two Languages 2024"])
    desktop.type("xyz")
    wait_for("no results", shows("No files match \"languaxyz\""))
    press(element("push button", "Clear search"))
    wait_for("all rows again", lambda: len(names("list item")) > 5)


def codes_seen_by(tv):
    with urllib.request.urlopen(tv["Control"] + "/requests") as reply:
        requests = json.load(reply)["requests"]
    return [each["query"][0]["value"] for each in requests if each["path"] == "api/mac/auth/verify"]


def main():
    with Desktop() as desktop:
        tv = desktop.start_simulator("--name", "Living Room", "--code", "123", "--port", "0")
        application = desktop.start_application()
        pair(desktop)
        browse()
        if len(sys.argv) > 1:
            desktop.screenshot(sys.argv[1])
        search(desktop)
        assert codes_seen_by(tv) == ["999", "123"]
        application.terminate()
        assert application.wait(20) == 0, "the application did not end cleanly"
        settings = os.path.join(desktop.environment["XDG_CONFIG_HOME"], "quiv-controller/settings.json")
        assert os.stat(settings).st_mode & 0o077 == 0, "the settings are readable by others"
    print("paired, browsed, searched")


main()
