# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks with two other decoders that a saved JPEG photo has exactly its source's pixels outside the MCUs that the
click touched."""

import collections
import re
import statistics
import subprocess

import numpy
from PIL import Image

DISC_RADIUS = 10  # of the session's click, in the centre of the picture
SECONDS = 20

# The limits, for files that are not deliberately broken.
MAX_CAMERA_FALLBACKS = 0.01
MAX_MEDIAN_GROWTH = 1.3
MAX_GROWTH = 1.75
MIN_PIXELS_FOR_GROWTH = 400_000  # in smaller files, headers and tables weigh too much

EXACT = "yes"


def stored_by_pillow(path):
    """The pixels as stored (not rotated), as RGB; None if Pillow refuses the file."""
    try:
        with Image.open(path) as image:
            return numpy.asarray(image.convert("RGB"))
    except Exception:  # a decoder may raise anything on a bad file
        return None


def stored_by_imagemagick(path):
    """The pixels as stored (not rotated), as RGB; None if ImageMagick refuses the file."""
    try:
        done = subprocess.run(["/usr/bin/convert", "-limit", "memory", "1GiB", "-limit", "area", "300MP", f"jpeg:{path}",
                               "-set", "colorspace", "sRGB", "-depth", "8", "-format", "%w %h\\n", "-write", "info:fd:2",
                               "rgb:-"],
                              capture_output=True, timeout=SECONDS, check=False)
        width, height = (int(side) for side in re.search(rb"^(\d+) (\d+)$", done.stderr, re.MULTILINE).groups())
        return numpy.frombuffer(done.stdout, numpy.uint8).reshape(height, width, 3)
    except (OSError, ValueError, AttributeError, subprocess.TimeoutExpired):
        return None


def sampling_of(path):
    """The sampling factors (horizontal, vertical) of each component; empty if Pillow cannot read them."""
    try:
        with Image.open(path) as image:
            return [(layer[1], layer[2]) for layer in image.layer]
    except Exception:
        return []


def kind_of(path):
    """The file's coding, as a heading for the table."""
    try:
        with Image.open(path) as image:
            coding = "progressive" if image.info.get("progressive") else "sequential"
            sampling = ",".join(f"{layer[1]}x{layer[2]}" for layer in image.layer)
            return f"{image.mode} {sampling} {coding}"
    except Exception:
        return "not readable by Pillow"


def touched_by_click(size, mcu):
    """The slices (rows, columns) of the MCUs that the disc in the centre may touch, at any orientation."""
    def part(length, block):
        first = max(0, length // 2 - DISC_RADIUS - 2) // block * block
        return slice(first, (min(length - 1, length // 2 + DISC_RADIUS + 2) // block + 1) * block)
    width, height = size
    return part(height, mcu[1]), part(width, mcu[0])


def changed_outside(photo, saved):
    """What is wrong with the saved file; empty if every pixel outside the click's MCUs equals the source's."""
    sampling = sampling_of(photo)
    if not sampling:
        return ""
    is_grey = len(sampling) == 1  # the MCU of a scan with one component is one block
    mcu = (8, 8) if is_grey else (8 * max(across for across, _ in sampling), 8 * max(down for _, down in sampling))
    for name, decode in (("Pillow", stored_by_pillow), ("ImageMagick", stored_by_imagemagick)):
        before, after = decode(photo), decode(saved)
        if before is None:
            continue
        if after is None or before.shape != after.shape:
            return f"{name} decodes a different size or nothing"
        differs = numpy.any(before != after, axis=2)
        differs[touched_by_click(before.shape[1::-1], mcu)] = False
        if count := int(differs.sum()):
            return f"{count} pixels outside the touched MCUs differ ({name})"
    return ""


def print_table(outcomes):
    """Prints how the JPEG files were saved. Returns whether enough were saved exactly, and small enough."""
    saved = [outcome for outcome in outcomes if outcome.exact]
    kinds = collections.defaultdict(collections.Counter)
    for outcome in saved:
        kinds[outcome.kind][outcome.exact] += 1
    print(f"\n{'JPEG files':50}{'exact':>7}{'fallback':>10}")
    for kind, counts in sorted(kinds.items()):
        fallbacks = {reason: count for reason, count in counts.items() if reason != EXACT}
        why = "; ".join(f"{count} {reason}" for reason, count in sorted(fallbacks.items()))
        print(f"{kind:50}{counts[EXACT]:>7}{sum(fallbacks.values()):>10}  {why}")
    cameras = [outcome for outcome in saved if not outcome.broken and outcome.camera]
    fallbacks = [outcome for outcome in cameras if outcome.exact != EXACT]
    good = len(fallbacks) <= MAX_CAMERA_FALLBACKS * len(cameras)
    print(f"{len(fallbacks)} of {len(cameras)} camera files fall back{'' if good else ' (too many)'}")
    for outcome in fallbacks:
        print(f"    {outcome.path}: {outcome.exact}")
    growths = [outcome.growth for outcome in saved
               if outcome.exact == EXACT and not outcome.broken and outcome.pixels >= MIN_PIXELS_FOR_GROWTH]
    if growths:
        small = statistics.median(growths) <= MAX_MEDIAN_GROWTH and max(growths) <= MAX_GROWTH
        print(f"size relative to the source, {len(growths)} files above 0.4 megapixels: "
              f"median {statistics.median(growths):.2f}, max {max(growths):.2f}{'' if small else ' (too large)'}")
        good = good and small
    return good
