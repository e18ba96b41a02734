# SPDX-License-Identifier: GPL-3.0-or-later
"""However the program ends, it leaves no state image behind, and other users can read none while it runs."""

import signal
import stat
import subprocess
import unittest

from portrait_test_case import PortraitTestCase
from sample_portrait import SIZE
from virtual_desktop import wait_until
from window_driver import EXIT_QUESTION

BLEMISH = (548, 418)


class TerminationTest(PortraitTestCase):
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

    def test_a_termination_signal_leaves_only_the_journal(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                self.start_and_retouch()
                self.program.process.send_signal(number)
                self.assertEqual(self.program.process.wait(20), 0)
                self.assertEqual(self.left(), [])
                journal, = self.program.journals()
                self.assertEqual(stat.S_IMODE(journal.stat().st_mode), 0o600)
                journal.unlink()

    def test_a_termination_signal_ends_an_open_question(self):
        self.start_and_retouch()
        self.program.ask_to_close()
        self.program.wait_for(EXIT_QUESTION)
        self.program.process.terminate()
        self.assertEqual(self.program.process.wait(20), 0)
        self.assertEqual(self.left(), [])

    def test_the_next_start_removes_what_a_killed_process_left(self):
        self.start_and_retouch()
        left, = self.left()
        self.program.process.kill()
        self.program.process.wait()
        self.assertEqual(self.left(), [left])
        self.program.start()
        self.assertEqual(len(self.left()), 1)
        self.assertFalse(left.exists())

    def test_losing_the_display_leaves_nothing(self):
        self.start_and_retouch()
        subprocess.run(["xkill", "-id", self.program.window()], check=True, capture_output=True)
        self.program.process.wait(20)
        wait_until(lambda: not self.left(), "the private folder to be removed")


if __name__ == "__main__":
    unittest.main()
