#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fails if the AppStream metadata lacks what software centres ask for beyond the format's own rules: short summaries in
every language of the program, brand colours for light and dark, small pictures that exist, and release notes. Also if
the Flatpak has another name or command, or a permission for the network or for files, or if its builder complains about
the manifest, which it reads without building anything."""

import json
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from PIL import Image

ROOT = Path(__file__).resolve().parent.parent
IMAGES = ROOT / "docs/images"
FLATPAK = ROOT / "packaging/flatpak/org.complexion.complexion.json"
PERMISSIONS = {"--socket=wayland", "--socket=fallback-x11", "--share=ipc", "--device=dri"}
LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"
MAX_SUMMARY = 35  # characters
MAX_PICTURE = (1000, 700)  # pixels


def wrong_with(component):
    languages = {"en"} | {file.stem.split("_", 1)[1] for file in (ROOT / "app/translations").glob("*.ts")}
    summaries = {summary.get(LANGUAGE, "en"): summary.text for summary in component.iter("summary")}
    if summaries.keys() != languages:
        yield f"summaries in {sorted(summaries)} instead of {sorted(languages)}"
    if {lang.text for lang in component.iter("lang")} != languages:
        yield f"the languages are not {sorted(languages)}"
    for language, summary in summaries.items():
        if len(summary) > MAX_SUMMARY:
            yield f"the summary in {language} has {len(summary)} characters, more than {MAX_SUMMARY}"
    if {color.get("scheme_preference") for color in component.iter("color")} != {"light", "dark"}:
        yield "no brand colours for light and dark"
    pictures = list(component.iter("image"))
    for picture in pictures:
        declared = int(picture.get("width", 0)), int(picture.get("height", 0))
        with Image.open(IMAGES / picture.text.rsplit("/", 1)[1]) as image:
            if image.size != declared or any(size > most for size, most in zip(image.size, MAX_PICTURE)):
                yield f"{picture.text} is {image.size}, declared as {declared}, at most {MAX_PICTURE}"
    if not pictures:
        yield "no pictures"
    for release in component.iter("release"):
        if release.find("description/ul") is None:
            yield f"no notes for release {release.get('version')}"


def wrong_with_flatpak(component, manifest):
    if manifest["id"] != component.findtext("id"):
        yield f"the id is {manifest['id']}, not {component.findtext('id')}"
    if manifest["command"] != component.findtext("provides/binary"):
        yield f"the command is {manifest['command']}"
    for permission in set(manifest["finish-args"]) - PERMISSIONS:
        yield f"has {permission}"
    for module in manifest["modules"]:
        for source in module["sources"]:
            if source["type"] == "git" and not {"tag", "commit"} & source.keys():
                yield f"the version of {module['name']} is not determined"


def builder_complaints():
    """What the Flatpak's builder prints about the manifest. It ends successfully even if it does not know a key."""
    with tempfile.TemporaryDirectory() as folder:  # for the builder's state
        reading = subprocess.run(["flatpak-builder", "--show-manifest", FLATPAK], cwd=folder, capture_output=True,
                                 text=True, check=False)
    yield from filter(None, reading.stderr.splitlines())
    if reading.returncode != 0:
        yield f"the builder ends with {reading.returncode}"


def main():
    file, = sys.argv[1:]
    component = ElementTree.parse(file).getroot()
    wrong = [f"{file}: {line}" for line in wrong_with(component)]
    wrong += [f"{FLATPAK.name}: {line}" for line in wrong_with_flatpak(component, json.loads(FLATPAK.read_text()))]
    wrong += [f"{FLATPAK.name}: {line}" for line in builder_complaints()]
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
