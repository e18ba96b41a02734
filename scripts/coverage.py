#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the line and branch coverage of each folder, and the files with the most lines that are not covered. Fails if
the line coverage of a core folder is 90 % or less. Reads the counts that a test run left in build/coverage."""

import json
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FOLDERS = ("imaging", "view", "editor", "app")
CORE = ("imaging", "editor")
GOAL = 90  # per cent of the lines
NAMED = 10  # files


def main():
    report = subprocess.run(
        ["gcovr", "--root", ROOT, "--object-directory", ROOT / "build/coverage", "--exclude-throw-branches",
         "--exclude-unreachable-branches", "--gcov-ignore-parse-errors", "--json-summary", "-",
         *(part for folder in FOLDERS for part in ("--filter", f"{ROOT}/{folder}/"))],
        check=True, capture_output=True, text=True).stdout
    files = json.loads(report)["files"]
    sums = defaultdict(lambda: [0, 0, 0, 0])
    for file in files:
        numbers = (file["line_covered"], file["line_total"], file["branch_covered"], file["branch_total"])
        sums[file["filename"].split("/")[0]] = [a + b for a, b in zip(sums[file["filename"].split("/")[0]], numbers)]
    short = []
    print(f"{'folder':10}{'lines':>10}{'branches':>10}")
    for folder in FOLDERS:
        lines, all_lines, branches, all_branches = sums[folder]
        share = 100 * lines / max(all_lines, 1)
        print(f"{folder:10}{share:9.1f}%{100 * branches / max(all_branches, 1):9.1f}%")
        if folder in CORE and share <= GOAL:
            short.append(folder)
    print("Lines not covered:")
    for file in sorted(files, key=lambda file: file["line_covered"] - file["line_total"])[:NAMED]:
        print(f"{file['line_total'] - file['line_covered']:6} in {file['filename']}")
    if short:
        print(f"coverage: only {GOAL} % or less of the lines of {' and '.join(short)}", file=sys.stderr)
    return 1 if short else 0


if __name__ == "__main__":
    sys.exit(main())
