#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fails if a text of the program has no translation, a translation is no longer used, the two have different
placeholders, or two menus of the menu bar have the same mnemonic. With --update, adds new texts to the translation
files and removes unused ones."""

import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TRANSLATIONS = ROOT / "app/translations"
LUPDATE = "/usr/lib/qt6/bin/lupdate"


def update(file):
    subprocess.run([LUPDATE, "-silent", "-no-obsolete", "-locations", "none", "-I", ".", "app", "editor", "view", "-ts",
                    file], cwd=ROOT, check=True)


def texts(file):
    """Maps the (context, text) of each message to its translation, or to None if that is unfinished."""
    return {(context.findtext("name"), message.findtext("source")):
            None if message.find("translation").get("type") else message.findtext("translation")
            for context in ElementTree.parse(file).iter("context") for message in context.iter("message")}


def placeholders(text):
    """The numbered ones, such as "%1", and a mnemonic's "&"."""
    return sorted(re.findall(r"%\d|&(?=\w)", text))


def wrong_in(file):
    with tempfile.TemporaryDirectory() as folder:
        updated = Path(shutil.copy(file, folder))
        update(updated)
        now = texts(updated)
    for (context, text), translation in now.items():
        if not translation:
            yield f"{file.name}: no translation in {context} of: {text}"
        elif placeholders(text) != placeholders(translation):
            yield f"{file.name}: other placeholders in {context} than: {text}"
    mnemonics = [letter.lower() for (context, _), translation in now.items() if context == "Menus"
                 for letter in re.findall(r"&(\w)", translation or "")]
    for letter in sorted(set(mnemonics)):
        if mnemonics.count(letter) > 1:
            yield f"{file.name}: several menus have the mnemonic {letter}"
    for context, text in texts(file).keys() - now.keys():
        yield f"{file.name}: unused text in {context}: {text}"


def main():
    files = sorted(TRANSLATIONS.glob("*.ts"))
    if sys.argv[1:] == ["--update"]:
        for file in files:
            update(file)
        return 0
    wrong = [line for file in files for line in wrong_in(file)]
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
