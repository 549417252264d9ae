"""C++ sources as the checks read them."""

import os
import re

SPOKEN = re.compile(
    r'//(?:\\\n|[^\n])*'  # a comment
    r'|/\*.*?\*/'
    r'|(?:u8|u|U|L)?R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9A-Za-z_])(?:u8|u|U|L)?'(?:\\.|[^'\\\n])+'",
    re.DOTALL)


def sources(root):
    for folder, folders, files in os.walk(root):
        folders.sort()
        for name in sorted(files):
            if name.endswith((".h", ".cpp")):
                yield os.path.join(folder, name)


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def without_comments(text):
    """The code with comments blanked out, every other character where it was."""
    return SPOKEN.sub(lambda match: _blank(match.group()) if match.group()[0] == "/" else match.group(), text)


def without_words(text):
    """The code with comments blanked out, and what stands in its literals; every other character stays
    where it was."""
    def emptied(match):
        found = match.group()
        return _blank(found) if found[0] == "/" else '"' + _blank(found[1:-1]) + '"'
    return SPOKEN.sub(emptied, text)


def _blank(text):
    return re.sub(r"[^\n]", " ", text)


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def report(violations):
    """Prints the violations; the exit code of a check."""
    for violation in violations:
        print(violation)
    return 1 if violations else 0
