# SPDX-License-Identifier: GPL-3.0-or-later
"""Where two picture files differ."""

import math

from PIL import Image, ImageChops


def changed_pixels(before, after):
    """The differing pixels of two pictures of the same size, as a list of (x, y, maximum difference of a component)."""
    with Image.open(before) as one, Image.open(after) as other:
        one, other = one.convert("RGB"), other.convert("RGB")
    if one.size != other.size:
        raise AssertionError(f"sizes differ: {one.size}, {other.size}")
    red, green, blue = ImageChops.difference(one, other).split()
    most = ImageChops.lighter(ImageChops.lighter(red, green), blue)
    pixels = most.load()
    left, top, right, bottom = most.getbbox() or (0, 0, 0, 0)
    return [(x, y, pixels[x, y]) for y in range(top, bottom) for x in range(left, right) if pixels[x, y]]


def check_only_discs_changed(before, after, places, radius):
    """Fails unless every change is in a disc around one of `places` and every disc has a change."""
    touched = set()
    for x, y, _ in changed_pixels(before, after):
        inside = [place for place in places if math.dist(place, (x, y)) <= radius]
        if not inside:
            raise AssertionError(f"pixel {x}, {y} has changed, outside every disc")
        touched.update(inside)
    if missing := set(places) - touched:
        raise AssertionError(f"nothing has changed around {sorted(missing)}")
