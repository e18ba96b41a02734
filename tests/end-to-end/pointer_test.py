# SPDX-License-Identifier: GPL-3.0-or-later
"""Pointing, zooming, panning and comparing with a real mouse."""

import shutil
import subprocess
import unittest

from PIL import Image, ImageChops

from picture_changes import check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS, SIZE
from virtual_desktop import wait_until
from window_driver import SAVE_SUCCESS

BLEMISH = (690, 690)
ZOOM_STEPS = 15


def largest_difference(one, other):
    return max(high for _, high in ImageChops.difference(one, other).getextrema())


def range_of_grey(picture):
    low, high = picture.convert("L").getextrema()
    return high - low


class PointerTest(PortraitTestCase):
    def setUp(self):
        super().setUp()
        self.photo = self.photos / "face.png"
        shutil.copy(self.painted, self.photo)
        self.program.start(self.photo)
        x, y, width, height = self.program.screen_area("Photo")
        self.scale = min(width / SIZE[0], height / SIZE[1])
        self.origin = x, y
        self.left = (width - SIZE[0] * self.scale) / 2
        self.top = (height - SIZE[1] * self.scale) / 2

    def place_of(self, column, row):
        """The centre of a pixel of the fitted photo, in coordinates of the view."""
        return round(self.left + (column + 0.5) * self.scale), round(self.top + (row + 0.5) * self.scale)

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True)

    def point_at(self, place):
        x, y = place
        self.xdotool("mousemove", self.origin[0] + x - 1, self.origin[1] + y, "sleep", 0.02,
                     "mousemove", self.origin[0] + x, self.origin[1] + y)

    def around(self, place, reach):
        """The screen around a place in the view, including the edit disc."""
        x, y = place
        return self.program.photo_on_screen(with_disc=True).crop((x - reach, y - reach, x + reach, y + reach))

    def zoom_at(self, place):
        self.point_at(place)
        self.xdotool("click", "--repeat", ZOOM_STEPS, "--delay", 5, 4)
        return self.scale * 1.1 ** ZOOM_STEPS

    def test_the_disc_shows_what_the_click_then_does(self):
        place = self.place_of(*BLEMISH)
        bare = self.program.photo_on_screen()
        zoom = self.zoom_at(place)
        inside = int(RADIUS * zoom / 1.5) - 4  # half the side of a square inside the ring
        # Captured without the pointer on the photo, because the preview may be visible already.
        x, y = place
        before = self.program.photo_on_screen().crop((x - inside, y - inside, x + inside, y + inside))
        self.point_at(place)
        # The preview replaces the blemish with skin, at the pointer: zooming kept the place fixed.
        wait_until(lambda: range_of_grey(self.around(place, inside)) < range_of_grey(before) / 2,
                   "the preview in the disc")
        preview = self.around(place, inside)
        self.assertEqual(len(self.program.state_images()), 1)
        self.xdotool("click", 1)
        wait_until(lambda: len(self.program.state_images()) == 2, "the repair")
        square = (x - inside, y - inside, x + inside, y + inside)
        wait_until(lambda: largest_difference(self.program.photo_on_screen().crop(square), preview) <= 3,
                   "the picture of the preview")

        self.program.keys("ctrl+0")
        self.assertGreater(largest_difference(self.program.photo_on_screen(), bare), 15)
        self.program.save()
        pixel = int((x - self.left) / self.scale), int((y - self.top) / self.scale)
        check_only_discs_changed(self.photo, self.photos / "face_retouched.png", [pixel], RADIUS + 1)

    def test_the_preview_never_reaches_the_saved_file(self):
        self.point_at(self.place_of(*BLEMISH))
        self.program.start_saving()
        self.program.confirm(SAVE_SUCCESS)
        with Image.open(self.photo) as one, Image.open(self.photos / "face_retouched.png") as other:
            self.assertEqual(one.convert("RGB").tobytes(), other.convert("RGB").tobytes())

    def test_the_original_is_seen_while_the_key_is_held(self):
        original = self.program.photo_on_screen()
        self.program.retouch(*BLEMISH, *SIZE)
        work = self.program.photo_on_screen()
        self.assertGreater(largest_difference(original, work), 15)
        x, y = self.place_of(*BLEMISH)
        box = (x - 10, y - 10, x + 10, y + 10)

        def shows(picture):
            return largest_difference(self.program.photo_on_screen().crop(box), picture.crop(box)) <= 2

        self.xdotool("keydown", "b")
        wait_until(lambda: shows(original), "the original")
        self.xdotool("keyup", "b")
        wait_until(lambda: shows(work), "the work")

    def test_the_middle_button_moves_the_photo_and_never_clicks(self):
        place = self.place_of(*BLEMISH)
        self.zoom_at(place)
        start = self.program.photo_on_screen()
        for distance, matches in ((-40, lambda difference: difference > 15), (40, lambda difference: difference <= 3)):
            self.point_at(place)
            self.xdotool("mousedown", 2, "mousemove_relative", "--", distance, 0, "mouseup", 2)
            wait_until(lambda: matches(largest_difference(self.program.photo_on_screen(), start)), "the photo to move")
        self.assertEqual(len(self.program.state_images()), 1)
        self.point_at(place)
        self.xdotool("click", 1)
        wait_until(lambda: len(self.program.state_images()) == 2, "the repair")

    def test_a_quick_pan_moves_the_photo_and_never_clicks(self):
        place = self.place_of(*BLEMISH)
        self.zoom_at(place)
        for distance in (12, -12, 40, -40, 200, -200):
            before = self.program.photo_on_screen()
            self.point_at(place)
            self.xdotool("mousedown", 1, "mousemove_relative", "--", distance // 2, 0,
                         "mousemove_relative", "--", distance // 2, 0, "mouseup", 1)
            wait_until(lambda: largest_difference(self.program.photo_on_screen(), before) > 15, "the photo to move")
        # The moves cancel out, so this click hits the blemish, and its repair is the only one.
        self.point_at(place)
        self.xdotool("click", 1)
        wait_until(lambda: len(self.program.state_images()) > 1, "the repair")
        self.program.wait_for_still_picture()
        self.assertEqual(len(self.program.state_images()), 2)

    def test_a_click_between_the_buttons_of_the_rail_repairs_nothing(self):
        self.zoom_at(self.place_of(*BLEMISH))  # the photo now extends behind the rail
        rail = [self.program.screen_area(name) for name in
                ("Select image", "Reload image", "Save image", "Undo", "Redo", "Zoom in", "Zoom out", "Reset zoom",
                 "Zoom", "Show the original")]
        for (x, upper, width, height), (_, lower, _, _) in zip(rail, rail[1:]):
            self.assertGreater(lower, upper + height)
            self.program.click_at(x + width // 2, (upper + height + lower) // 2)
        self.point_at(self.place_of(*BLEMISH))
        self.xdotool("click", 1)
        wait_until(lambda: len(self.program.state_images()) > 1, "the repair")
        self.program.wait_for_still_picture()
        self.assertEqual(len(self.program.state_images()), 2)

    def test_a_left_release_counts_while_the_right_button_is_held(self):
        self.point_at(self.place_of(*BLEMISH))
        self.xdotool("mousedown", 1, "mousedown", 2, "mouseup", 1)
        wait_until(lambda: len(self.program.state_images()) == 2, "the repair")
        self.xdotool("mouseup", 2)

    def test_the_wheel_changes_no_setting_without_the_focus(self):
        for control in (self.program.wait_for("Edit area size", "spin button"), self.program.wait_for("Threshold", "slider"),
                        self.program.combo_box("Repair"), self.program.combo_box("Effect")):
            area = control.get_extents(self.program.atspi.CoordType.SCREEN)
            x, y, width, height = area.x, area.y, area.width, area.height
            self.xdotool("mousemove", x + width // 2, y + height // 2, "click", "--repeat", 3, 5)
            self.assertEqual(self.program.focused_name(), "Photo")
        self.assertEqual(self.program.combo_box("Effect").get_description(), "Normal")
        self.assertEqual(self.program.combo_box("Repair").get_description(), "Flat color")
        self.assertEqual(self.program.wait_for("Threshold", "slider").get_current_value(), 10)
        # The interface's own function: newer versions of the library give controls another get_text.
        size = self.program.wait_for("Edit area size", "spin button")
        self.assertEqual(self.program.atspi.Text.get_text(size, 0, -1), "10")

    def test_the_space_bar_moves_the_photo_and_never_clicks(self):
        place = self.place_of(*BLEMISH)
        self.zoom_at(place)
        bare = self.program.photo_on_screen()
        self.point_at(place)
        wait_until(lambda: largest_difference(self.program.photo_on_screen(with_disc=True), bare) > 15, "the disc")
        # Key events pass through the accessibility bus, so an immediate button press would overtake this one.
        self.xdotool("keydown", "space", "sleep", 0.5)
        self.assertLessEqual(largest_difference(self.program.photo_on_screen(with_disc=True), bare), 3)
        self.xdotool("mousedown", 1, "mousemove_relative", "--", 40, 0, "mouseup", 1, "sleep", 0.5, "keyup", "space")
        wait_until(lambda: largest_difference(self.program.photo_on_screen(), bare) > 15, "the photo to move")
        self.assertEqual(len(self.program.state_images()), 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
