# SPDX-License-Identifier: GPL-3.0-or-later
"""Takes every picture of a folder through the editor, one process each, and compares what it shows with what Pillow and
ImageMagick read.

Usage: corpus.py [--all] [--json FILE] [folder]

Without a folder: the one that COMPLEXION_TEST_PHOTOS names. --all tells of every file and not only of those that are
refused or wrong; --json writes what was measured. Ends with 1 when a file ends the program, takes too long or too
much, or is wrong, or when too few of those that others open are opened.
"""

import argparse
import collections
import dataclasses
import functools
import json
import multiprocessing
import os
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

import numpy

import declarations
import exact_jpeg
import independent_readers as readers
import metadata_check
from known_differences import reason_for

BUILD = Path(os.environ.get("COMPLEXION_BUILD", Path(__file__).parents[2] / "build/release"))
SANITIZED = "asan" in BUILD.name or "tsan" in BUILD.name
EXTENSIONS = {".jpg", ".jpeg", ".png", ".tiff", ".tif", ".gif", ".bmp"}
SIGNATURES = {b"\xff\xd8\xff": "JPEG", b"\x89PNG": "PNG", b"GIF8": "GIF", b"BM": "BMP",
              b"II*\0": "TIFF", b"MM\0*": "TIFF", b"II+\0": "TIFF", b"MM\0+": "TIFF"}
LOAD_FAILURE = "The image could not be loaded."
SAVED = "Image saved successfully."

# What must hold. Sanitizers cost several times the time and memory: with them only crashes and hangs count.
SECONDS_TO_REFUSE = 2.0
MEBIBYTES_TO_REFUSE = 1024
SECONDS_TO_OPEN = 60
SECONDS_TO_HANG = 1200 if SANITIZED else 300  # for all of a session
SHARE_OVER_ALL = 0.98
SHARE_OF_FORMAT = 0.95
MOST_MEAN_OF_JPEG = 0.15  # levels
GIF_COLORS = 255


@dataclasses.dataclass
class Outcome:
    path: str  # below the folder that is examined
    format: str
    hostile: bool  # made to do harm: nobody else is asked to open it
    broken: bool  # on purpose, hostile or not: may be refused
    result: str = ""  # opened; differs from others' reading for a known reason; refused; wrong; crashed; hung
    why: str = ""
    others: str = ""  # which of Pillow and ImageMagick open it
    seconds: float = 0
    mebibytes: int = 0
    apart: str = ""  # from the nearest reading of another program: most/mean
    exact: str = ""  # of a saved JPEG file: "yes", or why it was coded anew
    kind: str = ""  # the coding of a JPEG file
    camera: bool = False  # a camera or a phone made it
    pixels: int = 0
    growth: float = 0  # bytes of the saved file by those of the photo


def stands_in(photo, *places):
    """Whether a file's whole path goes through one of these, whichever folder is examined."""
    return any(f"/{place}" in photo.as_posix() for place in places)


def outcome_of(photo, root):
    """What is known of a file before it is opened."""
    hostile = stands_in(photo, "hostile/")
    return Outcome(str(photo.relative_to(root)), format_of(photo), hostile,
                   broken=hostile or stands_in(photo, "bmpsuite-b/", "pngsuite/x"))


def format_of(path):
    start = path.read_bytes()[:4]
    for signature, name in SIGNATURES.items():
        if start.startswith(signature):
            return name
    return "none"


def run_session(photo, folder):
    """(how it ended, what it reports) of one photo's way through the editor."""
    with open(folder / "errors", "w+b") as errors:
        process = subprocess.Popen([BUILD / "tests/photo_session", photo, folder], stdout=subprocess.DEVNULL,
                                   stderr=errors)
        hung = threading.Event()
        watch = threading.Timer(SECONDS_TO_HANG, lambda: (hung.set(), process.kill()))
        watch.start()
        process.wait()
        watch.cancel()
        errors.seek(0)
        words = errors.read().decode(errors="replace").splitlines()
    report = {}
    if (folder / "report").exists():
        for line in (folder / "report").read_text().splitlines():
            name, _, value = line.partition(" ")
            report[name] = value
    ended = ""
    if hung.is_set():
        ended = "hung"
    elif process.returncode != 0:
        telling = [line for line in words if "ERROR" in line or "runtime error" in line] or words or ["no word"]
        ended = f"crashed: {process.returncode}, {telling[0][:160]}"
    return ended, report


