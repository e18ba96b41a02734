#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Installs the Debian package with only its declared dependencies in a new minimal system, and uses it there: opens a
portrait, retouches a blemish, saves the result. Needs root, for chroot."""

import sys
import tempfile
from contextlib import ExitStack
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/end-to-end"))

import new_system  # noqa: E402
import sample_portrait  # noqa: E402
from picture_changes import check_only_discs_changed  # noqa: E402
from virtual_desktop import VirtualDesktop  # noqa: E402
from window_driver import EXIT_QUESTION, Complexion  # noqa: E402

BLEMISH = (548, 418)


def install(system, package):
    """Installs the package with only its declared dependencies."""
    new_system.run("cp", package, system.folder / "complexion.deb")
    system.run("apt-get", "install", "-y", "--no-install-recommends", "/complexion.deb")


def retouch_and_save(system, stack, folder, picture):
    """Retouches and saves a portrait in `folder` with the program installed in `system`, on a virtual desktop of this
    machine. Saves a screenshot of the window as `picture`."""
    system.mount(Path(f"{system.folder}{folder}"), "--bind", folder)
    start = folder / "complexion"
    start.write_text(f'#!/bin/sh\nexec chroot "{system.folder}" /usr/bin/complexion "$@"\n')
    start.chmod(0o755)
    portrait, saved = folder / "portrait.png", folder / "portrait_retouched.png"
    sample_portrait.paint(portrait)
    desktop = stack.enter_context(VirtualDesktop(folder))
    with Complexion(desktop, start) as empty:  # the tutorial is offered while no photo is open
        empty.start()
        if not empty.is_enabled("Video tutorial"):
            sys.exit("check_package: the tutorial is missing")
    program = stack.enter_context(Complexion(desktop, start))
    program.start(portrait)
    place = program.retouch(*BLEMISH, *sample_portrait.SIZE)
    desktop.screenshot(picture)
    program.save()
    check_only_discs_changed(portrait, saved, [place], sample_portrait.RADIUS)
    program.ask_to_close()
    program.answer_to_end(EXIT_QUESTION, "Yes")


def check(package, release, folder):
    """Runs the whole check in a new system of that release. Leaves a screenshot of the window in `folder`."""
    with ExitStack() as stack:
        system = new_system.NewSystem(stack, folder / "system", release)
        install(system, package)
        retouch_and_save(system, stack, Path(stack.enter_context(tempfile.TemporaryDirectory())), folder / "window.png")
    system.remove()


if __name__ == "__main__":
    built = ROOT / "build/package"
    package, = built.glob("complexion_*.deb")
    check(package, new_system.this_release(), built)
