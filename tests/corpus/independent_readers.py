# SPDX-License-Identifier: GPL-3.0-or-later
"""What other programs read from a picture file: Pillow and ImageMagick, upright, as 8-bit sRGB or in the picture's own
RGB space, red, green, blue and alpha premultiplied."""

import io
import re
import subprocess
import warnings

import numpy
from PIL import Image, ImageCms, ImageFile, ImageOps

MOST_PIXELS = 240_000_000
SECONDS = 20

Image.MAX_IMAGE_PIXELS = MOST_PIXELS
warnings.simplefilter("ignore")


def premultiplied(straight):
    """Rounded as the product of two values of 0 to 255 is: (c a + 127) / 255."""
    wide = straight.astype(numpy.uint32)
    alpha = wide[..., 3:]
    colors = (wide[..., :3] * alpha * 2 + 255) // 510
    return numpy.concatenate([colors, alpha], axis=2).astype(numpy.uint8)


def is_deep(image):
    return image.mode in ("I", "F") or image.mode.startswith("I;16")


def eight_bits(image, bits):
    """A grey picture of deep integers, scaled and rounded. Pillow would clip it."""
    values = numpy.asarray(image)
    if bits == 32:
        values = values.astype(numpy.uint32)
    scaled = numpy.round(values.astype(numpy.float64) * 255 / (2.0**bits - 1))
    return Image.fromarray(numpy.clip(scaled, 0, 255).astype(numpy.uint8))


def bits_of(image):
    """The bits of its samples, each number once."""
    if image.format == "TIFF":
        return set(image.tag_v2.get(258, (1,)))
    if image.format in ("PNG", "BMP") and image.tile:
        raw_mode = image.tile[0][3]
        return {16} if "16" in str(raw_mode) or ";15" in str(raw_mode) else {8}
    return {8}


def by_profile(image, icc):
    """The picture in sRGB, by an ICC profile or from CIE L*a*b*; None without a usable profile."""
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
    """Levels that two right readings may be apart: coded colours and deep samples are rounded by each its way."""
    if kind == "CMYK":
        return 3
    if file_format == "JPEG":
        return 2
    return 0 if kind == "8 bits" else 1


def kind_of(image):
    """"8 bits" for RGB and grey of just that, otherwise what else must be known of the samples."""
    if image.mode == "CMYK":
        return "CMYK"
    return "8 bits" if bits_of(image) == {8} and image.mode in ("RGB", "RGBA", "L", "LA") else "other"


def by_pillow(path):
    """(kind, readings): each reading the pixels in one way that is right; (None, []) when Pillow refuses the file."""
    try:
        with Image.open(path) as image:
            kind, bits, info = kind_of(image), bits_of(image), image.info
            image.load()
            if is_deep(image) and image.mode != "F":
                image = eight_bits(image, max(bits))
            # A TIFF file's picture was turned as it was loaded.
            upright = image if image.format == "TIFF" else ImageOps.exif_transpose(image)
            pictures = [picture for picture in (by_profile(upright, info.get("icc_profile")), upright) if picture]
            return kind, [premultiplied(numpy.asarray(picture.convert("RGBA"))) for picture in pictures]
    except Exception:  # whatever a foreign decoder comes up with: it refuses the file
        return None, []


def by_imagemagick(path):
    """The first picture's pixels; None when ImageMagick refuses the file or complains of it."""
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
        # Among warnings, before and behind.
        width, height = (int(side) for side in re.search(rb"^(\d+) (\d+)$", done.stderr, re.MULTILINE).groups())
        return premultiplied(numpy.frombuffer(done.stdout, numpy.uint8).reshape(height, width, 4))
    except (OSError, ValueError, AttributeError, subprocess.TimeoutExpired):
        return None


def difference(pixels, reading):
    """(most, mean): how far two pictures' components are apart; None for pictures of two sizes. One level that comes
    and goes with multiplying by alpha does not count."""
    if pixels.shape != reading.shape:
        return None
    apart = numpy.abs(pixels.astype(numpy.int16) - reading)
    by_pixel = apart.max(axis=2)
    by_pixel[(by_pixel == 1) & (pixels[..., 3] < 255)] = 0
    return int(by_pixel.max(initial=0)), float(apart.mean())


ImageFile.LOAD_TRUNCATED_IMAGES = False
