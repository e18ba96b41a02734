# SPDX-License-Identifier: GPL-3.0-or-later
"""The editor carries XMP that spans several JPEG segments into every format that can hold XMP, and from each of them
into a JPEG file: exiftool reads the same values from the saved file as from the source. Each test renames the photo, as
a file is read by its content and written in the format of its extension."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from PIL import Image

import corpus
import metadata_check

LONG = {"History": "one step after another " * 4000, "Instructions": "and back " * 9000}
SHORT = {"Title": "A portrait", "Rating": "4", "Creator": "somebody"}
TAGS = {"History": "XMP-photoshop:History", "Instructions": "XMP-photoshop:Instructions", "Title": "XMP-dc:Title",
        "Rating": "XMP-xmp:Rating", "Creator": "XMP-dc:Creator"}
FORMATS = {"jpg": "JPEG", "png": "PNG", "tif": "TIFF", "gif": "GIF"}
MAIN = b"http://ns.adobe.com/xap/1.0/\0"
EXTENSION = b"http://ns.adobe.com/xmp/extension/\0"


class ExtendedXmpTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))

    def source(self, extension):
        """A picture with more XMP, written by exiftool, than fits into one segment."""
        photo = self.folder / f"source.{extension}"
        Image.effect_noise((40, 30), 60).convert("P" if extension == "gif" else "RGB").save(photo)
        assignments = [f"-{TAGS[name]}={value}" for name, value in (LONG | SHORT).items()]
        arguments = self.folder / "arguments"
        arguments.write_text("\n".join(assignments) + "\n")
        subprocess.run(["exiftool", "-q", "-overwrite_original", "-@", arguments, photo], check=True)
        return photo

    def saved(self, photo, extension):
        """The file that the editor saves when the photo is opened under another extension."""
        renamed = self.folder / f"renamed.{extension}"
        shutil.copy(photo, renamed)
        target = Path(self.enterContext(tempfile.TemporaryDirectory(dir=self.folder)))
        ended, report = corpus.run_session(renamed, target)
        self.assertEqual(ended, "")
        self.assertEqual(report.get("save"), corpus.SAVED)
        saved = target / f"saved.{extension}"
        self.assertEqual(corpus.format_of(saved), FORMATS[extension])
        return saved

    def assert_all_read(self, photo):
        reading, = metadata_check.readings([photo]).values()
        for name, value in (LONG | SHORT).items():
            found = [str(found) for found in reading.get(TAGS[name], [])]
            self.assertEqual(found, [value], f"{photo.name}: {name}")
        self.assertNotIn("ExifTool:Warning", reading)

    def test_from_jpeg_into_every_format(self):
        source = self.source("jpg")
        self.assertIn(EXTENSION, source.read_bytes())
        for extension in FORMATS:
            with self.subTest(extension):
                saved = self.saved(source, extension)
                self.assert_all_read(saved)
                self.assertEqual(EXTENSION in saved.read_bytes(), extension == "jpg")

    def test_into_jpeg_from_every_other_format(self):
        for extension in ("png", "tif", "gif"):
            with self.subTest(extension):
                saved = self.saved(self.source(extension), "jpg")
                self.assertEqual(saved.read_bytes().count(MAIN), 1)
                self.assertIn(EXTENSION, saved.read_bytes())
                self.assert_all_read(saved)

    def test_from_png_into_jpeg_and_back(self):
        into_jpeg = self.saved(self.source("png"), "jpg")
        self.assert_all_read(self.saved(into_jpeg, "png"))


if __name__ == "__main__":
    unittest.main()
