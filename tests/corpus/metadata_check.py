# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares the metadata of a saved file with that of its source, as exiftool reads them."""

import collections
import json
import re
import subprocess
import tempfile

# What may differ between a photo and the file saved from it, and why. imaging/metadata/carrying.h documents the rules
# behind this list. Each pattern matches a whole "Group:Tag".
EXCEPTIONS = [(re.compile(pattern), reason) for pattern, reason in [
    (r"SourceFile|(ExifTool|System|Composite):.*", "describes the file, not the picture"),
    (r"File:(?!Comment).*", "size, byte order and coding of the file"),
    (r"(Adobe|Ducky|JPS|AVI1|SPIFF|Qualcomm):.*", "how the source's pixels are coded"),
    (r"JFIF:(Thumbnail|JFIFVersion).*|JFXX:.*", "thumbnail; the new file has its own JFIF version"),
    (r"(Canon|PreviewIFD):PreviewImageStart", "a file offset, which shifts when a JFIF segment is added or removed"),
    (r"(MPF\d|MPImage\d):.*", "other pictures in the file, whose offsets are no longer valid"),
    (r"(FotoStation|PhotoMechanic|IPTC2|CanonVRD|Samsung|HDRGainMap\w*|XMP-(hdrgm|GContainer|Container)):.*",
     "data after the end of the JPEG picture, or about other pictures there"),
    (r"IFD1:.*", "the thumbnail: regenerated, or removed if the source's is not a picture"),
    (r"IFD([2-9]|\d\d+):.*|SubIFD\d*:.*|GlobParamIFD:.*", "further pages and pictures"),
    (r"IFD0:(BitsPerSample|CleanFaxData|ColorMap|ColorResponseUnit|Compression|DataType|DotRange|ExtraSamples|"
     r"FillOrder|Free\w+|Gray\w+|HalftoneHints|ImageDepth|ImageHeight|ImageWidth|InkNames|InkSet|JPEG\w+|"
     r"M(ax|in)SampleValue|NumberofInks|OldSubfileType|PageNumber|PhotometricInterpretation|PlanarConfiguration|"
     r"Predictor|PrimaryChromaticities|ReferenceBlackWhite|RowsPerStrip|S(Max|Min)SampleValue|SampleFormat|"
     r"SamplesPerPixel|StoNits|Strip(ByteCounts|Offsets)|SubfileType|T[46]Options|TargetPrinter|Thresholding|Tile\w+|"
     r"TransferFunction|TransferRange|WhitePoint|YCbCr\w+)", "how the source's pixels are coded"),
    (r"IFD0:(Other|Preview|Jpg)(Image|FromRaw)\w*|IFD0:Thumbnail\w+", "other pictures in the file"),
    (r"Photoshop:(Layer\w+|NumSlices|Photoshop\w*Thumbnail|AlphaChannels\w+|\w*Thumbnail\w*)",
     "layers and thumbnails of the unedited picture"),
    (r"(XMP-xmp|XMP):Thumbnails?\w*", "thumbnail"),
    (r"XMP-GImage:ImageData", "the unedited picture"),
    (r"(PNG|PNG-APNG):(Animation\w+|AppleDataOffsets|BackgroundColor|BitDepth|ColorType|Compression|Filter|Interlace|"
     r"Palette\w*|SignificantBits|SuggestedPalette|Transparency|ImageWidth|ImageHeight|StereoMode|FractalParameters|"
     r"SRGBRendering|Gamma|WhitePoint[XY]|(Red|Green|Blue)[XY]|ProfileName|ICC_Profile|CICP\w*)|PNG-cICP:.*",
     "how the source's pixels are coded; their colour space becomes a profile"),
    (r"GIF:(Animation\w+|BackgroundColor|BitsPerPixel|ColorResolutionDepth|Duration|FrameCount|GIFVersion|HasColorMap|"
     r"TransparentColor|ImageWidth|ImageHeight)", "how the source's pixels are coded; animation"),
]]

# A colour profile is dropped if it does not describe the saved pixels: those of grey and CMYK sources, and unusable
# ones.
PROFILE = re.compile(r"ICC[-_].*|.*:ICC_Profile\w*")

RESOLUTION = ["XResolution", "YResolution", "ResolutionUnit"]

SECONDS = 600


def readings(paths):
    """{path: {"Group:Tag": values}}: everything that exiftool reads, with complete binary values."""
    with tempfile.NamedTemporaryFile("w", suffix=".args") as arguments:
        arguments.write("".join(f"{path}\n" for path in paths))
        arguments.flush()
        text = subprocess.run(["exiftool", "-json", "-G1", "-a", "-b", "-n", "-u", "-charset", "filename=utf8", "-@",
                               arguments.name], capture_output=True, timeout=SECONDS, check=False).stdout
    # A name may occur more than once, so values are lists.
    def collected(pairs):
        found = collections.defaultdict(list)
        for name, value in pairs:
            found[name].append(value)
        return dict(found)
    return {reading["SourceFile"][0]: reading for reading in json.loads(text or b"[]", object_pairs_hook=collected)}


def exception_for(name):
    return next((reason for pattern, reason in EXCEPTIONS if pattern.fullmatch(name)), None)


def has_its_density_in_exif(before, after):
    """Whether a file without a JFIF segment (its components are RGB, which JFIF does not allow) has the density of the
    source's JFIF segment, or of the source's EXIF block, in its own EXIF block. A JFIF pixel aspect ratio and the
    default density of 72 need not be kept."""
    exif = [after.get(f"IFD0:{name}") for name in RESOLUTION]
    jfif = [before.get(f"JFIF:{name}") for name in RESOLUTION]
    if "JFIF:XResolution" in after or None in jfif:
        return False
    units = {1: 2, 2: 3}  # from JFIF's density unit to EXIF's
    if jfif[2][0] not in units or jfif == [[72], [72], [1]] or before.get("IFD0:XResolution"):
        return True
    return exif == [jfif[0], jfif[1], [units[jfif[2][0]]]]


def lost(before, after, keeps_profile):
    """The names of the values in `before` that are missing or different in `after`."""
    moved = [f"JFIF:{name}" for name in RESOLUTION] if has_its_density_in_exif(before, after) else []
    return [name for name, values in before.items()
            if not exception_for(name) and (keeps_profile or not PROFILE.fullmatch(name)) and name not in moved and
            after.get(name) != values]


def lost_between(photo, saved, keeps_profile):
    """The same for two files."""
    found = readings([photo, saved])
    return lost(found.get(str(photo), {}), found.get(str(saved), {}), keeps_profile)
