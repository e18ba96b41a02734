# SPDX-License-Identifier: GPL-3.0-or-later
"""The desktop's own file dialog: GTK's, through xdg-desktop-portal. Whatever it lets the user choose, the program's rules
hold."""

import os
import shutil
import subprocess
import unittest

from picture_changes import check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS, SIZE
from virtual_desktop import output_of, wait_until
from window_driver import BUILD, EXIT_QUESTION, SAVE_SUCCESS

BLEMISH = (548, 418)
DESKTOP = "GNOME"


def stop(process):
    process.terminate()
    process.wait()
    if process.stdout:
        process.stdout.close()


class PortalTest(PortraitTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # The bus starts the portal, and was started before the display.
        subprocess.run(["dbus-update-activation-environment", "DISPLAY", f"XDG_CURRENT_DESKTOP={DESKTOP}"], check=True)

    def setUp(self):
        super().setUp()
        self.program.environment = {"XDG_CURRENT_DESKTOP": DESKTOP}
        self.photo = self.photos / "face.png"
        shutil.copy(self.painted, self.photo)

    def dialogs(self, title):
        """The X windows with this title: the desktop's, because the program's own have its name there, too."""
        return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"], capture_output=True,
                              text=True, check=False).stdout.split()

    def wait_for_dialog(self, title):
        window, = wait_until(lambda: self.dialogs(title), f"the desktop's dialog “{title}”", 60)
        wait_until(lambda: output_of("xdotool", "getwindowfocus").strip() == window, "its focus")
        self.assertFalse(self.program.is_showing(title, "dialog"))  # the program's own panel
        return window

    def type_path(self, path):
        """Types into GTK's field, which completes paths while they are typed and then may ignore a key."""
        subprocess.run(["xdotool", "key", "--clearmodifiers", "ctrl+a", "sleep", "0.3", "type", "--delay", "20",
                        str(path)], check=True)
        subprocess.run(["xdotool", "sleep", "0.3", "key", "Return"], check=True)

    def open(self, path):
        self.program.keys("ctrl+o")
        self.wait_for_dialog("Select image")
        self.program.keys("slash")  # opens the field
        self.type_path(path)

    def start_saving(self, path):
        self.program.keys("ctrl+s")
        self.wait_for_dialog("Save image")
        self.type_path(path)

    def test_a_photo_is_opened_and_saved(self):
        program = self.program
        program.start()
        self.open(self.photo)
        program.wait_for_photo()
        wait_until(lambda: not self.dialogs("Select image"), "the dialog to close")
        place = program.retouch(*BLEMISH, *SIZE)
        self.start_saving(self.photos / "new")  # without the extension
        program.answer(SAVE_SUCCESS, "OK")
        check_only_discs_changed(self.photo, self.photos / "new.png", [place], RADIUS)
        self.assertFalse((self.photos / "new").exists())

        # A completed name was not the one that the dialog asked about.
        self.start_saving(self.photos / "new")
        program.answer("“new.png” already exists. Do you want to replace it?", "Yes")
        program.answer(SAVE_SUCCESS, "OK")
        program.ask_to_close()
        program.answer_to_end(EXIT_QUESTION, "Yes")

    def test_the_photo_itself_is_replaced_only_after_a_warning(self):
        program = self.program
        program.start(self.photo)
        program.retouch(*BLEMISH, *SIZE)
        before = self.photo.read_bytes()
        self.start_saving(self.photos / "face")
        program.answer("“face.png” is the photo that you opened. Saving here replaces it for good. Do you want to "
                       "replace it?", "No")
        self.wait_for_dialog("Save image")  # asks for another name
        program.keys("Escape")
        wait_until(lambda: not self.dialogs("Save image"), "the dialog to close")
        self.assertEqual(self.photo.read_bytes(), before)
        self.assertTrue(program.is_enabled("Undo"))

    def test_a_cancelled_dialog_changes_nothing(self):
        program = self.program
        program.start()
        program.keys("ctrl+o")
        self.wait_for_dialog("Select image")
        program.keys("Escape")
        wait_until(lambda: not self.dialogs("Select image"), "the dialog to close")
        self.assertFalse(program.is_enabled("Save image"))
        self.open(self.photo)
        program.wait_for_photo()

    def test_without_a_portal_the_program_shows_its_own_panel(self):
        folder = self.photos / "bus"
        folder.mkdir()
        nothing = dict(os.environ, XDG_DATA_DIRS=str(folder), XDG_DATA_HOME=str(folder), XDG_CURRENT_DESKTOP=DESKTOP)
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address=unix:dir={folder}",
                                "--print-address"], stdout=subprocess.PIPE, text=True, env=nothing)
        self.addCleanup(stop, bus)
        # Without the other bus, it cannot be seen over the accessibility bus either.
        program = subprocess.Popen([BUILD / "app/complexion"],
                                   env=nothing | {"DBUS_SESSION_BUS_ADDRESS": bus.stdout.readline().strip()})
        self.addCleanup(stop, program)

        def windows(title):
            return subprocess.run(["xdotool", "search", "--onlyvisible", "--all", "--pid", str(program.pid), "--name",
                                   title], capture_output=True, text=True, check=False).stdout.split()
        window, = wait_until(lambda: windows("^Complexion$"), "the window")
        subprocess.run(["xdotool", "windowfocus", "--sync", window, "key", "ctrl+o"], check=True)
        wait_until(lambda: windows("^Select image"), "the program's own panel")


if __name__ == "__main__":
    unittest.main(verbosity=2)
