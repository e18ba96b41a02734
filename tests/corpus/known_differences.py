# SPDX-License-Identifier: GPL-3.0-or-later
"""Files of the test photographs that the editor reads otherwise than Pillow and ImageMagick do, or does not open, each
with its reason."""

MASK = "ImageMagick takes the highest value of a mask's bits for less than full"
ALPHA_OF_GREY = "the others undo the gamma of grey pixels or lose their transparency; here it goes into the profile"

KNOWN = {
    "bmpsuite-b/badrle.bmp": "damaged runs: where the damage ends is anyone's guess",
    "bmpsuite-b/pal8badindex.bmp": "indices beyond the palette are black here",
    "bmpsuite-g/rgb32bf.bmp": "ImageMagick sees an alpha mask where the header has none",
    "bmpsuite-q/rgb32-111110.bmp": "ImageMagick sees an alpha mask where the header has none",
    "bmpsuite-q/rgb32h52.bmp": "ImageMagick sees an alpha mask where the header has none",
    "bmpsuite-q/rgb16-231.bmp": MASK,
    "bmpsuite-q/rgba16-4444.bmp": MASK,
    "image-rs/V3_X4_R4_G4_B4_Top_Down.bmp": MASK,
    "image-rs/V5_A1_R5_G5_B5.bmp": "Pillow ignores the alpha mask; " + MASK,
    "pillow/ultrahdr.jpg": "the file ends before the first pixel; ImageMagick shows grey for all of it",
    "pngsuite/tbbn0g04.png": ALPHA_OF_GREY,
    "pngsuite/tbwn0g16.png": ALPHA_OF_GREY,
    "pngsuite/xcsn0g01.png": "damaged image data: the rows before the damage are shown",
    "image-tiff/miniswhite-1c-6b.tiff": "ImageMagick does not turn white-is-zero of 6 bits round",
    "libtiffpic-depth/flower-minisblack-24.tif": "ImageMagick takes 24 bits for 3 samples",
    "libtiffpic-depth/flower-rgb-contig-24.tif": "ImageMagick takes 24 bits for 3 samples",
    "libtiffpic-depth/flower-separated-contig-16.tif": "ImageMagick multiplies inks at 16 bits, the editor at 8",
    "pillow/10ct_32bit_128.tiff": "floating point: 0 to 1 is black to white here, 0 to 255 in Pillow",
    "pillow/multipage-mmap.tiff": "unequal pages: the first is brought to the largest width and height",
    "twelvemonkeys/indexed-unspecified-extrasamples.tif": "ImageMagick takes the unspecified sample for alpha",
}


def reason_for(path, result):
    """Why the file at the end of `path` is what it is; None when nothing is known, or it is opened as others do."""
    if result == "opened":
        return None
    return next((reason for end, reason in KNOWN.items() if path.endswith(end)), None)
