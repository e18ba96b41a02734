# SPDX-License-Identifier: GPL-3.0-or-later
"""Saving over the photo itself never loses its only copy, however the save ends."""

import os
import resource
import shutil
import unittest
from pathlib import Path
from urllib.parse import unquote

from picture_changes import check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS, SIZE
from virtual_desktop import wait_until
from window_driver import SAVE_SUCCESS, Complexion

BLEMISH = (548, 418)
SAVE_FAILURE = "Could not save the image."


def replacing_the_photo(photo):
    return f"“{photo.name}” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?"


class ReplacingTest(PortraitTestCase):
    """A wrapper ignores SIGXFSZ, so that a limit on the file size acts like a full disk."""

    def setUp(self):
        super().setUp()
        wrapper = self.photos.with_suffix(".sh")
        wrapper.write_text(f'#!/bin/sh\ntrap "" XFSZ\nexec "{self.program.program}" "$@"\n')
        wrapper.chmod(0o755)
        self.program = self.enterContext(Complexion(self.desktop, wrapper))
        self.photo = self.photos / "face.png"
        shutil.copy(self.painted, self.photo)
        self.bytes = self.photo.read_bytes()
        self.program.start(self.photo)
        self.place = self.program.retouch(*BLEMISH, *SIZE)

    def replace_the_photo(self):
        self.program.start_saving(self.photo)
        self.program.answer(replacing_the_photo(self.photo), "Yes")

    def test_a_save_that_fails_leaves_the_photo_in_the_trash(self):
        unlimited = (resource.RLIM_INFINITY, resource.RLIM_INFINITY)
        resource.prlimit(self.program.process.pid, resource.RLIMIT_FSIZE, (20_000, resource.RLIM_INFINITY))
        self.replace_the_photo()
        self.program.answer(SAVE_FAILURE, "OK")
        resource.prlimit(self.program.process.pid, resource.RLIMIT_FSIZE, unlimited)

        self.assertEqual(list(self.photos.iterdir()), [])
        trash = Path(os.environ["XDG_DATA_HOME"]) / "Trash"
        self.assertEqual((trash / "files/face.png").read_bytes(), self.bytes)
        listed = dict(line.split("=", 1) for line in (trash / "info/face.png.trashinfo").read_text().splitlines()[1:])
        self.assertEqual(unquote(listed["Path"]), str(self.photo.resolve()))

        self.program.save(self.photo)
        (trash / "files/face.png").rename(self.photos / "before.png")
        check_only_discs_changed(self.photos / "before.png", self.photo, [self.place], RADIUS)

    def test_a_save_that_succeeds_leaves_nothing_else(self):
        self.replace_the_photo()
        self.program.answer(SAVE_SUCCESS, "OK")
        self.assertEqual(list(self.photos.iterdir()), [self.photo])

    def test_a_kill_while_saving_never_loses_the_only_copy(self):
        self.replace_the_photo()
        wait_until(lambda: not self.photo.exists() or self.photo.read_bytes() != self.bytes, "the save to begin")
        self.program.process.kill()
        self.program.process.wait()
        complete = [file for file in self.photos.iterdir() if not file.name.startswith(".")]
        self.assertTrue(complete)
        if self.photo not in complete:
            self.assertEqual([file.name for file in complete], ["face (replaced).png"])
        for file in complete:
            if file.read_bytes() != self.bytes:
                check_only_discs_changed(self.painted, file, [self.place], RADIUS)


if __name__ == "__main__":
    unittest.main()
