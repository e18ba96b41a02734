# SPDX-License-Identifier: GPL-3.0-or-later
"""Decodes pictures with Pillow and ImageMagick, for comparison: upright, premultiplied RGBA of 8 bits, in sRGB or in
the picture's own RGB space."""

import io
import re
import subprocess
import warnings

import numpy
from PIL import Image, ImageCms, ImageFile, ImageOps

MAX_PIXELS = 240_000_000
SECONDS = 20

Image.MAX_IMAGE_PIXELS = MAX_PIXELS
warnings.simplefilter("ignore")


def premultiplied(straight):
    """Premultiplies by alpha, rounded to nearest: (c a + 127) / 255."""
    wide = straight.astype(numpy.uint32)
    alpha = wide[..., 3:]
    colors = (wide[..., :3] * alpha * 2 + 255) // 510
    return numpy.concatenate([colors, alpha], axis=2).astype(numpy.uint8)


def is_deep(image):
    return image.mode in ("I", "F") or image.mode.startswith("I;16")


def eight_bits(image, bits):
    """A grey picture of deep integers, scaled to 8 bits and rounded. Pillow would clip it."""
    values = numpy.asarray(image)
    if bits == 32:
        values = values.astype(numpy.uint32)
    scaled = numpy.round(values.astype(numpy.float64) * 255 / (2.0**bits - 1))
    return Image.fromarray(numpy.clip(scaled, 0, 255).astype(numpy.uint8))


def bits_of(image):
    """The set of bit depths of its samples."""
    if image.format == "TIFF":
        return set(image.tag_v2.get(258, (1,)))
    if image.format in ("PNG", "BMP") and image.tile:
        raw_mode = image.tile[0][3]
        return {16} if "16" in str(raw_mode) or ";15" in str(raw_mode) else {8}
    return {8}


def by_profile(image, icc):
    """The picture converted to sRGB from its ICC profile or from CIE L*a*b*; None without a usable profile."""
    try:
        if image.mode == "LAB":
            source = ImageCms.createProfile("LAB")
        else:
            source = ImageCms.ImageCmsProfile(io.BytesIO(icc))
            spaces = {"CMYK": "CMYK", "L": "GRAY", "RGB": "RGB", "RGBA": "RGB"}
            if spaces.get(image.mode) != source.profile.xcolor_space.strip():
                return None
        mode = "RGBA" if image.mode == "RGBA" else "RGB"
        exact = 0x0100  # cmsFLAGS_NOOPTIMIZE
        transform = ImageCms.buildTransform(source, ImageCms.createProfile("sRGB"), image.mode, mode,
                                            ImageCms.Intent.RELATIVE_COLORIMETRIC, exact if mode != "RGBA" else 0)
        converted = ImageCms.applyTransform(image, transform)
        if mode == "RGBA":
            converted.putalpha(image.getchannel("A"))
        return converted
    except (TypeError, OSError, AttributeError, ImageCms.PyCMSError):
        return None


def tolerance(file_format, kind):
    """The levels by which two correct decoders may differ: each rounds converted colours and deep samples its own way."""
    if kind == "CMYK":
        return 3
    if file_format == "JPEG":
        return 2
    return 0 if kind == "8 bits" else 1


def kind_of(image):
    """"8 bits" for plain 8-bit RGB and grey, "CMYK", or "other"."""
    if image.mode == "CMYK":
        return "CMYK"
    return "8 bits" if bits_of(image) == {8} and image.mode in ("RGB", "RGBA", "L", "LA") else "other"


def by_pillow(path):
    """(kind, decodings), where each decoding is one correct interpretation; (None, []) if Pillow refuses the file."""
    try:
        with Image.open(path) as image:
            kind, bits, info = kind_of(image), bits_of(image), image.info
            image.load()
            if is_deep(image) and image.mode != "F":
                image = eight_bits(image, max(bits))
            # Pillow has already rotated a TIFF picture on loading.
            upright = image if image.format == "TIFF" else ImageOps.exif_transpose(image)
            pictures = [picture for picture in (by_profile(upright, info.get("icc_profile")), upright) if picture]
            return kind, [premultiplied(numpy.asarray(picture.convert("RGBA"))) for picture in pictures]
    except Exception:  # a decoder may raise anything on a bad file
        return None, []


def by_imagemagick(path):
    """The pixels of the first picture; None if ImageMagick refuses the file."""
    format_by_content = {b"\xff\xd8": "jpeg", b"\x89P": "png", b"GI": "gif", b"BM": "bmp", b"II": "tiff", b"MM": "tiff"}
    try:
        with open(path, "rb") as file:
            kind = format_by_content.get(file.read(2))
        if not kind:
            return None
        done = subprocess.run(["/usr/bin/convert", "-limit", "memory", "1GiB", "-limit", "area", "300MP",
                               f"{kind}:{path}[0]", "-auto-orient", "-colorspace", "sRGB", "-alpha", "on",
                               "-depth", "8", "-format", "%w %h\\n", "-write", "info:fd:2", "rgba:-"],
                              capture_output=True, timeout=SECONDS, check=False)
        if done.returncode != 0:
            return None
        # Warnings may precede and follow this line.
        width, height = (int(side) for side in re.search(rb"^(\d+) (\d+)$", done.stderr, re.MULTILINE).groups())
        return premultiplied(numpy.frombuffer(done.stdout, numpy.uint8).reshape(height, width, 4))
    except (OSError, ValueError, AttributeError, subprocess.TimeoutExpired):
        return None


def difference(pixels, decoding):
    """The (max, mean) difference of two pictures' components; None if the sizes differ. One level of rounding error
    from premultiplying does not count towards the maximum."""
    if pixels.shape != decoding.shape:
        return None
    differences = numpy.abs(pixels.astype(numpy.int16) - decoding)
    by_pixel = differences.max(axis=2)
    by_pixel[(by_pixel == 1) & (pixels[..., 3] < 255)] = 0
    return int(by_pixel.max(initial=0)), float(differences.mean())


ImageFile.LOAD_TRUNCATED_IMAGES = False
