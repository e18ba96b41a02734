# SPDX-License-Identifier: GPL-3.0-or-later
"""A virtual desktop for tests: an X server, a window manager, a session bus and the accessibility bus."""

import os
import shlex
import subprocess
import time
from pathlib import Path

from PIL import Image

POLL_SECONDS = 0.02
WAIT_SECONDS = 20


def wait_until(condition, what, seconds=WAIT_SECONDS):
    """Polls condition() and returns its first true value. Fails after a timeout, naming `what`."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"timed out after {seconds} s waiting for {what}")
        time.sleep(POLL_SECONDS)


def output_of(*command, text=True):
    return subprocess.run(command, check=True, capture_output=True, text=text).stdout


class VirtualDesktop:
    """An X server, a window manager, a session bus and the accessibility bus. Programs write their settings and logs to
    `folder`. At most one per process, as the accessibility library connects only once."""

    def __init__(self, folder, width=1280, height=800):
        self.folder = Path(folder)
        self.size = f"{width}x{height}x24"
        self.processes = []

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()

    def _run(self, name, *command, **options):
        with open(self.folder / f"{name}.log", "wb") as log:
            process = subprocess.Popen(command, stdout=log, stderr=log, **options)
        self.processes.append(process)
        return process

    def _run_and_read_line(self, name, *command):
        """Starts a program and returns the line that it writes to a file descriptor when it is ready. `{}` in the
        command is that descriptor's number."""
        reader, writer = os.pipe()
        self._run(name, *(part.format(writer) for part in command), pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as announced:
            line = announced.readline().strip()
        if not line:
            raise AssertionError(f"{command[0]} does not start: " + (self.folder / f"{name}.log").read_text())
        return line

    def _start(self):
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700, exist_ok=True)
        for name in ("WAYLAND_DISPLAY", "LANGUAGE", "XDG_CURRENT_DESKTOP"):  # the last asks for the desktop's panels
            os.environ.pop(name, None)
        # Tests find controls by their English names.
        os.environ.update(LC_ALL="C.UTF-8", XDG_RUNTIME_DIR=str(runtime), QT_QPA_PLATFORM="xcb",
                          XDG_CONFIG_HOME=str(self.folder / "config"), XDG_CACHE_HOME=str(self.folder / "cache"),
                          XDG_DATA_HOME=str(self.folder / "data"), XDG_STATE_HOME=str(self.folder / "state"))
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._run_and_read_line(
            "bus", "dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address=unix:dir={self.folder}",
            "--print-address={}")
        os.environ["DISPLAY"] = ":" + self._run_and_read_line(
            "xserver", "Xvfb", "-displayfd", "{}", "-screen", "0", self.size, "-nolisten", "tcp", "-noreset")
        # It announces itself on the root window before it manages windows, and would lose one that is mapped then.
        managing = self.folder / "managing"
        self._run("window-manager", "openbox", "--startup", f"touch {shlex.quote(str(managing))}")
        self._run("accessibility", "/usr/libexec/at-spi-bus-launcher", "--launch-immediately")
        wait_until(managing.exists, "the window manager")
        wait_until(lambda: "AT_SPI_BUS" in output_of("xprop", "-root", "AT_SPI_BUS"), "the accessibility bus")

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", str(path)], check=True)

    def find_color(self, color):
        """The middle of the pixels of this colour on the screen; None if there are none."""
        width, height, _ = map(int, self.size.split("x"))
        screen = Image.frombytes("RGB", (width, height),
                                 output_of("import", "-window", "root", "-depth", "8", "rgb:-", text=False))
        places = [index for index, pixel in enumerate(screen.getdata()) if pixel == color]
        if not places:
            return None
        return (sum(place % width for place in places) // len(places),
                sum(place // width for place in places) // len(places))
