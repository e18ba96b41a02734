# SPDX-License-Identifier: GPL-3.0-or-later
"""The main job in the real window: open a portrait, click away three blemishes, save the result."""

import json
import subprocess
import unittest

from PIL import Image, ImageChops, ImageDraw, ImageStat

from picture_changes import changed_pixels, check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS, SIZE
from window_driver import EXIT_QUESTION, SAVE_SUCCESS

BLEMISHES = [(548, 418), (690, 690), (470, 700)]

# Metadata as a camera and an archive write it.
METADATA = {
    "EXIF:Make": "Sample Works", "EXIF:Model": "Painter 1", "EXIF:DateTimeOriginal": "2019:05:04 03:02:01",
    "EXIF:ExposureTime": "1/200", "EXIF:FNumber": "2.8", "EXIF:ISO": "100", "EXIF:UserComment": "by nobody",
    "EXIF:GPSLatitude": "48.2", "EXIF:GPSLatitudeRef": "N", "EXIF:GPSLongitude": "16.37",
    "EXIF:GPSLongitudeRef": "E", "EXIF:XResolution": "300", "EXIF:YResolution": "300",
    "XMP-dc:Title": "Portrait of nobody", "XMP:Rating": "4",
}
JPEG_METADATA = {
    "IPTC:Headline": "A face that was painted", "IPTC:Keywords": "portrait", "Comment": "a comment",
    "JFIF:XResolution": "300", "JFIF:YResolution": "300",
}


def metadata_of(path):
    """All metadata of a file except what describes the file itself."""
    text = subprocess.run(["exiftool", "-json", "-G1", "-n", "-a", "-x", "ThumbnailImage", str(path)],
                          check=True, capture_output=True).stdout
    return {name: value for name, value in json.loads(text)[0].items()
            if name.split(":")[0] not in ("SourceFile", "System", "File", "ExifTool", "Composite")
            or name == "File:Comment"}


def outside_discs(places, reach):
    """A mask that is white outside the squares of half-side `reach` around the places."""
    mask = Image.new("L", SIZE, 255)
    draw = ImageDraw.Draw(mask)
    for x, y in places:
        draw.rectangle((x - reach, y - reach, x + reach, y + reach), fill=0)
    return mask


class RetouchAndSaveTest(PortraitTestCase):
    def sample(self, name, **options):
        """Writes the sample portrait with metadata, in the format of the name's extension."""
        path = self.photos / name
        with Image.open(self.painted) as image:
            image.save(path, **options)
        tags = METADATA | (JPEG_METADATA if path.suffix == ".jpg" else {})
        subprocess.run(["exiftool", "-quiet", "-overwrite_original", "-n",
                        *(f"-{tag}={value}" for tag, value in tags.items()), str(path)], check=True)
        return path

    def retouch_and_save(self, photo):
        """Returns the saved file and the centres of the discs."""
        self.program.start(photo)
        places = [self.program.retouch(*blemish, *SIZE) for blemish in BLEMISHES]
        self.program.save()
        return photo.with_stem(photo.stem + "_retouched"), places

    def close(self):
        self.program.ask_to_close()
        self.program.answer_to_end(EXIT_QUESTION, "Yes")

    def test_a_png_changes_only_in_the_discs(self):
        photo = self.sample("face.png")
        saved, places = self.retouch_and_save(photo)
        check_only_discs_changed(photo, saved, places, RADIUS)
        carried = metadata_of(saved)
        self.assertEqual(carried | metadata_of(photo), carried)
        self.close()

    def test_a_jpeg_changes_only_in_the_discs_and_keeps_its_metadata(self):
        photo = self.sample("face.jpg", quality=92)
        saved, places = self.retouch_and_save(photo)
        with Image.open(photo) as before, Image.open(saved) as after:
            difference = ImageChops.difference(before.convert("RGB"), after.convert("RGB"))
            self.assertEqual(after.info.get("dpi"), before.info.get("dpi"))
        # Rounding changes untouched pixels slightly; the 8-pixel blocks that a disc touches may change more.
        untouched = ImageStat.Stat(difference, outside_discs(places, RADIUS + 8))
        self.assertLess(max(untouched.mean), 0.6)
        self.assertLess(max(high for _, high in untouched.extrema), 8)
        for x, y in places:
            disc = difference.crop((x - RADIUS, y - RADIUS, x + RADIUS, y + RADIUS))
            self.assertGreater(max(high for _, high in disc.getextrema()), 15, f"the disc at {x}, {y}")
        self.assertEqual(metadata_of(saved), metadata_of(photo))
        self.close()

    def test_closing_with_yes_leaves_no_state_image(self):
        self.program.start(self.sample("face.png"))
        self.program.retouch(*BLEMISHES[0], *SIZE)
        self.assertEqual(len(self.program.state_images()), 2)
        self.close()
        self.assertEqual(list(self.program.temporary.iterdir()), [])

    def test_closing_with_no_keeps_the_photo_and_its_history(self):
        self.program.start(self.sample("face.png"))
        self.program.retouch(*BLEMISHES[0], *SIZE)
        states = self.program.state_images()
        self.program.ask_to_close()
        self.program.answer(EXIT_QUESTION, "No")
        self.assertTrue(self.program.is_enabled("Undo"))
        self.assertEqual(self.program.state_images(), states)

    def test_saving_again_asks_before_it_replaces(self):
        photo = self.sample("face.png")
        saved, places = self.retouch_and_save(photo)
        first = changed_pixels(photo, saved)
        self.program.retouch(604, 492, *SIZE)
        self.program.start_saving()
        self.program.answer("“face_retouched.png” already exists. Do you want to replace it?", "Yes")
        self.program.answer(SAVE_SUCCESS, "OK")
        self.assertGreater(len(changed_pixels(photo, saved)), len(first))


if __name__ == "__main__":
    unittest.main(verbosity=2)
