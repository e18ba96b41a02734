# SPDX-License-Identifier: GPL-3.0-or-later
"""Colour profiles of monitors, and what Little CMS makes of them."""

import ctypes
import struct

import numpy
from PIL import Image

MAX_DIFFERENCE = 0.5  # CIEDE2000
PATCH = 40  # pixels
COLUMNS, ROWS = 16, 12


def _fixed(value):
    return struct.pack(">i", round(value * 65536))


def monitor_profile(gamma=2.2, turned=False):
    """An ICC profile (version 2.4) of a monitor with a wide gamut, or with its red and green exchanged."""
    white = (0.9642, 1, 0.8249)  # D50
    red, green, blue = (0.6097, 0.3111, 0.0195), (0.2053, 0.6257, 0.0609), (0.1492, 0.0632, 0.7445)
    if turned:
        red, green = green, red

    def xyz(color):
        return b"XYZ " + bytes(4) + b"".join(map(_fixed, color))
    curve = b"curv" + bytes(4) + struct.pack(">IH", 1, round(gamma * 256)) + bytes(2)
    text = b"desc" + bytes(4) + struct.pack(">I", 8) + b"monitor\0" + bytes(78 + 2)
    tags = {b"desc": text, b"wtpt": xyz(white), b"rXYZ": xyz(red), b"gXYZ": xyz(green), b"bXYZ": xyz(blue),
            b"rTRC": curve, b"gTRC": curve, b"bTRC": curve, b"cprt": b"text" + bytes(4) + b"none\0\0\0\0"}
    data, table = b"", struct.pack(">I", len(tags))
    for name, content in tags.items():
        table += name + struct.pack(">II", 128 + 4 + 12 * len(tags) + len(data), len(content))
        data += content + bytes(-len(content) % 4)
    size = 128 + len(table) + len(data)
    header = struct.pack(">I4sI4s4s4s12s4s", size, b"none", 0x02400000, b"mntr", b"RGB ", b"XYZ ", bytes(12), b"acsp")
    header = header.ljust(68, b"\0") + b"".join(map(_fixed, white))
    return header.ljust(128, b"\0") + table + data


def colour_chart(path, with_profile=None):
    """Saves a picture of patches of many colours. Returns their colours, row by row."""
    random = numpy.random.default_rng(7)
    colours = random.integers(0, 256, (ROWS, COLUMNS, 3)).astype(numpy.uint8)
    colours[0] = numpy.linspace(0, 255, COLUMNS).astype(numpy.uint8)[:, None]  # greys
    Image.fromarray(colours.repeat(PATCH, 0).repeat(PATCH, 1)).save(path, icc_profile=with_profile)
    return colours


def patches(picture):
    """The colours at the centres of the patches of the fitted chart in a picture of the view."""
    scale = min(picture.width / (COLUMNS * PATCH), picture.height / (ROWS * PATCH))
    left = (picture.width - COLUMNS * PATCH * scale) / 2
    top = (picture.height - ROWS * PATCH * scale) / 2
    return numpy.array([[picture.getpixel((round(left + (column + 0.5) * PATCH * scale),
                                           round(top + (row + 0.5) * PATCH * scale)))
                         for column in range(COLUMNS)] for row in range(ROWS)], dtype=float)


class LittleCms:
    """Colours on a monitor with this profile."""

    _RGB, _LAB = 0x440018, 0x4a0018  # three doubles: TYPE_RGB_DBL and TYPE_Lab_DBL
    _RELATIVE_COLORIMETRIC, _NOOPTIMIZE = 1, 0x100

    def __init__(self, profile):
        self.library = ctypes.CDLL("liblcms2.so.2")
        for function in ("cmsOpenProfileFromMem", "cmsCreate_sRGBProfile", "cmsCreateLab4Profile",
                         "cmsCreateTransform"):
            getattr(self.library, function).restype = ctypes.c_void_p
        self.library.cmsCIE2000DeltaE.restype = ctypes.c_double
        self.monitor = self._open(profile)

    def _open(self, profile):
        if profile is None:
            return ctypes.c_void_p(self.library.cmsCreate_sRGBProfile())
        return ctypes.c_void_p(self.library.cmsOpenProfileFromMem(profile, len(profile)))

    def _converted(self, values, source, target, kind):
        transform = ctypes.c_void_p(self.library.cmsCreateTransform(source, self._RGB, target, kind,
                                                                    self._RELATIVE_COLORIMETRIC, self._NOOPTIMIZE))
        values = numpy.ascontiguousarray(values, dtype=numpy.float64)
        result = numpy.empty_like(values)
        self.library.cmsDoTransform(transform, ctypes.c_void_p(values.ctypes.data), ctypes.c_void_p(result.ctypes.data),
                                    values.size // 3)
        return result

    def levels(self, colours, source=None):
        """The monitor's levels, not rounded, for colours of the profile `source` (default: sRGB)."""
        values = self._converted(colours / 255, self._open(source), self.monitor, self._RGB)
        return values.clip(0, 1) * 255

    def difference(self, shown, levels):
        """The largest difference (CIEDE2000) between colours on the monitor and these levels, apart from rounding."""
        nearest = levels.clip(shown - 0.5, shown + 0.5)
        lab = ctypes.c_void_p(self.library.cmsCreateLab4Profile(None))
        seen, wanted = (self._converted(colours / 255, self.monitor, lab, self._LAB).reshape(-1, 3)
                        for colours in (nearest, levels))
        one = ctypes.c_double(1)
        return max(self.library.cmsCIE2000DeltaE(ctypes.c_void_p(a.ctypes.data), ctypes.c_void_p(b.ctypes.data),
                                                 one, one, one) for a, b in zip(seen, wanted))
