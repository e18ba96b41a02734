# SPDX-License-Identifier: GPL-3.0-or-later
"""What a saved JPEG photo keeps of its source, by the pixels that two other programs decode: everything outside the
MCUs that the click touched."""

import collections
import re
import statistics
import subprocess

import numpy
from PIL import Image

DISC_RADIUS = 10  # of the session's click in the middle
SECONDS = 20

# What must hold of files that are not broken on purpose.
MOST_FALLBACKS_OF_CAMERAS = 0.01
MOST_GROWTH_MEDIAN = 1.3
MOST_GROWTH = 1.75
LEAST_PIXELS_FOR_GROWTH = 400_000  # of smaller files the headers and codes are a large part

EXACT = "yes"


def stored_by_pillow(path):
    """Red, green and blue as they are stored; None when Pillow refuses the file."""
    try:
        with Image.open(path) as image:
            return numpy.asarray(image.convert("RGB"))
    except Exception:  # whatever a foreign decoder comes up with: it refuses the file
        return None


def stored_by_imagemagick(path):
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
    """(width, height) of each component's blocks in an MCU; empty when Pillow cannot tell."""
    try:
        with Image.open(path) as image:
            return [(layer[1], layer[2]) for layer in image.layer]
    except Exception:
        return []


def kind_of(path):
    """The coding of a file, in words: for the table."""
    try:
        with Image.open(path) as image:
            coding = "progressive" if image.info.get("progressive") else "sequential"
            sampling = ",".join(f"{layer[1]}x{layer[2]}" for layer in image.layer)
            return f"{image.mode} {sampling} {coding}"
    except Exception:
        return "unreadable to others"


def touched_by_click(size, mcu):
    """The slices (rows, columns) of the MCUs that the disc in the middle may touch, however the picture is turned."""
    def part(length, block):
        first = max(0, length // 2 - DISC_RADIUS - 2) // block * block
        return slice(first, (min(length - 1, length // 2 + DISC_RADIUS + 2) // block + 1) * block)
    width, height = size
    return part(height, mcu[1]), part(width, mcu[0])


def changed_outside(photo, saved):
    """What is wrong with the saved file; empty when every pixel outside the click's MCUs is the source's."""
    sampling = sampling_of(photo)
    if not sampling:
        return ""
    alone = len(sampling) == 1  # then a scan's MCU is one block
    mcu = (8, 8) if alone else (8 * max(across for across, _ in sampling), 8 * max(down for _, down in sampling))
    for name, decode in (("Pillow", stored_by_pillow), ("ImageMagick", stored_by_imagemagick)):
        before, after = decode(photo), decode(saved)
        if before is None:
            continue
        if after is None or before.shape != after.shape:
            return f"{name} sees another size or nothing"
        apart = numpy.any(before != after, axis=2)
        apart[touched_by_click(before.shape[1::-1], mcu)] = False
        if count := int(apart.sum()):
            return f"{count} pixels outside the touched MCUs differ ({name})"
    return ""


def print_table(outcomes):
    """How the JPEG files were saved; whether enough of them exactly, and small enough."""
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
    good = len(fallbacks) <= MOST_FALLBACKS_OF_CAMERAS * len(cameras)
    print(f"of {len(cameras)} files of cameras {len(fallbacks)} fall back{'' if good else ' (too many)'}")
    for outcome in fallbacks:
        print(f"    {outcome.path}: {outcome.exact}")
    growths = [outcome.growth for outcome in saved
               if outcome.exact == EXACT and not outcome.broken and outcome.pixels >= LEAST_PIXELS_FOR_GROWTH]
    if growths:
        small = statistics.median(growths) <= MOST_GROWTH_MEDIAN and max(growths) <= MOST_GROWTH
        print(f"size against the source's, {len(growths)} files above 0.4 megapixels: median {statistics.median(growths):.2f}, "
              f"most {max(growths):.2f}{'' if small else ' (too much)'}")
        good = good and small
    return good
