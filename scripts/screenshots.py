#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Takes the README's screenshots of the real window on a virtual display: empty, and while the sample portrait is being
retouched."""

import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/end-to-end"))

import sample_portrait  # noqa: E402
from virtual_desktop import VirtualDesktop, wait_until  # noqa: E402
from window_driver import Complexion  # noqa: E402

IMAGES = ROOT / "docs/images"
WINDOW = (1280, 800)
LARGEST = 6  # radius of the blemishes to retouch; larger ones remain visible in the picture
ZOOM_STEPS = 5
DRAG = (0, 120)  # from the portrait's centre to the face


def arrange(program):
    """Resizes the window and moves the mouse out of it."""
    window = program.window()
    subprocess.run(["xdotool", "windowsize", "--sync", window, *map(str, WINDOW)], check=True)
    wait_until(lambda: program.screen_area("Photo")[2] == WINDOW[0], "the window's size")
    return window


def take(program, window, path):
    """Saves a screenshot of the window once it no longer changes."""
    subprocess.run(["xdotool", "mousemove", "0", "0"], check=True)
    program.wait_for_still_picture()
    subprocess.run(["import", "-window", window, "-strip", "-quality", "90", str(path)], check=True)
    print(path.relative_to(ROOT))


def main():
    IMAGES.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder, \
            VirtualDesktop(folder, WINDOW[0] + 80, WINDOW[1] + 100) as desktop:
        portrait = Path(folder, "portrait.png")
        blemishes = sample_portrait.paint(portrait)
        with Complexion(desktop) as program:
            program.start()
            take(program, arrange(program), IMAGES / "empty-window.png")
        with Complexion(desktop) as program:
            program.start(portrait)
            window = arrange(program)
            for spot in blemishes:
                if spot.radius <= LARGEST:
                    program.retouch(spot.x, spot.y, *sample_portrait.SIZE)
            program.keys(*["ctrl+plus"] * ZOOM_STEPS)
            program.drag_photo(*DRAG)
            take(program, window, IMAGES / "retouching.jpg")


if __name__ == "__main__":
    main()
