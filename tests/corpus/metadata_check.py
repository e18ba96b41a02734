# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares by exiftool what metadata a saved file has with what its source has."""

import collections
import json
import re
import subprocess
import tempfile

# What may differ between a photo and the file saved from it, and why: the one list. The editor's own rules, of which
# these are what exiftool sees, are told in imaging/metadata/carrying.h. A pattern stands for a whole "Group:Tag".
EXCEPTIONS = [(re.compile(pattern), reason) for pattern, reason in [
    (r"SourceFile|(ExifTool|System|Composite):.*", "speaks of the file, not of the picture"),
    (r"File:(?!Comment).*", "size, byte order and coding of the file"),
    (r"(Adobe|Ducky|JPS|AVI1|SPIFF|Qualcomm):.*", "how the source's pixels are coded"),
    (r"JFIF:(Thumbnail|JFIFVersion).*|JFXX:.*", "thumbnail; the version is that of the new file"),
    (r"(Canon|PreviewIFD):PreviewImageStart", "counted from the file's beginning, and a JFIF segment more or less"),
    (r"(MPF\d|MPImage\d):.*", "other pictures in the file, whose offsets no longer hold"),
    (r"(FotoStation|PhotoMechanic|IPTC2|CanonVRD|Samsung|HDRGainMap\w*|XMP-(hdrgm|GContainer|Container)):.*",
     "behind the JPEG file's end, or of other pictures there"),
    (r"IFD1:.*", "the thumbnail: made anew, or gone where the source's is no picture"),
    (r"IFD([2-9]|\d\d+):.*|SubIFD\d*:.*|GlobParamIFD:.*", "further pages and pictures"),
    (r"IFD0:(BitsPerSample|CleanFaxData|ColorMap|ColorResponseUnit|Compression|DataType|DotRange|ExtraSamples|"
     r"FillOrder|Free\w+|Gray\w+|HalftoneHints|ImageDepth|ImageHeight|ImageWidth|InkNames|InkSet|JPEG\w+|"
     r"M(ax|in)SampleValue|NumberofInks|OldSubfileType|PageNumber|PhotometricInterpretation|PlanarConfiguration|"
     r"Predictor|PrimaryChromaticities|ReferenceBlackWhite|RowsPerStrip|S(Max|Min)SampleValue|SampleFormat|"
     r"SamplesPerPixel|StoNits|Strip(ByteCounts|Offsets)|SubfileType|T[46]Options|TargetPrinter|Thresholding|Tile\w+|"
     r"TransferFunction|TransferRange|WhitePoint|YCbCr\w+)", "how the source's pixels are coded"),
    (r"IFD0:(Other|Preview|Jpg)(Image|FromRaw)\w*|IFD0:Thumbnail\w+", "other pictures in the file"),
    (r"Photoshop:(Layer\w+|NumSlices|Photoshop\w*Thumbnail|AlphaChannels\w+|\w*Thumbnail\w*)",
     "layers and thumbnails: the picture before"),
    (r"(XMP-xmp|XMP):Thumbnails?\w*", "thumbnail"),
    (r"XMP-GImage:ImageData", "the picture before"),
    (r"(PNG|PNG-APNG):(Animation\w+|AppleDataOffsets|BackgroundColor|BitDepth|ColorType|Compression|Filter|Interlace|"
     r"Palette\w*|SignificantBits|SuggestedPalette|Transparency|ImageWidth|ImageHeight|StereoMode|FractalParameters|"
     r"SRGBRendering|Gamma|WhitePoint[XY]|(Red|Green|Blue)[XY]|ProfileName|ICC_Profile|CICP\w*)|PNG-cICP:.*",
     "how the source's pixels are coded; their colours go into a profile"),
    (r"GIF:(Animation\w+|BackgroundColor|BitsPerPixel|ColorResolutionDepth|Duration|FrameCount|GIFVersion|HasColorMap|"
     r"TransparentColor|ImageWidth|ImageHeight)", "how the source's pixels are coded; animation"),
]]

# A colour profile is lost where it is none of the pixels': those of grey and CMYK sources, and unusable ones.
PROFILE = re.compile(r"ICC[-_].*|.*:ICC_Profile\w*")

RESOLUTION = ["XResolution", "YResolution", "ResolutionUnit"]

SECONDS = 600


def readings(paths):
    """{path: {"Group:Tag": values}}: all that exiftool reads, binary values whole."""
    with tempfile.NamedTemporaryFile("w", suffix=".args") as arguments:
        arguments.write("".join(f"{path}\n" for path in paths))
        arguments.flush()
        text = subprocess.run(["exiftool", "-json", "-G1", "-a", "-b", "-n", "-u", "-charset", "filename=utf8", "-@",
                               arguments.name], capture_output=True, timeout=SECONDS, check=False).stdout
    # Names that come more than once must all be kept, as lists.
    def collected(pairs):
        found = collections.defaultdict(list)
        for name, value in pairs:
            found[name].append(value)
        return dict(found)
    return {reading["SourceFile"][0]: reading for reading in json.loads(text or b"[]", object_pairs_hook=collected)}


def exception_for(name):
    return next((reason for pattern, reason in EXCEPTIONS if pattern.fullmatch(name)), None)


def has_its_density_in_exif(before, after):
    """Whether a file that can have no JFIF segment, as its components are red, green and blue, tells the density that
    the source's JFIF segment tells, or the source's own EXIF; a bare shape of the pixels is left out, and the
    density that files have which tell none."""
    exif = [after.get(f"IFD0:{name}") for name in RESOLUTION]
    jfif = [before.get(f"JFIF:{name}") for name in RESOLUTION]
    if "JFIF:XResolution" in after or None in jfif:
        return False
    units = {1: 2, 2: 3}  # EXIF's number of JFIF's unit
    if jfif[2][0] not in units or jfif == [[72], [72], [1]] or before.get("IFD0:XResolution"):
        return True
    return exif == [jfif[0], jfif[1], [units[jfif[2][0]]]]


def lost(before, after, keeps_profile):
    """The names of values that `before` has and `after` has not, or has otherwise."""
    moved = [f"JFIF:{name}" for name in RESOLUTION] if has_its_density_in_exif(before, after) else []
    return [name for name, values in before.items()
            if not exception_for(name) and (keeps_profile or not PROFILE.fullmatch(name)) and name not in moved and
            after.get(name) != values]


def lost_between(photo, saved, keeps_profile):
    """The same of two files."""
    found = readings([photo, saved])
    return lost(found.get(str(photo), {}), found.get(str(saved), {}), keeps_profile)
