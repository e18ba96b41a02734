#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Takes the pictures of the README and of software centres from the real window on a virtual display: empty, and while
the sample portrait is being retouched. The README's picture also shows a blemish, the ring with its preview and the
result, enlarged."""

import subprocess
import sys
import tempfile
from pathlib import Path

from PIL import Image

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/end-to-end"))

import sample_portrait  # noqa: E402
from virtual_desktop import VirtualDesktop, wait_until  # noqa: E402
from window_driver import Complexion  # noqa: E402

IMAGES = ROOT / "docs/images"
WINDOW = (1000, 700)  # the largest size for software centres
LARGEST = 6  # radius of the blemishes to retouch; larger ones remain visible in the picture
SHOWN = 6  # index of the blemish that is pointed at
RADIUS = 14  # of the ring there, in pixels of the portrait
WINDOW_ZOOM = 8  # steps
DETAIL_ZOOM = 10  # more steps
GAP = 11  # pixels between the window and the details, and between these
DETAIL = (WINDOW[1] - 2 * GAP) // 3  # width and height
BACKGROUND = (0x26, 0x26, 0x26)  # the window's


class Session:
    """The program in a window of the pictures' size."""

    def __init__(self, program, *files):
        self.program = program
        program.start(*files)
        self.window = program.window()
        subprocess.run(["xdotool", "windowsize", "--sync", self.window, *map(str, WINDOW)], check=True)
        wait_until(lambda: program.screen_area("Photo")[2] == WINDOW[0], "the window's size")

    def _screen(self):
        return self.program.photo_on_screen(with_disc=True)

    def mouse(self, *arguments):
        """Passes a command to xdotool and waits until the picture no longer changes."""
        subprocess.run(["xdotool", *map(str, arguments)], check=True)
        wait_until(lambda: self._screen() == self._screen(), "a stable picture")

    def point_at(self, x, y):
        self.mouse("mousemove", x, y, "mousemove_relative", 1, 0, "mousemove_relative", "--", -1, 0, "sleep", 1)

    def leave_photo(self):
        """Moves the pointer to the menu bar, beside the menus."""
        x, y, width, _ = self.program.screen_area("Photo")
        self.mouse("mousemove", x + width - 1, y - 8, "sleep", 0.5)

    def picture(self):
        """A screenshot of the window."""
        with tempfile.NamedTemporaryFile(suffix=".png") as file:
            subprocess.run(["import", "-window", self.window, file.name], check=True)
            return Image.open(file).convert("RGB")

    def detail(self, x, y):
        """A screenshot of the surroundings of a place on the screen."""
        left, top, _, _ = self.program.screen_area("Photo")
        left, top = x - left - DETAIL // 2, y - top - DETAIL // 2
        return self._screen().crop((left, top, left + DETAIL, top + DETAIL))


def retouch(session, blemishes):
    """Repairs the small blemishes and points at a large one. Returns a picture of the window then, and details: the
    large blemish, the ring with the preview, the result."""
    program = session.program
    program.press("Repair", "combo box")
    wait_until(lambda: len(program.windows()) == 2, "the list of repairs")
    program.keys("End", "Return")
    for spot in blemishes:
        if spot.radius <= LARGEST:
            program.retouch(spot.x, spot.y, *sample_portrait.SIZE)
    place = program.place_on_screen(blemishes[SHOWN].x, blemishes[SHOWN].y, *sample_portrait.SIZE)
    session.point_at(*place)
    session.mouse("click", "--repeat", WINDOW_ZOOM, 4)  # zooms about the pointer
    program.keys(*["bracketright"] * (RADIUS - sample_portrait.RADIUS))
    session.point_at(*place)
    window = session.picture()

    session.mouse("click", "--repeat", DETAIL_ZOOM, 4)
    session.leave_photo()
    details = [session.detail(*place)]
    session.point_at(*place)
    details.append(session.detail(*place))
    session.mouse("click", 1)
    session.leave_photo()
    details.append(session.detail(*place))
    return window, details


def side_by_side(window, details):
    both = Image.new("RGB", (WINDOW[0] + GAP + DETAIL, WINDOW[1]), BACKGROUND)
    both.paste(window, (0, 0))
    for index, detail in enumerate(details):
        both.paste(detail, (WINDOW[0] + GAP, index * (DETAIL + GAP)))
    return both


def save(picture, name, **options):
    path = IMAGES / name
    picture.save(path, optimize=True, **options)
    print(path.relative_to(ROOT))


def main():
    IMAGES.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder, \
            VirtualDesktop(folder, WINDOW[0] + 80, WINDOW[1] + 100) as desktop:
        portrait = Path(folder, "portrait.png")
        blemishes = sample_portrait.paint(portrait)
        with Complexion(desktop) as program:
            session = Session(program)
            session.leave_photo()
            save(session.picture(), "empty-window.png")
        with Complexion(desktop) as program:
            window, details = retouch(Session(program, portrait), blemishes)
            save(window, "window.jpg", quality=90)
            save(side_by_side(window, details), "retouching.jpg", quality=90)


if __name__ == "__main__":
    main()
