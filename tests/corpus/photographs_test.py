# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the camera and editor files of COMPLEXION_TEST_PHOTOS through the editor: no pixels and no metadata may be lost.
`./check corpus` runs the whole folder, which takes minutes."""

import os
import subprocess
import sys
import unittest
from pathlib import Path


class PhotographsTest(unittest.TestCase):
    @unittest.skipUnless(os.environ.get("COMPLEXION_TEST_PHOTOS"), "COMPLEXION_TEST_PHOTOS is not set")
    def test_camera_files_lose_nothing(self):
        corpus = Path(__file__).with_name("corpus.py")
        folder = Path(os.environ["COMPLEXION_TEST_PHOTOS"]) / "exif"
        done = subprocess.run([sys.executable, corpus, folder], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
