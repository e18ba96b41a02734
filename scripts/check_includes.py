#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fails if the includes of files or folders form a cycle (a header and its source file count as one), or if a folder
includes one that it must not depend on."""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BELOW = {  # the other parts that each part of the program may depend on
    "imaging": set(),
    "view": {"imaging"},
    "editor": {"imaging", "view"},
    "app": {"imaging", "view", "editor"},
}
BELOW_FOLDER = {  # stricter rules within a part: codecs and metadata must not depend on each other
    "imaging/base": set(),
    "imaging/containers": {"imaging/base"},
    "imaging/codecs": {"imaging/base", "imaging/containers"},
    "imaging/metadata": {"imaging/base", "imaging/containers"},
    "imaging/healing": {"imaging/base"},
    "imaging/reading": {"imaging/base", "imaging/containers", "imaging/codecs", "imaging/metadata"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def included(path):
    return [name for name in INCLUDE.findall((ROOT / path).read_text()) if (ROOT / name).exists()]


def folder(file):
    return str(Path(file).parent)


def find_cycle(graph):
    """A cycle of the graph, as a list of nodes that ends with the first one again; None if the graph is acyclic."""
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


def grouped(graph, name):
    """The graph of the groups into which `name` maps the files, without edges within a group."""
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
    """The violations in the include graph, as lines of text."""
    wrong = [f"{file} must not include {other}"
             for file, others in graph.items() for other in others if not is_allowed(file, other)]
    for name, what in ((lambda file: str(Path(file).with_suffix("")), "files"), (folder, "folders")):
        if found := find_cycle(grouped(graph, name)):
            wrong.append(f"include cycle of {what}: " + " -> ".join(found))
    return wrong


def main():
    files = [path.relative_to(ROOT) for part in BELOW for path in sorted((ROOT / part).rglob("*"))
             if path.suffix in (".h", ".cpp")]
    wrong = problems({str(path): included(path) for path in files})
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
