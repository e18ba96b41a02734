# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares by exiftool what metadata a saved file has with what its source has."""

import collections
import json
import re
import subprocess
import tempfile

# What may differ between a photo and the file saved from it, and why: the one list. The editor's own rules, of which
# these are what exiftool sees, are told in imaging/metadata/carrying.h. A pattern stands for a whole "Group:Tag".
EXCEPTIONS = [(re.compile(pattern), reason) for pattern, reason in [
    (r"SourceFile|(ExifTool|System|Composite):.*", "speaks of the file, not of the picture"),
    (r"File:(?!Comment).*", "size, byte order and coding of the file"),
]]

SECONDS = 600


def readings(paths):
    """{path: {"Group:Tag": values}}: all that exiftool reads, binary values whole."""
    with tempfile.NamedTemporaryFile("w", suffix=".args") as arguments:
        arguments.write("".join(f"{path}\n" for path in paths))
        arguments.flush()
        text = subprocess.run(["exiftool", "-json", "-G1", "-a", "-b", "-n", "-u", "-charset", "filename=utf8", "-@",
                               arguments.name], capture_output=True, timeout=SECONDS, check=False).stdout
    # Names that come more than once must all be kept, as lists.
    def collected(pairs):
        found = collections.defaultdict(list)
        for name, value in pairs:
            found[name].append(value)
        return dict(found)
    return {reading["SourceFile"][0]: reading for reading in json.loads(text or b"[]", object_pairs_hook=collected)}


def exception_for(name):
    return next((reason for pattern, reason in EXCEPTIONS if pattern.fullmatch(name)), None)


def lost(before, after):
    """The names of values that `before` has and `after` has not, or has otherwise."""
    return [name for name, values in before.items() if not exception_for(name) and after.get(name) != values]
