# SPDX-License-Identifier: GPL-3.0-or-later
"""What the end-to-end tests share: a desktop a class, and the program with a folder of photos a test."""

import subprocess
import tempfile
import unittest
from pathlib import Path

from window_driver import BUILD, Complexion, VirtualDesktop

SIZE = (1200, 1500)  # of the sample portrait, in pixels
RADIUS = 10  # the edit area that the window starts with
EXIT_QUESTION = "All unsaved changes will be lost. Are you sure you want to exit the application?"


class PortraitTestCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.desktop = cls.enterClassContext(VirtualDesktop(cls.folder))
        cls.painted = cls.folder / "painted.png"
        subprocess.run([BUILD / "tools/sample_portrait", cls.painted], check=True)

    def setUp(self):
        self.photos = Path(self.enterContext(tempfile.TemporaryDirectory(dir=self.folder)))
        self.program = self.enterContext(Complexion(self.desktop))
