# SPDX-License-Identifier: GPL-3.0-or-later
"""How long the window keeps the user waiting, on photos of 100 megapixels."""

import statistics
import threading
import time
import unittest

import numpy
from PIL import Image

from portrait_test_case import PortraitTestCase
from virtual_desktop import wait_until

ACROSS, DOWN = 8, 7  # portraits side by side and one above the other: 9600 by 10500 pixels
LONGEST_STEP = 0.1  # seconds
TRIES = 5
# A click writes the picture as a state, and such a write can be held up by the machine for longer than all else takes: a
# virtual one may wait for each page of memory that its host took back, at some tries and not at others. So of the click
# the quickest try counts, and where even the plain writing of so many bytes takes long it may take so many times that.
MOST_OF_WRITING = 1.5
WRITINGS = 20
PAUSE = 0.002  # seconds between two questions


def write_large_photo(portrait, path):
    """The portrait many times over, under grain as a camera's."""
    once = numpy.asarray(Image.open(portrait).convert("RGB")).astype(numpy.int16)
    grain = numpy.random.default_rng(1).normal(0, 3, once.shape).astype(numpy.int16)
    grainy = (once + grain).clip(0, 255).astype(numpy.uint8)
    Image.fromarray(numpy.tile(grainy, (DOWN, ACROSS, 1))).save(path, quality=95, compress_level=1)
    return once.shape[1] * ACROSS, once.shape[0] * DOWN


def seconds_to_write(content, path):
    """How long the system takes to write a file, and no more than that."""
    begin = time.monotonic()
    with open(path, "wb", buffering=0) as file:
        file.write(content)
    return time.monotonic() - begin


class Waiting:
    """Asks the window for its photo's name again and again, as long as it stands; `longest` is how many seconds it took
    to answer at the worst."""

    def __init__(self, photo):
        self.photo = photo
        self.longest = 0
        self.ended = threading.Event()
        self.thread = threading.Thread(target=self._ask)

    def _ask(self):
        while not self.ended.is_set():
            begin = time.monotonic()
            self.photo.get_name()
            self.longest = max(self.longest, time.monotonic() - begin)
            time.sleep(PAUSE)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.ended.set()
        self.thread.join()


class ResponsiveTest(PortraitTestCase):
    def longest_steps(self, photo):
        """For each step the seconds that the window did not answer, of some tries."""
        size = write_large_photo(self.painted, photo)
        program = self.program
        program.start(photo)
        shown = program.wait_for("Photo")
        places = iter([(x * 1200 + 548, y * 1500 + 418) for y in range(DOWN) for x in range(ACROSS)])

        def undo():
            program.keys("ctrl+z")
            wait_until(lambda: program.is_enabled("Redo"), "the step back")

        def redo():
            program.keys("ctrl+shift+z")
            wait_until(lambda: not program.is_enabled("Redo"), "the step forth")

        steps = {"click": lambda: program.retouch(*next(places), *size),
                 "undo": undo,
                 "redo": redo,
                 "effect": lambda: program.choose_effect(1),
                 "no effect": lambda: program.choose_effect(0),
                 "zoom in": lambda: program.keys("ctrl+plus"),
                 "pan": lambda: program.drag_photo(80, 60),
                 "zoom out": lambda: program.keys("ctrl+minus")}
        seconds = {name: [] for name in steps}
        for _ in range(TRIES):
            for name, step in steps.items():
                with Waiting(shown) as waiting:
                    step()
                    program.wait_for_still_picture()
                seconds[name].append(waiting.longest)
        return seconds

    def slowest_writing(self):
        """The longest time that the plain writing of a state took, of some, all of which are kept."""
        state = self.program.state_images()[0].read_bytes()
        return max(seconds_to_write(state, self.program.temporary / f"copy{number}") for number in range(WRITINGS))

    def check(self, name):
        steps = self.longest_steps(self.photos / name)
        medians = {step: statistics.median(tries) for step, tries in steps.items()}
        print(name, ", ".join(f"{step} {seconds * 1000:.0f} ms" for step, seconds in medians.items()))
        click = min(steps["click"])
        if click > LONGEST_STEP:
            writing = self.slowest_writing()
            print(f"the quickest click {click * 1000:.0f} ms, the slowest plain writing {writing * 1000:.0f} ms")
            self.assertLessEqual(click, MOST_OF_WRITING * writing, "click")
        for step in steps.keys() - {"click"}:
            self.assertLessEqual(medians[step], LONGEST_STEP, step)

    def test_no_step_on_a_large_jpeg_blocks_the_window(self):
        self.check("large.jpg")

    def test_no_step_on_a_large_png_blocks_the_window(self):
        self.check("large.png")


if __name__ == "__main__":
    unittest.main()
