# SPDX-License-Identifier: GPL-3.0-or-later
"""The base class of the end-to-end tests: one desktop per class; the program and a folder for photos per test."""

import tempfile
import unittest
from pathlib import Path

import sample_portrait
from virtual_desktop import VirtualDesktop
from window_driver import Complexion


class PortraitTestCase(unittest.TestCase):
    desktop_size = 1280, 800

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.desktop = cls.enterClassContext(VirtualDesktop(cls.folder, *cls.desktop_size))
        cls.painted = cls.folder / "painted.png"
        sample_portrait.paint(cls.painted)

    def setUp(self):
        self.photos = Path(self.enterContext(tempfile.TemporaryDirectory(dir=self.folder)))
        self.program = self.enterContext(Complexion(self.desktop))
