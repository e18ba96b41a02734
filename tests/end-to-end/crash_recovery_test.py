# SPDX-License-Identifier: GPL-3.0-or-later
"""After a kill, the next start offers the unfinished work and restores the identical picture."""

import os
import stat
import unittest

from PIL import Image, ImageChops

from portrait_test_case import PortraitTestCase
from sample_portrait import SIZE
from window_driver import EXIT_QUESTION

PLACES = ((548, 418), (690, 690), (600, 500))
FORGET_QUESTION = "The repairs of this photo will be lost. Are you sure you want to forget them?"


class CrashRecoveryTest(PortraitTestCase):
    def setUp(self):
        super().setUp()
        self.photo = self.photos / "face.png"
        self.photo.write_bytes(self.painted.read_bytes())

    def retouch(self):
        self.program.start(self.photo)
        for place in PLACES:
            self.program.retouch(*place, *SIZE)

    def kill(self):
        self.program.process.kill()
        self.program.process.wait()

    def saved(self, name):
        path = self.photos / name
        self.program.save(path)
        return Image.open(path).convert("RGB")

    def test_three_clicks_survive_a_kill(self):
        self.retouch()
        expected = self.saved("expected.png")
        self.kill()
        journal, = self.program.journals()
        self.assertEqual(stat.S_IMODE(journal.parent.stat().st_mode), 0o700)
        self.assertEqual(stat.S_IMODE(journal.stat().st_mode), 0o600)
        self.assertLess(journal.stat().st_size, 1000)

        self.program.start()
        self.program.press("Continue where you left off: face.png, 3 repairs")
        self.program.wait_for_photo()
        self.assertTrue(self.program.is_enabled("Undo"))
        continued = self.saved("continued.png")
        self.assertIsNone(ImageChops.difference(expected, continued).getbbox())
        painted = Image.open(self.photo).convert("RGB")
        self.assertIsNotNone(ImageChops.difference(painted, continued).getbbox())

        self.program.ask_to_close()
        self.program.answer_to_end(EXIT_QUESTION, "Yes")
        self.assertEqual(self.program.journals(), [])

    def test_forgotten_work_is_not_offered_again(self):
        self.retouch()
        self.kill()
        self.program.start()
        self.program.press("Forget face.png")
        self.program.answer(FORGET_QUESTION, "Yes")
        self.program.wait_until_gone("Forget face.png")
        self.assertEqual(self.program.journals(), [])

    def test_the_program_works_without_a_state_folder(self):
        os.rmdir(self.program.state_home)
        self.program.state_home.write_text("a file in place of the folder")
        self.retouch()
        self.saved("saved.png")


if __name__ == "__main__":
    unittest.main()
