#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fails when the project's headers include each other in a circle, or when a folder includes one that stands above
it: imaging knows nobody, view knows imaging, editor knows both, app knows all."""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BELOW = {  # what each folder's files may include beside their own
    "imaging": set(),
    "view": {"imaging"},
    "editor": {"imaging", "view"},
    "app": {"imaging", "view", "editor"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def included(path):
    return [name for name in INCLUDE.findall((ROOT / path).read_text()) if (ROOT / name).exists()]


def circle(graph):
    """A list of files that include each other, the first one again at the end; none when there is no such circle."""
    done, trail = set(), []

    def visit(file):
        if file in trail:
            return [*trail[trail.index(file):], file]
        if file in done:
            return None
        trail.append(file)
        for other in graph.get(file, ()):
            if found := visit(other):
                return found
        trail.pop()
        done.add(file)
        return None

    for file in graph:
        if found := visit(file):
            return found
    return None


def main():
    files = [path.relative_to(ROOT) for folder in BELOW for path in sorted((ROOT / folder).rglob("*"))
             if path.suffix in (".h", ".cpp")]
    graph = {str(path): included(path) for path in files}
    wrong = [f"{file} includes {other}, which stands above it or beside"
             for file, others in graph.items() for other in others
             if (to := other.split("/")[0]) != (own := file.split("/")[0]) and to not in BELOW[own]]
    if found := circle(graph):
        wrong.append("a circle: " + " -> ".join(found))
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
