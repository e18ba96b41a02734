# SPDX-License-Identifier: GPL-3.0-or-later
"""The painted portrait that stands for a photo: the program that paints it, its size and its blemishes."""

import csv
import subprocess
import tempfile
from pathlib import Path
from typing import NamedTuple

from window_driver import BUILD

SIZE = (1200, 1500)  # pixels
RADIUS = 10  # the edit area that the window starts with


class Blemish(NamedTuple):
    x: float  # of its middle, in pixels from the top left
    y: float
    radius: float


def paint(picture):
    """Writes the portrait and returns its blemishes."""
    with tempfile.TemporaryDirectory() as folder:
        places = Path(folder, "blemishes.csv")
        subprocess.run([BUILD / "tools/sample_portrait", picture, places], check=True)
        with open(places, newline="") as file:
            return [Blemish(*(float(row[key]) for key in Blemish._fields)) for row in csv.DictReader(file)]