def wrong_in_session(outcome, report):
    """What the way from opening to reopening did that it must not; empty when all was right."""
    extension = Path(outcome.path).suffix.lower()
    if report.get("pointWidth") != report["width"] or report.get("pointHeight") != report["height"]:
        return "not at one point per pixel"
    if report.get("undoDiffers") != "0" or report.get("redoDiffers") != "0":
        return "undo or redo gives another picture"
    if extension not in EXTENSIONS:
        return ""
    if report.get("save") != SAVED:
        return "not saved: " + report.get("save", "no word")
    if report.get("reopen") != "done":
        return "the saved file does not open: " + report.get("reopen", "there is none")
    if report["clickDiffers"] != "0":
        return "the click changed pixels outside its disc"
    if report["sizeDiffers"] != "0":
        return "the saved file has another size"
    if report["profileDiffers"] != "0":
        return "the saved file has another profile"
    most, mean = int(report["mostOpaque"]), float(report["mean"])
    if extension in (".png", ".tif", ".tiff", ".bmp") and most > 0:
        return f"untouched pixels come back {most} levels off"
    if extension in (".jpg", ".jpeg") and mean >= MOST_MEAN_OF_JPEG:
        return f"untouched pixels come back {mean:.3f} levels off in the mean"
    if extension == ".gif" and int(report["colors"]) <= GIF_COLORS and int(report["most"]) > 0:
        return f"untouched pixels of a GIF of few colours come back {report['most']} levels off"
    return ""


def lost_metadata(outcome, photo, folder):
    """What of the photo's metadata exiftool does not find in the saved file; another format holds less."""
    saved = folder / ("saved" + photo.suffix.lower())
    if outcome.broken or not saved.exists() or format_of(saved) != outcome.format:
        return ""
    lost = metadata_check.lost_between(photo, saved, (folder / "opened.icc").stat().st_size > 0)
    return f"{len(lost)} values of metadata are lost: {' '.join(lost[:5])}" if lost else ""


def examine_coding(outcome, report, photo, folder):
    """How a JPEG photo was saved; what is wrong when it should be as it was outside the click."""
    saved = folder / ("saved" + photo.suffix.lower())
    if outcome.format != "JPEG" or not saved.exists() or format_of(saved) != "JPEG":
        return ""
    outcome.exact = report.get("exact", "")
    outcome.kind = exact_jpeg.kind_of(photo)
    outcome.camera = stands_in(photo, "portraits/", "exif/")
    outcome.pixels = int(report["width"]) * int(report["height"])
    outcome.growth = saved.stat().st_size / photo.stat().st_size
    return exact_jpeg.changed_outside(photo, saved) if outcome.exact == exact_jpeg.EXACT else ""


def dangling_declaration(outcome, photo, folder):
    saved = folder / ("saved" + photo.suffix.lower())
    if outcome.broken or not saved.exists() or format_of(saved) != "JPEG":
        return ""
    return declarations.dangling(saved)


def opened_pixels(report, folder):
    shape = (int(report["height"]), int(report["width"]), 4)
    return numpy.fromfile(folder / "opened.rgba", numpy.uint8).reshape(shape)


def compare(outcome, pixels, folder, photo):
    """Sets what the others make of the file, and whether the pixels opened are the same."""
    if outcome.hostile:
        return
    kind, readings = readers.by_pillow(photo)
    magick = readers.by_imagemagick(photo)
    outcome.others = " ".join(name for name, opens in (("Pillow", readings), ("ImageMagick", magick is not None)) if opens)
    if outcome.result != "opened":
        return
    readings = readings + ([magick] if magick is not None else [])
    found = [apart for reading in readings if (apart := readers.difference(pixels, reading))]
    if readings and not found:
        outcome.result, outcome.why = "wrong", f"size {pixels.shape[1::-1]}, others see " + " ".join(
            str(reading.shape[1::-1]) for reading in readings)
    if not found:
        return
    most, mean = min(found)
    outcome.apart = f"{most}/{mean:.3f}"
    if most > readers.tolerance(outcome.format, kind):
        outcome.result, outcome.why = "wrong", f"{most} levels off ({mean:.3f} in the mean) what others read"


