# SPDX-License-Identifier: GPL-3.0-or-later
"""The process that forks the decoders can be killed: the next photo is opened by a new one."""

import os
import signal
import unittest
from pathlib import Path

from portrait_test_case import PortraitTestCase
from sample_portrait import SIZE
from virtual_desktop import wait_until
from window_driver import LOAD_FAILURE

BLEMISH = (548, 418)
RELOAD_QUESTION = "All unsaved changes will be lost. Are you sure you want to reload the image?"


def children(process, name):
    """The children of all threads of a process that have this name, without those that have ended."""
    pids = [pid for path in Path(f"/proc/{process}/task").glob("*/children") for pid in path.read_text().split()]
    return [int(pid) for pid in pids if Path(f"/proc/{pid}/stat").read_text().startswith(f"{pid} ({name}) S")]


class LostReaderTest(PortraitTestCase):
    def reader(self):
        pid, = children(self.program.process.pid, "complexion-read")
        return pid

    def test_a_killed_reader_process_is_replaced(self):
        self.program.start(self.painted)
        lost = self.reader()
        os.kill(lost, signal.SIGKILL)
        self.program.keys("ctrl+r")
        self.program.answer(RELOAD_QUESTION, "Yes")
        wait_until(lambda: children(self.program.process.pid, "complexion-read") not in ([], [lost]),
                   "another reader process")
        self.program.wait_for_photo()
        self.assertFalse(self.program.is_showing(LOAD_FAILURE))
        self.program.retouch(*BLEMISH, *SIZE)
        self.assertNotEqual(self.reader(), lost)


if __name__ == "__main__":
    unittest.main()
