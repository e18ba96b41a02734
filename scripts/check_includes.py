#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fails when files of the program include each other in a circle, a header and the source file of its name taken as
one; when folders do; or when a folder includes one that it may not know."""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BELOW = {  # what the files of each part of the program may include beside their own
    "imaging": set(),
    "view": {"imaging"},
    "editor": {"imaging", "view"},
    "app": {"imaging", "view", "editor"},
}
BELOW_FOLDER = {  # the same for folders of which less is allowed: codecs and metadata do not know each other
    "imaging/base": set(),
    "imaging/containers": {"imaging/base"},
    "imaging/codecs": {"imaging/base", "imaging/containers"},
    "imaging/metadata": {"imaging/base", "imaging/containers"},
    "imaging/healing": {"imaging/base"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def included(path):
    return [name for name in INCLUDE.findall((ROOT / path).read_text()) if (ROOT / name).exists()]


def folder(file):
    return str(Path(file).parent)


def circle(graph):
    """A list of nodes that lead to each other, the first one again at the end; none when there is no such circle."""
    done, trail = set(), []

    def visit(node):
        if node in trail:
            return [*trail[trail.index(node):], node]
        if node in done:
            return None
        trail.append(node)
        for other in sorted(graph.get(node, ())):
            if found := visit(other):
                return found
        trail.pop()
        done.add(node)
        return None

    for node in graph:
        if found := visit(node):
            return found
    return None


def joined(graph, name):
    """The graph of what `name` makes of the files: edges within one of them are left out."""
    result = {}
    for file, others in graph.items():
        result.setdefault(name(file), set()).update(name(other) for other in others if name(other) != name(file))
    return result


def is_allowed(file, other):
    part, other_part = file.split("/")[0], other.split("/")[0]
    if other_part != part:
        return other_part in BELOW[part]
    own = folder(file)
    return own not in BELOW_FOLDER or folder(other) in BELOW_FOLDER[own] | {own}


def problems(graph):
    """What is wrong with files that include each other as `graph` says, a line each."""
    wrong = [f"{file} includes {other}, which it may not know"
             for file, others in graph.items() for other in others if not is_allowed(file, other)]
    for name, what in ((lambda file: str(Path(file).with_suffix("")), "files"), (folder, "folders")):
        if found := circle(joined(graph, name)):
            wrong.append(f"a circle of {what}: " + " -> ".join(found))
    return wrong


def main():
    files = [path.relative_to(ROOT) for part in BELOW for path in sorted((ROOT / part).rglob("*"))
             if path.suffix in (".h", ".cpp")]
    wrong = problems({str(path): included(path) for path in files})
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
