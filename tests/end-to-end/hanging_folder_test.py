# SPDX-License-Identifier: GPL-3.0-or-later
"""A folder whose file system does not answer blocks neither the window nor the end of the program."""

import shutil
import signal
import unittest

from portrait_test_case import PortraitTestCase
from window_driver import BUILD


class HangingFolderTest(PortraitTestCase):
    def open_hanging_folder(self):
        folder = self.photos / "unreachable"
        folder.mkdir()
        library = shutil.copy(BUILD / "tests/libhanging_folder.so", self.folder)  # LD_PRELOAD allows no spaces
        self.program.environment = {"LD_PRELOAD": str(library),
                                    "HANGING_FOLDER": str(folder)}
        self.program.start()
        self.program.keys("ctrl+o")
        self.program.wait_for("Select image", "dialog")
        self.program.type(str(folder))
        self.program.keys("Return")
        self.program.wait_for("Reading the folder…")

    def test_the_program_quits_meanwhile(self):
        self.open_hanging_folder()
        self.program.keys("Escape")
        self.program.wait_until_gone("Reading the folder…")
        self.program.keys("ctrl+q")
        self.assertEqual(self.program.process.wait(20), 0)
        self.assertEqual(list(self.program.temporary.iterdir()), [])

    def test_a_termination_signal_ends_the_program_meanwhile(self):
        self.open_hanging_folder()
        self.program.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.program.process.wait(20), 0)
        self.assertEqual(list(self.program.temporary.iterdir()), [])


if __name__ == "__main__":
    unittest.main()