def examine(photo, root):
    outcome = outcome_of(photo, root)
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        pixels = None
        ended, report = run_session(photo, folder)
        outcome.mebibytes = int(report.get("openMebibytes", 0))
        outcome.seconds = round(float(report.get("openSeconds", 0)), 3)
        if ended:
            outcome.result, outcome.why = ended.split(":")[0], ended
        elif report.get("open") == LOAD_FAILURE:
            outcome.result = "refused"
            if not SANITIZED and (outcome.seconds > SECONDS_TO_REFUSE or outcome.mebibytes > MEBIBYTES_TO_REFUSE):
                outcome.result = "wrong"
                outcome.why = f"refused after {outcome.seconds} s with {outcome.mebibytes} MiB"
        else:
            pixels = opened_pixels(report, folder)
            outcome.why = wrong_in_session(outcome, report)
            outcome.why = outcome.why or lost_metadata(outcome, photo, folder)
            outcome.why = outcome.why or examine_coding(outcome, report, photo, folder)
            outcome.why = outcome.why or dangling_declaration(outcome, photo, folder)
            if outcome.seconds > SECONDS_TO_OPEN and not SANITIZED:
                outcome.why = f"opened after {outcome.seconds} s"
            outcome.result = "wrong" if outcome.why else "opened"
        compare(outcome, pixels, folder, photo)
    if reason := reason_for(photo.absolute().as_posix(), outcome.result):
        outcome.why = reason
        outcome.result = "differs" if outcome.result == "wrong" else outcome.result
    return outcome


def print_table(outcomes):
    """The table, and whether enough is opened."""
    print(f"{'':16}{'files':>7}{'opened':>8}{'differs':>9}{'refused':>9}{'wrong':>7}{'by others':>11}{'of them opened':>16}")
    enough = True
    rows = collections.defaultdict(list)
    for outcome in outcomes:
        rows[("broken" if outcome.broken else outcome.format)].append(outcome)
    sound = [outcome for outcome in outcomes if not outcome.broken]
    for name, row in [*sorted(rows.items()), ("all but broken", sound)]:
        count = collections.Counter(outcome.result for outcome in row)
        by_others = [outcome for outcome in row if outcome.others]
        opened = sum(outcome.result != "refused" for outcome in by_others)
        share = opened / len(by_others) if by_others else 1
        least = SHARE_OVER_ALL if row is sound else 0 if name == "broken" else SHARE_OF_FORMAT
        enough = enough and share >= least
        wrong = len(row) - count["opened"] - count["refused"] - count["differs"]
        print(f"{name:<16}{len(row):>7}{count['opened']:>8}{count['differs']:>9}{count['refused']:>9}{wrong:>7}"
              f"{len(by_others):>11}"
              f"{opened:>9}{share:>7.1%}{'' if share >= least else ' (too few)'}")
    return enough


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--json")
    parser.add_argument("folder", nargs="?", default=os.environ.get("COMPLEXION_TEST_PHOTOS"))
    options = parser.parse_args()
    if not options.folder:
        sys.exit("corpus: name a folder of pictures, or set COMPLEXION_TEST_PHOTOS")
    root = Path(options.folder).resolve()
    photos = [path for path in sorted(root.rglob("*")) if path.is_file() and path.suffix.lower() in EXTENSIONS]
    # In processes that end now and then: what Pillow and its libraries keep of one picture must not add up.
    with multiprocessing.Pool(os.cpu_count(), maxtasksperchild=20) as pool:
        outcomes = pool.map(functools.partial(examine, root=root), photos, chunksize=1)
    if options.json:
        Path(options.json).write_text(json.dumps([dataclasses.asdict(outcome) for outcome in outcomes], indent=1))

    bad = 0
    for outcome in outcomes:
        is_missed = outcome.result == "refused" and outcome.others and not outcome.broken
        is_bad = outcome.result not in ("opened", "refused", "differs")
        bad += is_bad
        if options.all or is_bad or is_missed or outcome.result == "differs":
            print(f"{outcome.result:8} {outcome.path}: {outcome.why or 'like others'}"
                  f"{' (opened by ' + outcome.others + ')' if is_missed else ''}")
    enough = print_table(outcomes)
    enough = exact_jpeg.print_table(outcomes) and enough
    slowest = max(outcomes, key=lambda outcome: outcome.seconds)
    largest = max(outcomes, key=lambda outcome: outcome.mebibytes)
    print(f"slowest to open: {slowest.seconds} s, {slowest.path}; most memory: {largest.mebibytes} MiB, {largest.path}")
    return 0 if enough and not bad else 1


if __name__ == "__main__":
    sys.exit(main())
