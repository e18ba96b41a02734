#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Reports on the measurements of ./bench, the JSON file that it writes.

Usage: speed_report.py compare OLD.json NEW.json     print the rows that became worse
       speed_report.py readme NEW.json README.md     update the goals and values in the speed table
"""

import json
import math
import re
import sys
from pathlib import Path

# Measurements without quartiles are taken to vary by this share.
ASSUMED_SPREAD = 0.1
# Smaller changes are not reported even if they exceed the noise.
MIN_CHANGE = 0.03


def rows(path):
    """The counters of each row, by its name as printed: "subject/megapixels", or the subject alone."""
    runs = json.loads(Path(path).read_text(encoding="utf-8"))["benchmarks"]
    return {run["name"].split("/iterations:")[0]: run for run in runs if "value" in run}


def quartiles(row):
    value = row["value"]
    return (row.get("value_low", value * (1 - ASSUMED_SPREAD)),
            row.get("value_high", value * (1 + ASSUMED_SPREAD)))


def is_worse(old, new):
    """Whether the ranges between the quartiles do not overlap, on the bad side."""
    (old_low, old_high), (new_low, new_high) = quartiles(old), quartiles(new)
    if new["goal_is_minimum"]:
        return new_high < old_low and new["value"] < old["value"] * (1 - MIN_CHANGE)
    return new_low > old_high and new["value"] > old["value"] * (1 + MIN_CHANGE)


def compare(old_path, new_path):
    old, new = rows(old_path), rows(new_path)
    common = [name for name in new if name in old]
    worse = [name for name in common if is_worse(old[name], new[name])]
    for name in worse:
        before, after = old[name]["value"], new[name]["value"]
        print(f"{name:26} {before:10.4g} {after:10.4g} {after / before - 1:+8.0%}")
    print(f"{len(worse)} of {len(common)} rows became worse")
    return 1 if worse else 0


def shown(value):
    return f"{value:.0f}" if value >= 10 else f"{value:.2f}"


def readme(json_path, readme_path):
    measured = rows(json_path)
    missing = []

    def updated(match):
        name, meaning = match["name"], match["meaning"]
        if name not in measured:
            missing.append(name)
            return match[0]
        row = measured[name]
        sign = "≥" if row["goal_is_minimum"] else "≤"
        goal = "–" if math.isinf(row["goal"]) else f"{sign} {row['goal']:g}"
        return f"| `{name}` | {meaning} | {goal} | {shown(row['value'])} |"

    path = Path(readme_path)
    text = path.read_text(encoding="utf-8")
    row = r"^\| `(?P<name>[^`]+)` \| (?P<meaning>[^|]+) \| (?:[≤≥] [^|]+|–) \| [^|]+ \|$"
    path.write_text(re.sub(row, updated, text, flags=re.MULTILINE), encoding="utf-8")
    for name in missing:
        print(f"{name} has not been measured; its line stays as it is.", file=sys.stderr)
    return 0


COMMANDS = {"compare": compare, "readme": readme}

if __name__ == "__main__":
    if len(sys.argv) != 4 or sys.argv[1] not in COMMANDS:
        sys.exit(__doc__)
    sys.exit(COMMANDS[sys.argv[1]](sys.argv[2], sys.argv[3]))
