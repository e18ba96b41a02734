# SPDX-License-Identifier: GPL-3.0-or-later
"""Usage: sensitivity.py REPAIR_SENSITIVITY

Prints a Markdown table of how the natural repair's score changes when each of its constants is scaled."""

import itertools
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

FACTORS = (0.8, 1.25)


def score(program, scaled=""):
    environment = dict(os.environ, COMPLEXION_SCALED=scaled)
    error, texture, pixels = subprocess.run([program], env=environment, capture_output=True, text=True,
                                            check=True).stdout.split()
    return float(error), float(texture), pixels


def cell(base, changed):
    """The changes of both measures, or a dash if no pixel differs."""
    if base[2] == changed[2]:
        return "–"
    return f"{changed[0] - base[0]:+.2f} / {changed[1] - base[1]:+.3f}"


def main():
    program, = sys.argv[1:]
    listed = subprocess.run([program, "--list"], capture_output=True, text=True, check=True).stdout.splitlines()
    constants = sorted({tuple(line.split()) for line in listed})
    base = score(program)
    print(f"Scores with the constants unscaled: visible error {base[0]:.2f} grey levels, texture {base[1]:.3f}.\n")
    jobs = [f"{file}:{name}={factor}" for file, name, _ in constants for factor in FACTORS]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        scores = dict(zip(jobs, pool.map(lambda job: score(program, job), jobs)))
    for file, group in itertools.groupby(constants, key=lambda constant: constant[0]):
        print(f"### {file}\n\n| Constant | Value | × 0.8 | × 1.25 |\n|---|---|---|---|")
        for _, name, value in group:
            cells = (cell(base, scores[f"{file}:{name}={factor}"]) for factor in FACTORS)
            print(f"| {name} | {value} | {' | '.join(cells)} |")
        print()


if __name__ == "__main__":
    main()
