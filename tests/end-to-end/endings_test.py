# SPDX-License-Identifier: GPL-3.0-or-later
"""However the program ends, no picture of the photo's face stays behind, and no file of it could be read by others."""

import signal
import stat
import subprocess
import unittest

from portrait_test_case import PortraitTestCase
from sample_portrait import SIZE
from virtual_desktop import wait_until
from window_driver import EXIT_QUESTION

BLEMISH = (548, 418)


class EndingsTest(PortraitTestCase):
    def start_and_retouch(self):
        self.program.start(self.painted)
        self.program.retouch(*BLEMISH, *SIZE)
        self.assertEqual(len(self.program.state_images()), 2)

    def left(self):
        return list(self.program.temporary.iterdir())

    def test_the_history_is_readable_by_the_user_alone(self):
        self.start_and_retouch()
        folder, = self.left()
        self.assertEqual(stat.S_IMODE(folder.stat().st_mode), 0o700)
        for file in self.program.state_images():
            self.assertEqual(stat.S_IMODE(file.stat().st_mode), 0o600)

    def test_a_signal_to_end_leaves_the_journal_alone(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                self.start_and_retouch()
                self.program.process.send_signal(number)
                self.assertEqual(self.program.process.wait(20), 0)
                self.assertEqual(self.left(), [])
                journal, = self.program.journals()
                self.assertEqual(stat.S_IMODE(journal.stat().st_mode), 0o600)
                journal.unlink()

    def test_a_signal_ends_a_question_that_is_open(self):
        self.start_and_retouch()
        self.program.ask_to_close()
        self.program.wait_for(EXIT_QUESTION)
        self.program.process.terminate()
        self.assertEqual(self.program.process.wait(20), 0)
        self.assertEqual(self.left(), [])

    def test_what_a_killed_run_left_goes_at_the_next_start(self):
        self.start_and_retouch()
        left, = self.left()
        self.program.process.kill()
        self.program.process.wait()
        self.assertEqual(self.left(), [left])
        self.program.start()
        self.assertEqual(len(self.left()), 1)
        self.assertFalse(left.exists())

    def test_the_end_of_the_display_leaves_nothing(self):
        self.start_and_retouch()
        subprocess.run(["xkill", "-id", self.program.window()], check=True, capture_output=True)
        self.program.process.wait(20)
        wait_until(lambda: not self.left(), "the history to go")


if __name__ == "__main__":
    unittest.main()
