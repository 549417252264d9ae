"""Finds a TV, pairs with it by typing its code, reads its library and searches it."""

import os

from desktop import element, elements, names, press, wait_for
from television import journey, pair, shows


def refuse_a_wrong_code(desktop):
    element("push button", "Living Room")
    element("text", "3-digit code")
    verify = element("push button", "Verify code")
    desktop.type("99")
    desktop.type("9")
    press(verify)
    wait_for("the TV's refusal", lambda: any("rong" in each for each in names("label")))
    element("text", "3-digit code")  # the sheet stays
    desktop.press_key("ctrl+a")


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
    desktop.click(element("push button", "Clear search"))
    wait_for("all rows again", lambda: len(names("list item")) > 5)


def main():
    with journey("--name", "Living Room") as (desktop, tv):
        refuse_a_wrong_code(desktop)
        pair(desktop)
        assert not elements("push button", "Enter pairing code"), "the pairing strip stays"
        browse()
        desktop.screenshot()
        search(desktop)
        codes = [each["code"] for each in tv.requests("POST", "api/mac/auth/verify")]
        assert codes == ["999", "123"], codes
    settings = os.path.join(os.environ["XDG_CONFIG_HOME"], "quiv-controller/settings.json")
    assert os.stat(settings).st_mode & 0o077 == 0, "the settings are readable by others"
    print("paired, browsed, searched")


main()
