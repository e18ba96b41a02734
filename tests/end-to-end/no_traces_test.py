# SPDX-License-Identifier: GPL-3.0-or-later
"""A session with the file panels and the color dialog leaves nothing in the home folder but the result."""

import shutil
import unittest

from portrait_test_case import PortraitTestCase
from sample_portrait import SIZE
from virtual_desktop import wait_until
from window_driver import EXIT_QUESTION

BLEMISH = (548, 418)


class NoTracesTest(PortraitTestCase):
    def setUp(self):
        super().setUp()
        self.home = self.photos / "home"
        self.home.mkdir()
        shutil.copy(self.painted, self.home / "face.png")
        self.program.environment = {"HOME": str(self.home), "XDG_CONFIG_HOME": None, "XDG_DATA_HOME": None,
                                    "XDG_CACHE_HOME": None, "XDG_STATE_HOME": None}

    def content(self):
        """Every path in the home folder, with the content of files."""
        return {str(path.relative_to(self.home)): path.read_bytes() if path.is_file() else None
                for path in self.home.rglob("*")}

    def test_only_the_result_is_left(self):
        bookmarks = self.home / ".config/QtProject.conf"
        bookmarks.parent.mkdir()
        bookmarks.write_text("[FileDialog]\nshortcuts=file:///other\n")
        before = self.content()
        program = self.program
        program.start()
        program.keys("ctrl+o")
        program.wait_for("Select image", "dialog")
        program.type(str(self.home / "face.png"))
        program.keys("Return")
        program.wait_for_photo()
        program.retouch(*BLEMISH, *SIZE)
        program.press("Autodetect Color")
        wait_until(lambda: program.is_enabled("Custom color"), "the color well")
        program.press("Custom color")
        program.wait_for("Custom color", "dialog")
        program.press("Add to Custom Colors")
        program.press("OK")
        wait_until(lambda: len(program.windows()) == 1, "the color dialog to close")
        program.save()
        program.keys("ctrl+q")
        program.answer_to_end(EXIT_QUESTION, "Yes")
        after = self.content()
        self.assertEqual(set(after) - set(before), {"face_retouched.png"})
        self.assertEqual({path: after[path] for path in before}, before)
        self.assertEqual(list(program.temporary.iterdir()), [])


if __name__ == "__main__":
    unittest.main()
