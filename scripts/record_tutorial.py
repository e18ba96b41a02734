#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Records the tutorial's video: retouches the sample portrait in the real window on a virtual display. The steps and
their start times in seconds are those of the tutorial's page."""

import os
import subprocess
import sys
import tempfile
import time
from html.parser import HTMLParser
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/end-to-end"))

import sample_portrait  # noqa: E402
from sample_portrait import SIZE  # noqa: E402
from virtual_desktop import VirtualDesktop, wait_until  # noqa: E402
from window_driver import Complexion  # noqa: E402

PAGE = ROOT / "docs/tutorial/index.html"
FILM = ROOT / "docs/tutorial/film.webm"
SCREEN = (1280, 800)
LENGTH = 38  # seconds
FRAMES = 25  # per second
ZOOM_STEPS = 6
ZOOM_FACTOR = 1.1  # per step
DRAG = (0, 170)  # from the portrait's centre to the face
LARGE_EDIT_AREA = 18  # edit area size for the largest blemish
NATURAL = 1  # index in the list of repairs
SUGGESTIONS = 3  # that are repaired
NOIR = 5  # index in the list of effects


class Steps(HTMLParser):
    """Parses the captions' names and start times from the page."""

    def __init__(self):
        super().__init__()
        self.seconds = {}

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag == "li":
            self.seconds[attributes["id"]] = float(attributes["data-second"])


class Hand:
    """Moves the mouse smoothly, as a person does: accelerates and decelerates."""

    def __init__(self, x, y):
        self.x, self.y = x, y
        self._place()

    def _place(self):
        subprocess.run(["xdotool", "mousemove", str(round(self.x)), str(round(self.y))], check=True)

    def glide(self, x, y, seconds=0.5):
        from_x, from_y, start = self.x, self.y, time.monotonic()
        while (share := min((time.monotonic() - start) / seconds, 1)) < 1:
            eased = share * share * (3 - 2 * share)
            self.x, self.y = from_x + (x - from_x) * eased, from_y + (y - from_y) * eased
            self._place()
            time.sleep(1 / FRAMES / 2)
        self.x, self.y = x, y
        self._place()

    def click(self):
        subprocess.run(["xdotool", "click", "1"], check=True)

    def drag(self, dx, dy):
        subprocess.run(["xdotool", "mousedown", "1"], check=True)
        self.glide(self.x + dx, self.y + dy, 0.8)
        subprocess.run(["xdotool", "mouseup", "1"], check=True)


class Film:
    """Performs the steps; each method is named after a caption's id."""

    def __init__(self, program, blemishes):
        self.program = program
        self.small = [spot for spot in blemishes if spot.radius <= 6]
        self.large, self.next = sorted(blemishes, key=lambda spot: -spot.radius)[:2]
        self.hand = Hand(SCREEN[0] * 0.7, SCREEN[1] * 0.8)
        self.area = program.screen_area("Photo")
        self.zoomed = 1.0
        self.offset = (0, 0)

    def place(self, x, y):
        """The current screen position of a pixel of the portrait."""
        left, top, width, height = self.area
        scale = min(width / SIZE[0], height / SIZE[1]) * self.zoomed
        return (left + width / 2 + (x + 0.5 - SIZE[0] / 2) * scale + self.offset[0],
                top + height / 2 + (y + 0.5 - SIZE[1] / 2) * scale + self.offset[1])

    def press(self, name, role=None):
        self.press_control(self.program.wait_for(name, role))

    def press_control(self, control):
        rect = control.get_extents(self.program.atspi.CoordType.SCREEN)
        self.hand.glide(rect.x + rect.width / 2, rect.y + rect.height / 2)
        self.hand.click()

    def start(self):
        self.hand.glide(*self.place(SIZE[0] * 0.75, SIZE[1] * 0.55), 1.0)

    def click(self):
        for spot in self.small[:4]:
            self.hand.glide(*self.place(spot.x, spot.y), 0.6)
            time.sleep(0.3)
            self.hand.click()
            time.sleep(0.3)

    def zoom(self):
        x, y, width, height = self.program.screen_area("Zoom in")
        self.hand.glide(x + width / 2, y + height / 2)
        for _ in range(ZOOM_STEPS):
            self.hand.click()
            time.sleep(0.12)
        self.zoomed = ZOOM_FACTOR**ZOOM_STEPS
        self.hand.glide(*self.place(SIZE[0] / 2, SIZE[1] / 2))
        self.hand.drag(*DRAG)
        self.offset = DRAG

    def size(self):
        x, y, width, height = self.program.screen_area("Edit area size", "spin button")
        self.hand.glide(x + width / 3, y + height / 2)
        subprocess.run(["xdotool", "click", "--repeat", "2", "--delay", "60", "1"], check=True)
        time.sleep(0.3)
        self.program.keys("ctrl+a")
        self.program.type(str(LARGE_EDIT_AREA))
        time.sleep(0.4)
        self.program.keys("Return")
        self.click_away(self.large)

    def click_away(self, spot):
        self.hand.glide(*self.place(spot.x, spot.y), 0.7)
        time.sleep(0.7)
        self.hand.click()
        time.sleep(0.8)

    def repair(self):
        self.press_control(self.program.combo_box("Repair"))
        time.sleep(0.5)
        self.program.keys("Home", *["Down"] * NATURAL, "Return")
        self.click_away(self.next)

    def suggest(self):
        self.program.keys("n")
        for _ in range(SUGGESTIONS):
            time.sleep(1.3)
            self.program.keys("Return")

    def undo(self):
        for name in ("Undo", "Redo"):
            self.press(name)
            time.sleep(0.9)

    def effect(self):
        self.press_control(self.program.combo_box("Effect"))
        time.sleep(0.8)
        self.program.keys("Home", *["Down"] * NOIR, "Return")
        time.sleep(1.2)
        self.program.choose_effect(0)

    def save(self):
        self.press("Save image")
        self.program.wait_for("Save image", "dialog")
        time.sleep(1.0)
        self.program.keys("Return")
        self.program.wait_for("Image saved successfully.")
        time.sleep(1.2)
        self.press("OK")


