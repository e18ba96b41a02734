# SPDX-License-Identifier: GPL-3.0-or-later
"""Unusual file names: not valid UTF-8, or with quotation marks."""

import os
import shutil
import unittest

from picture_changes import check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS, SIZE
from virtual_desktop import output_of, wait_until

BLEMISH = (548, 418)
LATIN_1_NAME = os.fsdecode("café".encode("latin-1"))


class FileNamesTest(PortraitTestCase):
    def make_photo(self, path):
        path.parent.mkdir(exist_ok=True)
        shutil.copy(self.painted, path)
        return path

    def title(self):
        return output_of("xdotool", "getwindowname", self.program.window()).strip()

    def retouch_and_save(self, photo, saved, title="café.png"):
        self.assertEqual(self.title(), f"{title} — Complexion")
        place = self.program.retouch(*BLEMISH, *SIZE)
        before = set(saved.parent.iterdir())
        self.program.save()
        self.assertEqual(set(saved.parent.iterdir()) - before, {saved})
        check_only_discs_changed(photo, saved, [place], RADIUS)

    def test_a_latin_1_name_is_opened_from_the_command_line(self):
        photo = self.make_photo(self.photos / f"{LATIN_1_NAME}.png")
        self.program.start(photo)
        self.retouch_and_save(photo, self.photos / "café_retouched.png")

    def test_a_photo_is_saved_in_a_folder_whose_name_is_not_utf_8(self):
        photo = self.make_photo(self.photos / LATIN_1_NAME / f"{LATIN_1_NAME}.png")
        self.program.start(photo)
        self.retouch_and_save(photo, photo.parent / "café_retouched.png")

    def test_quotation_marks_in_a_typed_name_are_part_of_it(self):
        photo = self.make_photo(self.photos / "face.png")
        other = self.photos / "holiday.jpg"
        other.write_bytes(b"another photo")
        self.program.start(photo)
        self.program.save('"holiday.jpg"')
        self.assertEqual(other.read_bytes(), b"another photo")
        self.assertEqual({path.name for path in self.photos.iterdir()},
                         {"face.png", "holiday.jpg", '"holiday.jpg".png'})

    def test_quotation_marks_in_a_proposed_name_are_part_of_it(self):
        photo = self.make_photo(self.photos / 'a "b" c.png')
        self.program.start(photo)
        self.retouch_and_save(photo, self.photos / 'a "b" c_retouched.png', title='a "b" c.png')

    def test_a_name_with_quotation_marks_is_typed_into_the_open_panel(self):
        photo = self.make_photo(self.photos / 'a "b" c.png')
        self.program.start()
        self.program.keys("ctrl+o")
        self.program.wait_for("Select image", "dialog")
        self.program.type(str(photo))
        self.program.keys("Return")
        self.program.wait_for_photo()
        wait_until(lambda: self.title() == 'a "b" c.png — Complexion', "the photo's name")

    def test_a_latin_1_name_is_opened_by_a_drop(self):
        photo = self.make_photo(self.photos / f"{LATIN_1_NAME}.png")
        self.program.start()
        drag = self.program.drop(photo.as_uri())
        drag.wait_for_end()
        self.program.wait_for_photo()
        wait_until(lambda: self.title().startswith("caf"), "the photo's name")
        self.retouch_and_save(photo, self.photos / "café_retouched.png")


if __name__ == "__main__":
    unittest.main(verbosity=2)
