# SPDX-License-Identifier: GPL-3.0-or-later
"""Test photographs that the editor decodes differently from Pillow and ImageMagick, or does not open, each with the
reason."""

MASK = "ImageMagick does not scale the maximum of a bit mask to full intensity"
ALPHA_OF_GREY = "the others apply the gamma of grey pixels or lose their transparency; here the profile holds the gamma"

NO_ALPHA_MASK = "ImageMagick reads an alpha mask although the header has none"

KNOWN = {
    "bmpsuite-b/badrle.bmp": "damaged run-length codes: decoders resynchronise differently",
    "bmpsuite-b/pal8badindex.bmp": "palette indices out of range are black here",
    "bmpsuite-g/rgb32bf.bmp": NO_ALPHA_MASK,
    "bmpsuite-q/rgb32-111110.bmp": NO_ALPHA_MASK,
    "bmpsuite-q/rgb32h52.bmp": NO_ALPHA_MASK,
    "bmpsuite-q/rgb16-231.bmp": MASK,
    "bmpsuite-q/rgba16-4444.bmp": MASK,
    "image-rs/V3_X4_R4_G4_B4_Top_Down.bmp": MASK,
    "image-rs/V5_A1_R5_G5_B5.bmp": "Pillow ignores the alpha mask; " + MASK,
    "pillow/ultrahdr.jpg": "the file ends before the first pixel; ImageMagick fills the picture with grey",
    "pngsuite/tbbn0g04.png": ALPHA_OF_GREY,
    "pngsuite/tbwn0g16.png": ALPHA_OF_GREY,
    "pngsuite/xcsn0g01.png": "damaged image data: the rows before the damage are shown",
    "image-tiff/miniswhite-1c-6b.tiff": "ImageMagick does not invert white-is-zero samples of 6 bits",
    "libtiffpic-depth/flower-minisblack-24.tif": "ImageMagick reads a 24-bit sample as three samples",
    "libtiffpic-depth/flower-rgb-contig-24.tif": "ImageMagick reads a 24-bit sample as three samples",
    "libtiffpic-depth/flower-separated-contig-16.tif": "ImageMagick multiplies CMYK inks at 16 bits, the editor at 8",
    "pillow/10ct_32bit_128.tiff": "floating point: black to white is 0 to 1 here, 0 to 255 in Pillow",
    "pillow/multipage-mmap.tiff": "pages of different sizes: the first is scaled to the largest width and height",
    "twelvemonkeys/indexed-unspecified-extrasamples.tif": "ImageMagick treats the unspecified extra sample as alpha",
}


def reason_for(path, result):
    """The known reason for this result; None if there is none, or if the file was opened without differences."""
    if result == "opened":
        return None
    return next((reason for end, reason in KNOWN.items() if path.endswith(end)), None)