def record(display, path):
    return subprocess.Popen(
        ["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-framerate", str(FRAMES), "-video_size",
         "{}x{}".format(*SCREEN), "-i", display, "-c:v", "libx264", "-preset", "ultrafast", "-qp", "0", str(path)],
        stdin=subprocess.PIPE)


def encode(raw, film):
    """Encodes the last LENGTH seconds of the recording as VP9, in two passes for a small file."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["ffmpeg", "-loglevel", "error", "-y", "-sseof", str(-LENGTH), "-i", str(raw), "-c:v", "libvpx-vp9",
                   "-b:v", "0", "-crf", "38", "-row-mt", "1", "-g", str(FRAMES * 5), "-pix_fmt", "yuv420p",
                   "-passlogfile", f"{folder}/pass", "-map_metadata", "-1", "-fflags", "+bitexact", "-f", "webm"]
        subprocess.run([*command, "-pass", "1", "/dev/null"], check=True)
        subprocess.run([*command, "-pass", "2", str(film)], check=True)


def main():
    subprocess.run([ROOT / "scripts/setup.sh", "build", "window", "film"], check=True)
    subprocess.run([ROOT / "scripts/build.sh", "release", "complexion", "sample_portrait"], check=True)
    page = Steps()
    page.feed(PAGE.read_text())
    with tempfile.TemporaryDirectory() as folder, VirtualDesktop(folder, *SCREEN) as desktop:
        portrait, raw = Path(folder, "portrait.png"), Path(folder, "raw.mkv")
        blemishes = sample_portrait.paint(portrait)
        with Complexion(desktop) as program:
            program.start(portrait)
            subprocess.run(["wmctrl", "-i", "-r", program.window(), "-b", "add,maximized_vert,maximized_horz"],
                           check=True)
            wait_until(lambda: program.screen_area("Photo")[2] == SCREEN[0], "the window to fill the screen")
            film = Film(program, blemishes)
            recorder = record(os.environ["DISPLAY"], raw)
            wait_until(lambda: raw.exists() and raw.stat().st_size > 0, "the recorder")
            begin = time.monotonic()
            for name, second in page.seconds.items():
                late = time.monotonic() - begin - second
                if late > 1:
                    print(f"the step “{name}” begins {late:.1f} s late", file=sys.stderr)
                time.sleep(max(-late, 0))
                getattr(film, name)()
            time.sleep(max(begin + LENGTH - time.monotonic(), 0))
            recorder.communicate(b"q")
        encode(raw, FILM)
    print(FILM.relative_to(ROOT), FILM.stat().st_size // 1024, "KiB")


if __name__ == "__main__":
    main()
