#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fails if a document refers to a file that does not exist, or if the tutorial's pages have different steps."""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
LINK = re.compile(r"\]\(([^)#:]+)\)")  # to a file of the repository
COMMAND = re.compile(r"^    (\.\S+)", re.MULTILINE)
FILE = re.compile(r"`((?:app|editor|view|imaging|tests|tools|benchmarks|packaging|docs|scripts)/[\w./-]*)`")
STEP = re.compile(r'<li id="(\w+)" data-second="(\d+)">')


def wrong_in(document):
    text = document.read_text()
    for name in LINK.findall(text):
        if not (document.parent / name).exists():
            yield f"{document.relative_to(ROOT)}: no such file: {name}"
    for name in COMMAND.findall(text) + FILE.findall(text):
        if not (ROOT / name).exists():
            yield f"{document.relative_to(ROOT)}: no such command or file: {name}"


def wrong_in_tutorial():
    steps = {page.name: STEP.findall(page.read_text()) for page in (ROOT / "docs/tutorial").glob("index*.html")}
    if len(steps) < 2 or any(not page or page != steps["index.html"] for page in steps.values()):
        yield "docs/tutorial: the pages do not have the same steps at the same seconds"


def main():
    documents = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"], cwd=ROOT,
                               check=True, capture_output=True, text=True).stdout.split()
    wrong = [line for name in documents for line in wrong_in(ROOT / name)] + [*wrong_in_tutorial()]
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
