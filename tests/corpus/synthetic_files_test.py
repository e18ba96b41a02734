# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs files of every common kind, written by other programs, through the editor: it decodes the same pixels as the
other programs, and saves what was not retouched unchanged."""

import subprocess
import tempfile
import unittest
from pathlib import Path

import numpy
from PIL import Image, PngImagePlugin

import corpus

SIZE = (101, 77)  # neither side is a multiple of a block, a tile or 8 bits
ORIENTATION = 0x0112


def painting(mode):
    """Smooth gradients with a little noise, like a photograph."""
    width, height = SIZE
    across, down = numpy.meshgrid(numpy.linspace(0, 1, width), numpy.linspace(0, 1, height))
    noise = numpy.random.default_rng(7).integers(-4, 5, (height, width))
    planes = [200 * across + 30, 120 * down + 90, 150 * (1 - across * down) + 40]
    colors = [numpy.clip(plane + noise, 0, 255).astype(numpy.uint8) for plane in planes]
    alpha = numpy.clip(400 * down - 60, 0, 255).astype(numpy.uint8)
    picture = Image.fromarray(numpy.dstack([*colors, alpha]), "RGBA")
    return picture if mode == "RGBA" else picture.convert("RGB").convert(mode)


def run(*command):
    subprocess.run([str(argument) for argument in command], check=True, capture_output=True)


def convert(*arguments):
    run("/usr/bin/convert", *arguments)


class SyntheticFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.sources = cls.folder / "sources"
        cls.sources.mkdir()
        for mode in ("RGB", "RGBA", "L", "1"):
            painting(mode).save(cls.sources / f"{mode}.png")
            painting(mode).save(cls.sources / f"{mode}.tif")
        painting("RGB").save(cls.sources / "RGB.ppm")
        convert(cls.sources / "RGB.png", "-depth", "16", "-evaluate", "multiply", "0.93", cls.sources / "deep.tif")

    def check(self, name, make):
        """Has `make` write a file of that name and runs it through the editor."""
        with self.subTest(name):
            photo = self.folder / name
            make(photo)
            outcome = corpus.examine(photo, self.folder)
            self.assertEqual(outcome.result, "opened", outcome.why)
            self.assertNotEqual(outcome.difference, "", "no other program decodes it")

    def check_command(self, name, *command):
        self.check(name, lambda photo: run(*command, photo))

    def test_jpeg_codings(self):
        for name, options in {
            "baseline": [], "progressive": ["-progressive"], "arithmetic": ["-arithmetic"],
            "progressive arithmetic": ["-progressive", "-arithmetic"], "restart": ["-restart", "3B"],
            "grey": ["-grayscale"], "rgb": ["-rgb"], "4x4x4": ["-sample", "1x1"], "4x2x2": ["-sample", "2x1"],
            "4x1x1": ["-sample", "4x1"], "4x4x0": ["-sample", "1x2"], "progressive 4x1x1": ["-progressive", "-sample", "4x1"],
        }.items():
            self.check(f"{name}.jpg", lambda photo, options=options:
                       run("cjpeg", "-quality", 88, *options, "-outfile", photo, self.sources / "RGB.ppm"))
        self.check("cmyk.jpg", lambda photo: painting("CMYK").save(photo, quality=92))
        self.check("ycck.jpg", lambda photo: convert(self.sources / "RGB.png", "-colorspace", "CMYK", photo))

    def test_png_color_types(self):
        kinds = [(0, 1), (0, 2), (0, 4), (0, 8), (0, 16), (2, 8), (2, 16), (3, 1), (3, 2), (3, 4), (3, 8), (4, 8), (4, 16),
                 (6, 8), (6, 16)]
        for color_type, depth in kinds:
            for interlace in ("None", "PNG"):
                source = self.sources / ("RGBA.png" if color_type >= 4 else "RGB.png")
                grey = ["-colorspace", "Gray"] if color_type in (0, 4) else []
                colors = ["-colors", 2**depth] if color_type == 3 else []
                self.check(f"type {color_type} of {depth} bits {interlace}.png", lambda photo: convert(
                    source, *grey, *colors, "-depth", depth, "-interlace", interlace, "-define",
                    f"png:color-type={color_type}", "-define", f"png:bit-depth={depth}", photo))

    def test_png_chunks(self):
        self.check("key.png", lambda photo: painting("RGB").save(photo, transparency=painting("RGB").getpixel((3, 3))))
        self.check("palette alpha.png", lambda photo: painting("RGB").quantize(16).save(photo, transparency=bytes(range(0, 256, 16))))
        self.check("dense.png", lambda photo: painting("RGB").save(photo, dpi=(300, 300)))
        self.check("animated.png", lambda photo: painting("RGBA").save(
            photo, save_all=True, append_images=[painting("RGBA").rotate(180)], duration=100))
        texts = PngImagePlugin.PngInfo()
        texts.add_text("Author", "somebody")
        texts.add_itxt("Title", "Gesicht \N{EM DASH} \u5199\u771f", "de", "Titel")
        texts.add_text("Comment", "packed " * 50, zip=True)
        self.check("texts.png", lambda photo: painting("RGB").save(photo, pnginfo=texts))

    def test_tiff_codings(self):
        for name, source, options in [
            ("plain", "RGB", []), ("big-endian", "RGB", ["-B"]), ("bigtiff", "RGB", ["-8"]),
            ("bigtiff big-endian tiled", "RGBA", ["-8", "-B", "-t", "-w", 32, "-l", 16]), ("tiled", "RGB", ["-t", "-w", 32, "-l", 48]),
            ("planar", "RGB", ["-p", "separate"]), ("planar tiled", "RGBA", ["-p", "separate", "-t", "-w", 64, "-l", 16]),
            ("lzw", "RGB", ["-c", "lzw:2"]), ("deflate", "RGBA", ["-c", "zip:2"]), ("packbits", "L", ["-c", "packbits"]),
            ("short strips", "RGB", ["-r", 3, "-c", "lzw"]), ("jpeg", "RGB", ["-c", "jpeg:90", "-r", 16]),
            ("jpeg rgb tiled", "RGB", ["-c", "jpeg:r:90", "-t", "-w", 32, "-l", 32]), ("grey jpeg", "L", ["-c", "jpeg"]),
            ("fax 3", "1", ["-c", "g3"]), ("fax 3 in two directions", "1", ["-c", "g3:2d"]), ("fax 4", "1", ["-c", "g4"]),
            ("lsb first", "1", ["-f", "lsb2msb"]), ("deep", "deep", []), ("deep big-endian", "deep", ["-B", "-c", "lzw:2"]),
            ("deep tiled", "deep", ["-t", "-w", 32, "-l", 16]),
        ]:
            self.check_command(f"{name}.tif", "tiffcp", *options, self.sources / f"{source}.tif")

    def test_tiff_colors(self):
        for alpha in ("associated", "unassociated"):
            self.check(f"{alpha}.tif", lambda photo: convert(self.sources / "RGBA.png", "-define", f"tiff:alpha={alpha}", photo))
        self.check("palette.tif", lambda photo: painting("RGB").quantize(200).save(photo))
        self.check("cmyk.tif", lambda photo: painting("CMYK").save(photo))
        self.check("two pages.tif", lambda photo: painting("RGB").save(
            photo, save_all=True, append_images=[painting("RGB").rotate(180)]))
        self.check("dense.tiff", lambda photo: painting("RGB").save(photo, dpi=(300, 300), artist="somebody"))

    def test_gif_kinds(self):
        few = painting("RGB").quantize(60)
        self.check("plain.gif", few.save)
        self.check("interlaced.gif", lambda photo: few.save(photo, interlace=1))
        self.check("transparent.gif", lambda photo: few.save(photo, transparency=7, comment=b"a comment"))
        self.check("animated.gif", lambda photo: few.save(photo, save_all=True, append_images=[few.rotate(180)], loop=0))
        self.check("full.gif", painting("RGB").quantize(256).save)

    def test_bmp_kinds(self):
        for name, options in {
            "1 bit.bmp": ["-monochrome", "-type", "Palette"], "4 bits.bmp": ["-colors", 12, "-type", "Palette"],
            "8 bits.bmp": ["-colors", 200, "-type", "Palette"],
            "runs.bmp": ["-colors", 200, "-type", "Palette", "-compress", "RLE"], "24 bits.bmp": ["-type", "TrueColor"],
        }.items():
            self.check(name, lambda photo: convert(self.sources / "RGB.png", *options, f"bmp3:{photo}"))
        self.check("os2.bmp", lambda photo: convert(self.sources / "RGB.png", f"bmp2:{photo}"))
        self.check("version 4.bmp", lambda photo: convert(self.sources / "RGB.png", f"bmp:{photo}"))
        self.check("alpha.bmp", lambda photo: convert(self.sources / "RGBA.png", f"bmp:{photo}"))
        self.check("565.bmp", lambda photo: convert(self.sources / "RGB.png", "-define", "bmp:subtype=RGB565", photo))
        self.check("555.bmp", lambda photo: convert(self.sources / "RGB.png", "-define", "bmp:subtype=RGB555", photo))

    def test_orientations(self):
        for extension in ("jpg", "png", "tif"):
            for value in range(1, 9):
                exif = Image.Exif()
                exif[ORIENTATION] = value
                self.check(f"orientation {value}.{extension}", lambda photo: painting("RGB").save(photo, exif=exif))


if __name__ == "__main__":
    unittest.main()
