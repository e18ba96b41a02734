# SPDX-License-Identifier: GPL-3.0-or-later
"""The photo in the colours of the monitor, whose profile the desktop states as a property of the root window."""

import ctypes
import subprocess
import unittest

import numpy
from PIL import Image

from monitor_profiles import MAX_DIFFERENCE, LittleCms, colour_chart, monitor_profile, patches
from portrait_test_case import PortraitTestCase
from virtual_desktop import wait_until
from window_driver import Complexion


def set_property(profile, name="_ICC_PROFILE"):
    """Sets a property of the root window. xprop sets 64 numbers at most."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XDefaultRootWindow.restype = x11.XInternAtom.restype = ctypes.c_ulong
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    window = ctypes.c_ulong(x11.XDefaultRootWindow(display))
    atom = ctypes.c_ulong(x11.XInternAtom(display, name.encode(), 0))
    cardinal, byte_format, replace = ctypes.c_ulong(6), 8, 0
    x11.XChangeProperty(display, window, atom, cardinal, byte_format, replace, profile, len(profile))
    x11.XCloseDisplay(display)  # sends it


class MonitorColorsTest(PortraitTestCase):
    def tearDown(self):
        subprocess.run(["xprop", "-root", "-remove", "_ICC_PROFILE"], check=True)

    def start(self, photo):
        self.program.start(photo)
        self.program.keys("h")  # hides what covers the photo

    def shown(self):
        self.program.wait_for_still_picture()
        return patches(self.program.photo_on_screen())

    def wait_for(self, colours, monitor, source=None):
        """Waits until the photo, whose profile is `source`, is shown in the monitor's colours."""
        cms = LittleCms(monitor)
        expected = cms.levels(colours, source)
        self.assertGreater(cms.difference(colours, expected), 2)  # without a conversion
        wait_until(lambda: cms.difference(self.shown(), expected) <= MAX_DIFFERENCE, "the monitor's colours")

    def test_a_photo_is_shown_as_little_cms_shows_it(self):
        set_property(monitor_profile())
        photo = self.photos / "chart.png"
        for source in (None, monitor_profile(gamma=1.9)):
            with self.subTest(has_profile=source is not None), Complexion(self.desktop) as self.program:
                colours = colour_chart(photo, source)
                self.start(photo)
                self.wait_for(colours, monitor_profile(), source)

    def test_a_change_of_the_profile_shows_at_once_and_changes_no_pixel(self):
        photo = self.photos / "chart.png"
        colours = colour_chart(photo)
        self.start(photo)
        numpy.testing.assert_array_equal(self.shown(), colours)  # no profile: sRGB
        for profile in (monitor_profile(), monitor_profile(turned=True)):
            set_property(profile)
            self.wait_for(colours, profile)
        self.program.save(self.photos / "saved.png")
        numpy.testing.assert_array_equal(numpy.array(Image.open(self.photos / "saved.png").convert("RGB")),
                                         numpy.array(Image.open(photo)))
        set_property(b"no profile")
        wait_until(lambda: (self.shown() == colours).all(), "sRGB")

    def test_the_profile_of_another_monitor_is_not_used(self):
        photo = self.photos / "chart.png"
        colours = colour_chart(photo)
        set_property(monitor_profile(), "_ICC_PROFILE_1")
        self.start(photo)
        numpy.testing.assert_array_equal(self.shown(), colours)


if __name__ == "__main__":
    unittest.main(verbosity=2)
