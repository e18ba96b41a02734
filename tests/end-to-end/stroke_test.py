# SPDX-License-Identifier: GPL-3.0-or-later
"""A scratch is repaired along a stroke of the mouse, and saved."""

import subprocess
import unittest

from PIL import Image, ImageDraw, ImageFilter

from picture_changes import changed_pixels
from portrait_test_case import PortraitTestCase
from sample_portrait import SIZE
from virtual_desktop import wait_until
from window_driver import SAVE_SUCCESS

START, END = (560, 330), (680, 350)  # of the scratch, on the forehead
RADIUS = 10  # the edit area at the start
NATURAL = 1  # index in the list of repairs


def distance_from_scratch(x, y):
    dx, dy = END[0] - START[0], END[1] - START[1]
    share = min(1, max(0, ((x - START[0]) * dx + (y - START[1]) * dy) / (dx * dx + dy * dy)))
    return ((x - START[0] - share * dx) ** 2 + (y - START[1] - share * dy) ** 2) ** 0.5


class StrokeTest(PortraitTestCase):
    def setUp(self):
        super().setUp()
        self.photo = self.photos / "face.png"
        with Image.open(self.painted) as clean:
            scratch = Image.new("L", clean.size, 0)
            ImageDraw.Draw(scratch).line([START, END], fill=200, width=2)
            scratch = scratch.filter(ImageFilter.GaussianBlur(0.7))
            Image.composite(Image.new("RGB", clean.size, (70, 40, 35)), clean.convert("RGB"), scratch).save(self.photo)
        self.program.start(self.photo)
        self.program.choose("Repair", NATURAL)

    def place_on_screen(self, x, y):
        return self.program.place_on_screen(x, y, *SIZE)

    def difference_on_scratch(self, picture):
        """How much the scratch is darker than the clean portrait, at its middle."""
        middle = ((START[0] + END[0]) // 2, (START[1] + END[1]) // 2)
        with Image.open(self.painted) as clean, Image.open(picture) as other:
            return sum(clean.convert("RGB").getpixel(middle)) - sum(other.convert("RGB").getpixel(middle))

    def test_a_scratch_disappears(self):
        x, y = self.place_on_screen(*START)
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "keydown", "shift", "mousedown", "1"], check=True)
        for step in range(1, 13):
            x, y = self.place_on_screen(START[0] + (END[0] - START[0]) * step / 12,
                                        START[1] + (END[1] - START[1]) * step / 12)
            subprocess.run(["xdotool", "mousemove", str(x), str(y), "sleep", "0.02"], check=True)
        subprocess.run(["xdotool", "mouseup", "1", "keyup", "shift"], check=True)
        wait_until(lambda: len(self.program.state_images()) == 2, "the repair")
        self.program.start_saving()
        self.program.confirm(SAVE_SUCCESS)
        saved = self.photos / "face_retouched.png"
        changes = changed_pixels(self.photo, saved)
        self.assertGreater(len(changes), 150)
        for x, y, _ in changes:
            self.assertLessEqual(distance_from_scratch(x, y), RADIUS + 3, f"pixel {x}, {y} has changed")
        self.assertGreater(self.difference_on_scratch(self.photo), 100)
        self.assertLess(self.difference_on_scratch(saved), 40)


if __name__ == "__main__":
    unittest.main(verbosity=2)
