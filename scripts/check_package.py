#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Installs the Debian package in a new minimal system, with its declared dependencies alone, and does the main job
with it there: a portrait is opened, a blemish is clicked away, the result is saved. Needs root, for chroot."""

import os
import subprocess
import sys
import tempfile
from contextlib import ExitStack
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/end-to-end"))

import sample_portrait  # noqa: E402
from picture_changes import check_only_discs_changed  # noqa: E402
from virtual_desktop import VirtualDesktop  # noqa: E402
from window_driver import EXIT_QUESTION, Complexion  # noqa: E402

SYSTEM = ROOT / "build/package/system"
APT = "/etc/apt"
BLEMISH = (548, 418)


def run(*command):
    """Runs a command; its output is shown only when it fails."""
    done = subprocess.run([*map(str, command)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          env=dict(os.environ, DEBIAN_FRONTEND="noninteractive", LC_ALL="C.UTF-8"))
    if done.returncode:
        sys.exit(f"{done.stdout}\ncheck_package: {' '.join(map(str, command))} has failed")


def archive():
    """The archive that this machine installs from, with its distribution."""
    lines = subprocess.run(["apt-get", "indextargets", "--format", "$(CREATED_BY) $(REPO_URI) $(RELEASE)"], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    targets = [line.split() for line in lines]
    return next((uri, release) for created_by, uri, release in targets
                if created_by == "Packages" and release == "bookworm")


def mount(stack, place, *options):
    place.mkdir(parents=True, exist_ok=True)
    run("mount", *options, place)
    stack.callback(run, "umount", place)


def make_system(stack, package):
    uri, release = archive()
    run("rm", "-rf", "--one-file-system", SYSTEM)
    run("debootstrap", "--variant=minbase", "--include=ca-certificates", release, SYSTEM, uri)
    for part in ("apt.conf.d", "sources.list.d", "sources.list", "trusted.gpg.d"):
        if Path(APT, part).exists():
            run("cp", "--recursive", "--dereference", f"{APT}/{part}", f"{SYSTEM}{APT}/")
    for file in ("resolv.conf", "hosts"):
        run("cp", f"/etc/{file}", SYSTEM / "etc")
    for folder in ("proc", "dev"):
        mount(stack, SYSTEM / folder, "--bind", f"/{folder}")
    run("cp", package, SYSTEM / "complexion.deb")
    run("chroot", SYSTEM, "apt-get", "update")
    run("chroot", SYSTEM, "apt-get", "install", "-y", "--no-install-recommends", "/complexion.deb")


def do_main_job(stack, folder):
    mount(stack, Path(f"{SYSTEM}{folder}"), "--bind", folder)
    start = folder / "complexion"
    start.write_text(f'#!/bin/sh\nexec chroot "{SYSTEM}" /usr/bin/complexion "$@"\n')
    start.chmod(0o755)
    portrait, saved = folder / "portrait.png", folder / "portrait_retouched.png"
    sample_portrait.paint(portrait)
    desktop = stack.enter_context(VirtualDesktop(folder))
    with Complexion(desktop, start) as empty:  # which offers the tutorial until a photo is open
        empty.start()
        if not empty.is_enabled("Video tutorial"):
            sys.exit("check_package: the tutorial is missing")
    program = stack.enter_context(Complexion(desktop, start))
    program.start(portrait)
    place = program.retouch(*BLEMISH, *sample_portrait.SIZE)
    program.save()
    check_only_discs_changed(portrait, saved, [place], sample_portrait.RADIUS)
    program.ask_to_close()
    program.answer_to_end(EXIT_QUESTION, "Yes")


def main():
    if os.geteuid() != 0:
        sys.exit("check_package: a new system can be made by root alone")
    package, = (ROOT / "build/package").glob("complexion_*.deb")
    with ExitStack() as stack:
        make_system(stack, package)
        do_main_job(stack, Path(stack.enter_context(tempfile.TemporaryDirectory())))
    run("rm", "-rf", "--one-file-system", SYSTEM)


if __name__ == "__main__":
    main()
