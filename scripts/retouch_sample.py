#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Shows Complexion at work where there is no display: retouches the sample portrait in the real window on a virtual
one, and prints the paths of the picture before, the picture after and a screenshot.

With a photo as its argument it opens that one, and prints the path of the screenshot.
"""

import csv
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/end-to-end"))

from window_driver import BUILD, Complexion, VirtualDesktop, check_only_discs_changed  # noqa: E402

OUT = ROOT / "out"
SIZE = (1200, 1500)
RADIUS = 10  # the edit area that the window starts with
LARGEST = 8  # spots that fit well into it


def show(photo):
    with tempfile.TemporaryDirectory() as folder, VirtualDesktop(folder) as desktop, Complexion(desktop) as program:
        program.start(photo)
        desktop.screenshot(OUT / "window.png")
    print(OUT / "window.png")


def retouch_sample():
    before, after, screenshot = OUT / "portrait.png", OUT / "portrait_retouched.png", OUT / "window.png"
    for path in (before, after, screenshot):
        path.unlink(missing_ok=True)
    spots = OUT / "blemishes.csv"
    subprocess.run([BUILD / "tools/sample_portrait", before, spots], check=True)
    with open(spots, newline="") as file:
        blemishes = [tuple(float(row[key]) for key in ("x", "y", "radius")) for row in csv.DictReader(file)]
    with tempfile.TemporaryDirectory() as folder, VirtualDesktop(folder) as desktop, Complexion(desktop) as program:
        program.start(before)
        places = [program.retouch(x, y, *SIZE) for x, y, radius in blemishes if radius <= LARGEST]
        desktop.screenshot(screenshot)
        program.save()
        program.ask_to_close()
        program.answer_to_end("All unsaved changes will be lost. Are you sure you want to exit the application?",
                              "Yes")
    check_only_discs_changed(before, after, places, RADIUS)
    print(before, after, screenshot, sep="\n")


if __name__ == "__main__":
    OUT.mkdir(exist_ok=True)
    if len(sys.argv) > 1:
        show(Path(sys.argv[1]).resolve(strict=True))
    else:
        retouch_sample()
