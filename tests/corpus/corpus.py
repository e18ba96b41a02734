# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs every picture in a folder through the editor, one process per picture, and compares the decoded pixels with those
of Pillow and ImageMagick.

Usage: corpus.py [--all] [--json FILE] [folder]

The default folder is COMPLEXION_TEST_PHOTOS. --all reports every file, not only those that are refused or wrong; --json
writes the measurements. Exits with 1 if a file crashes the program, exceeds a limit on time or memory, or gives a wrong
result, or if too few of the files that the other programs open can be opened.
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

# The limits. Sanitizers multiply time and memory, so with them only crashes and hangs count.
SECONDS_TO_REFUSE = 2.0
MEBIBYTES_TO_REFUSE = 1024
SECONDS_TO_OPEN = 60
SECONDS_TO_HANG = 1200 if SANITIZED else 300  # for a whole session
SHARE_OVER_ALL = 0.98
SHARE_OF_FORMAT = 0.95
MAX_JPEG_MEAN = 0.15  # levels
GIF_COLORS = 255


@dataclasses.dataclass
class Outcome:
    path: str  # relative to the folder under test
    format: str
    hostile: bool  # made to do harm: the other programs are not run on it
    broken: bool  # deliberately invalid, hostile or not: may be refused
    result: str = ""  # opened; differs (from the other programs, for a known reason); refused; wrong; crashed; hung
    why: str = ""
    others: str = ""  # which of Pillow and ImageMagick can open it
    seconds: float = 0
    mebibytes: int = 0
    difference: str = ""  # from the closest other decoder: max/mean
    exact: str = ""  # for a saved JPEG file: "yes", or why it was re-encoded from its pixels
    kind: str = ""  # the coding of a JPEG file
    camera: bool = False  # made by a camera or a phone
    pixels: int = 0
    growth: float = 0  # size of the saved file divided by that of the photo


def is_under(photo, *places):
    """Whether the file's full path contains one of these folders or prefixes, whichever folder is under test."""
    return any(f"/{place}" in photo.as_posix() for place in places)


def outcome_of(photo, root):
    """An outcome filled with what is known before the file is opened."""
    hostile = is_under(photo, "hostile/")
    return Outcome(str(photo.relative_to(root)), format_of(photo), hostile,
                   broken=hostile or is_under(photo, "bmpsuite-b/", "pngsuite/x"))


def format_of(path):
    start = path.read_bytes()[:4]
    for signature, name in SIGNATURES.items():
        if start.startswith(signature):
            return name
    return "none"


def run_session(photo, folder):
    """Runs one photo through the editor. Returns how the process failed (empty if it did not) and its report."""
    with open(folder / "errors", "w+b") as errors:
        process = subprocess.Popen([BUILD / "tests/photo_session", photo, folder], stdout=subprocess.DEVNULL,
                                   stderr=errors)
        hung = threading.Event()
        watch = threading.Timer(SECONDS_TO_HANG, lambda: (hung.set(), process.kill()))
        watch.start()
        process.wait()
        watch.cancel()
        errors.seek(0)
        messages = errors.read().decode(errors="replace").splitlines()
    report = {}
    if (folder / "report").exists():
        for line in (folder / "report").read_text().splitlines():
            name, _, value = line.partition(" ")
            report[name] = value
    ended = ""
    if hung.is_set():
        ended = "hung"
    elif process.returncode != 0:
        relevant = [line for line in messages if "ERROR" in line or "runtime error" in line] or messages or ["no message"]
        ended = f"crashed: {process.returncode}, {relevant[0][:160]}"
    return ended, report


def wrong_in_session(outcome, report):
    """What went wrong between opening the photo and reopening the result; empty if nothing did."""
    extension = Path(outcome.path).suffix.lower()
    if report.get("pointWidth") != report["width"] or report.get("pointHeight") != report["height"]:
        return "not shown at one point per pixel"
    if report.get("undoDiffers") != "0" or report.get("redoDiffers") != "0":
        return "undo or redo gives a different picture"
    if extension not in EXTENSIONS:
        return ""
    if report.get("save") != SAVED:
        return "not saved: " + report.get("save", "no message")
    if report.get("reopen") != "done":
        return "the saved file does not open: " + report.get("reopen", "it does not exist")
    if report["clickDiffers"] != "0":
        return "the click changed pixels outside its disc"
    if report["sizeDiffers"] != "0":
        return "the saved file has a different size"
    if report["profileDiffers"] != "0":
        return "the saved file has a different profile"
    maximum, mean = int(report["maxOpaque"]), float(report["mean"])
    if extension in (".png", ".tif", ".tiff", ".bmp") and maximum > 0:
        return f"untouched pixels differ by up to {maximum} levels"
    if extension in (".jpg", ".jpeg") and mean >= MAX_JPEG_MEAN:
        return f"untouched pixels differ by {mean:.3f} levels on average"
    if extension == ".gif" and int(report["colors"]) <= GIF_COLORS and int(report["max"]) > 0:
        return f"untouched pixels of a GIF file with few colours differ by up to {report['max']} levels"
    return ""


def lost_metadata(outcome, photo, folder):
    """Metadata of the photo that exiftool does not find in the saved file. Skipped if the format changed: it may hold
    less."""
    saved = folder / ("saved" + photo.suffix.lower())
    if outcome.broken or not saved.exists() or format_of(saved) != outcome.format:
        return ""
    lost = metadata_check.lost_between(photo, saved, (folder / "opened.icc").stat().st_size > 0)
    return f"{len(lost)} metadata values are lost: {' '.join(lost[:5])}" if lost else ""


def examine_coding(outcome, report, photo, folder):
    """Records how a JPEG photo was saved. Returns what is wrong if it was saved exactly and yet differs outside the
    click."""
    saved = folder / ("saved" + photo.suffix.lower())
    if outcome.format != "JPEG" or not saved.exists() or format_of(saved) != "JPEG":
        return ""
    outcome.exact = report.get("exact", "")
    outcome.kind = exact_jpeg.kind_of(photo)
    outcome.camera = is_under(photo, "portraits/", "exif/")
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
    """Records which other programs open the file, and whether their pixels match."""
    if outcome.hostile:
        return
    kind, decodings = readers.by_pillow(photo)
    magick = readers.by_imagemagick(photo)
    opens = (("Pillow", decodings), ("ImageMagick", magick is not None))
    outcome.others = " ".join(name for name, is_opened in opens if is_opened)
    if outcome.result != "opened":
        return
    decodings = decodings + ([magick] if magick is not None else [])
    differences = [found for decoding in decodings if (found := readers.difference(pixels, decoding))]
    if decodings and not differences:
        outcome.result, outcome.why = "wrong", f"size {pixels.shape[1::-1]}, others decode " + " ".join(
            str(decoding.shape[1::-1]) for decoding in decodings)
    if not differences:
        return
    maximum, mean = min(differences)
    outcome.difference = f"{maximum}/{mean:.3f}"
    if maximum > readers.tolerance(outcome.format, kind):
        outcome.result, outcome.why = "wrong", f"differs from other decoders by {maximum} levels ({mean:.3f} on average)"


def examine(photo, root):
    outcome = outcome_of(photo, root)
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        pixels = None
        ended, report = run_session(photo, folder)
        outcome.mebibytes = max(int(report.get(name, 0)) for name in ("openMebibytes", "childMebibytes"))
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
    """Prints the table. Returns whether enough files are opened."""
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
    # Workers are replaced regularly: memory that Pillow and its libraries retain per picture must not accumulate.
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
