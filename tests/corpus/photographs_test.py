# SPDX-License-Identifier: GPL-3.0-or-later
"""The cameras' and editors' files among the photographs that COMPLEXION_TEST_PHOTOS names go through the editor and lose
nothing, least of all metadata. The whole folder is for `./check corpus`: it takes minutes."""

import os
import subprocess
import sys
import unittest
from pathlib import Path


class PhotographsTest(unittest.TestCase):
    @unittest.skipUnless(os.environ.get("COMPLEXION_TEST_PHOTOS"), "COMPLEXION_TEST_PHOTOS names no folder of photographs")
    def test_files_of_cameras_come_back_whole(self):
        corpus = Path(__file__).with_name("corpus.py")
        folder = Path(os.environ["COMPLEXION_TEST_PHOTOS"]) / "exif"
        done = subprocess.run([sys.executable, corpus, folder], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
