"""Which layer of src/ includes which: no header of a layer above, and no concrete adapter from outside.

    includes.py FOLDER   prints file:line of every violation in the folder that holds the layers
"""

import os
import re
import sys

from cpp_text import line_of, read, report, sources, without_comments

BELOW = {
    "platform": set(),
    "confined": set(),
    "pictures": {"confined"},
    "stills": {"confined"},
    "player": {"platform"},
    "net": {"platform"},
    "library": {"platform", "net"},
    "transfer": {"platform", "net", "library"},
    "playback": {"platform", "net", "library"},
    "model": {"platform", "net", "library", "transfer", "playback"},
    "ui": {"platform", "net", "library", "transfer", "playback", "model"},
    "app": {"platform", "net", "library", "transfer", "playback", "model", "ui"},
}
ADAPTER = re.compile(r"platform/(avahi/|http/curl_|.*process_|.*portal_|.*plugin_media|.*dbus_)")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*["<]([^">]+)[">]', re.MULTILINE)


def fault_of(layer, header):
    """What is wrong with a header that a file of this layer includes; None when nothing is."""
    if ".." in header.split("/"):
        return f"{header} is not named from the root"
    folder = header.split("/")[0]
    if "/" not in header or folder not in BELOW:
        return None
    if folder != layer and folder not in BELOW[layer]:
        return f"{layer} must not include {header}"
    if layer not in ("app", "platform") and ADAPTER.match(header):
        return f"{layer} must not include the adapter {header}"
    return None


def violations(root):
    found = []
    for path in sources(root):
        layer = os.path.relpath(path, root).split(os.sep)[0]
        if layer not in BELOW:
            found.append(f"{path}:1: {layer} is no known layer")
            continue
        text = without_comments(read(path))
        for match in INCLUDE.finditer(text):
            fault = fault_of(layer, match.group(1))
            if fault:
                found.append(f"{path}:{line_of(text, match.start(1))}: {fault}")
    return found


if __name__ == "__main__":
    sys.exit(report(violations(sys.argv[1])))
