# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as a native Wayland client: of weston, in a window of the virtual desktop, so that X events reach it as
Wayland events."""

import os
import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

from monitor_profiles import MAX_DIFFERENCE, LittleCms, colour_chart, monitor_profile, patches
from picture_changes import check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS, SIZE
from virtual_desktop import output_of, wait_until
from window_driver import EXIT_QUESTION, SAVE_SUCCESS, Complexion, Drag

BLEMISH = (548, 418)
OUTPUT = (1360, 1000)  # pixels of the compositor's screen
DRAG_SOURCE_COLOR = (255, 0, 255)
KIOSK = ["--shell=kiosk-shell.so", "--no-config"]  # each window fills the screen
# Windows of several programs side by side.
DESKTOP = ["--shell=desktop-shell.so"]
DESKTOP_CONFIGURATION = """[shell]
panel-position=none
animation=none
startup-animation=none
close-animation=none
focus-animation=none
locking=false
"""


class WaylandComplexion(Complexion):
    """Takes positions over the accessibility bus as points in the program's window, which fills the compositor's
    screen."""

    def __init__(self, desktop, compositor, scale):
        super().__init__(desktop)
        self.compositor = compositor
        self.scale = scale

    def area_of(self, control):
        rect = control.get_extents(self.atspi.CoordType.WINDOW)
        left, top = map(int, re.findall(r"Absolute upper-left [XY]: +(-?\d+)",
                                        output_of("xwininfo", "-id", self.compositor)))
        return (left + round(rect.x * self.scale), top + round(rect.y * self.scale),
                round(rect.width * self.scale), round(rect.height * self.scale))

    def _takes_focus(self):
        """Also enters the compositor's window with the pointer, whose later movements are relative to that place."""
        subprocess.run(["xdotool", "mousemove", "0", "0", "windowfocus", "--sync", self.compositor, "sleep", "0.2",
                        "mousemove", "--window", self.compositor, "20", "20", "sleep", "0.2"], check=True)
        return True


class WaylandTest(PortraitTestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop_size = OUTPUT[0] + 40, OUTPUT[1] + 60
        super().setUpClass()

    def start_compositor(self, shell, scale=1):
        """Starts a compositor, and prepares the program to be its client. Returns the name of its socket."""
        socket = f"wayland-{scale}"
        log = open(self.folder / "weston.log", "wb")
        self.addCleanup(log.close)
        weston = subprocess.Popen(["weston", "--backend=x11-backend.so", *shell, f"--socket={socket}",
                                   f"--width={OUTPUT[0] // scale}", f"--height={OUTPUT[1] // scale}",
                                   f"--scale={scale}", "--idle-time=0", "--use-pixman"], stdout=log, stderr=log)
        self.addCleanup(weston.wait)
        self.addCleanup(weston.terminate)

        def window():
            return subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "Weston Compositor"], capture_output=True,
                                  text=True, check=False).stdout.split()
        compositor = wait_until(window, "the compositor")[0]
        self.program = self.enterContext(WaylandComplexion(self.desktop, compositor, scale))
        self.program.environment = {"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": socket, "DISPLAY": None}
        return socket

    def wait_for_full_screen(self):
        wait_until(lambda: abs(self.program.screen_area("Photo")[2] - OUTPUT[0]) < 2, "the window to fill the screen")

    def start(self, scale=1, own_factor=1, picture=None, **environment):
        """Starts the compositor at a scale, and on it the program with a photo, enlarged by another factor."""
        self.start_compositor(KIOSK, scale)
        photo = self.photos / "face.png"
        shutil.copy(picture or self.painted, photo)
        self.program.scale *= own_factor
        self.program.environment |= {"QT_SCALE_FACTOR": str(own_factor), **environment}
        self.program.start(photo)
        self.wait_for_full_screen()
        return photo

    def retouch_and_save(self, photo):
        place = self.program.retouch(*BLEMISH, *SIZE)
        self.program.start_saving()
        self.program.confirm(SAVE_SUCCESS)  # where a dialog is on the screen is not known to clients
        check_only_discs_changed(photo, photo.with_stem(photo.stem + "_retouched"), [place], RADIUS)
        x, y, width, _ = self.program.screen_area("Photo")
        self.program.click_at(x + width - 4, y - 4)  # the compositor's shell may not have returned the focus
        self.program.keys("ctrl+q")
        self.program.confirm_to_end(EXIT_QUESTION)

    def test_a_photo_is_retouched_and_saved(self):
        self.retouch_and_save(self.start())

    def test_at_twice_the_scale(self):
        self.retouch_and_save(self.start(scale=2))

    def test_at_a_fractional_scale(self):
        self.retouch_and_save(self.start(own_factor=1.25))

    def drop(self, address, socket):
        """Drags an address out of a window of another client to the photo, and drops it there."""
        drag = Drag(address, QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY=socket)
        drag.place = wait_until(lambda: self.desktop.find_color(DRAG_SOURCE_COLOR), "the window to drag from")
        x, y, width, height = self.program.screen_area("Photo")
        drag.to(x + width // 2, y + height // 4)
        return drag

    def test_a_drop_opens_a_photo_and_refuses_everything_else(self):
        configuration = self.photos / "weston.ini"
        configuration.write_text(DESKTOP_CONFIGURATION)
        socket = self.start_compositor([*DESKTOP, f"--config={configuration}"])
        self.program.start()
        self.program.keys("F11")  # clients do not know where on the screen a smaller window is
        self.wait_for_full_screen()
        notes = self.photos / "notes.png"
        notes.write_text("no photo")
        self.drop(notes.as_uri(), socket).wait_for_end()
        self.program.wait_for("“notes.png” is not a picture. Complexion opens JPEG, PNG, TIFF, GIF and BMP.")
        self.assertFalse(self.program.is_enabled("Save image"))
        photo = self.photos / "Jürgen's face.png"
        shutil.copy(self.painted, photo)
        self.drop(photo.as_uri(), socket).wait_for_end()
        self.program.wait_for_photo()
        self.retouch_and_save(photo)

    def test_the_photo_is_in_the_colours_of_the_monitor(self):
        monitors = [monitor_profile(), monitor_profile(turned=True)]
        files = [self.photos / f"monitor-{index}.icc" for index in range(len(monitors))]
        for file, monitor in zip(files, monitors):
            file.write_bytes(monitor)
        bus = {"DBUS_SYSTEM_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"]}
        colord = self.enterContext(subprocess.Popen([sys.executable, Path(__file__).with_name("fake_colord.py"), *files],
                                                    stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                                    env=os.environ | bus))
        self.addCleanup(colord.terminate)
        self.assertEqual(colord.stdout.readline(), "ready\n")
        colours = colour_chart(self.photos / "chart.png")
        self.start(picture=self.photos / "chart.png", **bus)
        self.program.keys("h")  # hides what covers the photo
        for monitor in monitors:
            cms = LittleCms(monitor)
            expected = cms.levels(colours)
            wait_until(lambda: cms.difference(patches(self.program.photo_on_screen()), expected) <= MAX_DIFFERENCE,
                       "the monitor's colours")
            colord.stdin.write("next\n")
            colord.stdin.flush()


if __name__ == "__main__":
    unittest.main(verbosity=2)
