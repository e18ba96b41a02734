#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Demonstrates Complexion without a display: retouches the sample portrait in the real window on a virtual display, and
prints the paths of the picture before, the picture after and a screenshot.

With a photo as its argument, only opens that photo and prints the path of the screenshot.
"""

import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/end-to-end"))

import sample_portrait  # noqa: E402
from picture_changes import check_only_discs_changed  # noqa: E402
from virtual_desktop import VirtualDesktop  # noqa: E402
from window_driver import EXIT_QUESTION, Complexion  # noqa: E402

OUT = ROOT / "out"
LARGEST = 8  # radius of the blemishes to retouch: they fit well into the default edit area


def show(photo):
    with tempfile.TemporaryDirectory() as folder, VirtualDesktop(folder) as desktop, Complexion(desktop) as program:
        program.start(photo)
        desktop.screenshot(OUT / "window.png")
    print(OUT / "window.png")


def retouch_sample():
    before, after, screenshot = OUT / "portrait.png", OUT / "portrait_retouched.png", OUT / "window.png"
    for path in (before, after, screenshot):
        path.unlink(missing_ok=True)
    blemishes = sample_portrait.paint(before)
    with tempfile.TemporaryDirectory() as folder, VirtualDesktop(folder) as desktop, Complexion(desktop) as program:
        program.start(before)
        places = [program.retouch(spot.x, spot.y, *sample_portrait.SIZE) for spot in blemishes
                  if spot.radius <= LARGEST]
        desktop.screenshot(screenshot)
        program.save()
        program.ask_to_close()
        program.answer_to_end(EXIT_QUESTION, "Yes")
    check_only_discs_changed(before, after, places, sample_portrait.RADIUS)
    print(before, after, screenshot, sep="\n")


if __name__ == "__main__":
    OUT.mkdir(exist_ok=True)
    if len(sys.argv) > 1:
        show(Path(sys.argv[1]).resolve(strict=True))
    else:
        retouch_sample()
