# SPDX-License-Identifier: GPL-3.0-or-later
"""--help, --version and usage errors are answered on the terminal and need no display."""

import os
import subprocess
import unittest

from window_driver import BUILD


def run(*words):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
    return subprocess.run([BUILD / "app/complexion", *words], env=environment, capture_output=True, text=True,
                          timeout=20)


class CommandLineTest(unittest.TestCase):
    def test_help_and_version_are_printed(self):
        for words, text in ((["--help"], "Usage: complexion"), (["-h"], "Usage: complexion"),
                            (["--version"], "complexion ")):
            answer = run(*words)
            self.assertEqual((answer.returncode, answer.stderr), (0, ""))
            self.assertTrue(answer.stdout.startswith(text), answer.stdout)

    def test_errors_name_the_wrong_argument(self):
        for words, named in ((["--frobnicate"], "'--frobnicate'"), (["-x", "face.png"], "'-x'"),
                             (["face.png", "other.png"], "'other.png'"), (["-style"], "'-style'")):
            answer = run(*words)
            self.assertEqual((answer.returncode, answer.stdout), (2, ""))
            self.assertIn(named, answer.stderr)


if __name__ == "__main__":
    unittest.main()
