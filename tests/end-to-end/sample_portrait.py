# SPDX-License-Identifier: GPL-3.0-or-later
"""The painted portrait that tests use as a photo: its size, its blemishes, and the program that paints it."""

import csv
import shutil
import subprocess
import tempfile
from pathlib import Path
from typing import NamedTuple

from window_driver import BUILD

SIZE = (1200, 1500)  # pixels
RADIUS = 10  # the initial edit area size, in pixels


class Blemish(NamedTuple):
    x: float  # of its centre, in pixels from the top left
    y: float
    radius: float


def paint(picture):
    """Writes the portrait and returns its blemishes."""
    shutil.copyfile(_painted("png"), picture)
    with open(_painted("csv"), newline="") as file:
        return [Blemish(*(float(row[key]) for key in Blemish._fields)) for row in csv.DictReader(file)]


def _painted(extension):
    """The painter's output, cached beside the program: painting is deterministic and takes seconds."""
    program = BUILD / "tools/sample_portrait"
    kept = program.with_suffix("." + extension)
    if not kept.exists() or kept.stat().st_mtime < program.stat().st_mtime:
        with tempfile.TemporaryDirectory(dir=program.parent) as folder:
            files = [Path(folder, program.name + end) for end in (".png", ".csv")]
            subprocess.run([program, *files], check=True)
            for file in files:
                file.replace(program.parent / file.name)
    return kept
