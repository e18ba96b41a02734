# SPDX-License-Identifier: GPL-3.0-or-later
"""The format of a photo is detected from its content, whatever its name."""

import unittest

from PIL import Image

from portrait_test_case import PortraitTestCase
from sample_portrait import SIZE
from virtual_desktop import wait_until
from window_driver import LOAD_FAILURE, Complexion

BLEMISH = (548, 418)
DNG_VERSION = 50706


def write_raw(path):
    """A minimal camera raw file: a TIFF file of a small picture with a DNG version."""
    with Image.new("RGB", (256, 171), "brown") as picture:
        picture.save(path, format="TIFF", tiffinfo={DNG_VERSION: b"\1\4\0\0"})


class FormatDetectionTest(PortraitTestCase):
    def photo(self, name, save_as):
        path = self.photos / name
        with Image.open(self.painted) as image:
            image.save(path, format=save_as)
        return path

    def check_work_on(self, photo, extension):
        """Undo works, and the result gets the extension of its format."""
        self.program.start(photo)
        self.program.retouch(*BLEMISH, *SIZE)
        self.assertTrue(self.program.is_enabled("Undo"))
        self.assertEqual({state.suffix for state in self.program.state_images()}, {extension})
        self.program.keys("ctrl+z")
        wait_until(lambda: not self.program.is_enabled("Undo"), "the undo")
        self.program.keys("ctrl+shift+z")
        wait_until(lambda: self.program.is_enabled("Undo"), "the redo")
        before = photo.read_bytes()
        self.program.save()
        self.assertEqual(sorted(self.photos.iterdir()),
                         sorted([photo, photo.with_name(photo.stem + "_retouched" + extension)]))
        self.assertEqual(photo.read_bytes(), before)

    def test_a_jpeg_with_another_extension(self):
        self.check_work_on(self.photo("face.jfif", "JPEG"), ".jpg")

    def test_a_bmp_with_another_extension(self):
        self.check_work_on(self.photo("face.dib", "BMP"), ".bmp")

    def test_a_png_without_an_extension(self):
        photo = self.photo("face", "PNG")
        self.check_work_on(photo, ".png")
        with Image.open(photo) as before, Image.open(self.photos / "face_retouched.png") as after:
            self.assertEqual(before.size, after.size)

    def test_a_raw_file_is_refused_under_any_name(self):
        for name in ("raw.dng", "raw.tif"):
            with self.subTest(name):
                write_raw(self.photos / name)
                program = self.enterContext(Complexion(self.desktop))
                program.start(self.photos / name, is_photo=False)
                program.answer(LOAD_FAILURE, "OK")
                self.assertFalse(program.is_enabled("Save image"))
                self.assertEqual(program.state_images(), [])
                program.process.kill()
                program.process.wait()


if __name__ == "__main__":
    unittest.main()
