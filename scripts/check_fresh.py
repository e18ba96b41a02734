#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Plays the part of a new user, in a new minimal system of each release named: clones the committed state and calls
./run, ./test and ./package, which must install what they need. Then tests the package in another new system.

Root calls ./run in the C locale. A user with sudo calls the rest in a German locale, and ./run again with a display.
The clone's folder has a space in its name. Logs and pictures are kept in build/fresh/RELEASE. Needs root, for chroot.
"""

import os
import re
import shutil
import subprocess
import sys
import time
from contextlib import ExitStack
from pathlib import Path

import check_package
from new_system import ENVIRONMENT, ROOT, NewSystem, run

FRESH = ROOT / "build/fresh"
RELEASES = ("bookworm", "trixie")
USER = "new_user"
HOME = f"/home/{USER}"
CLONE = f"{HOME}/my photos"
# Starts ./run on a virtual display, waits for the window, and closes it through the window manager.
RUN_ON_A_DISPLAY = """
    exec 3< <(exec Xvfb -displayfd 1 -screen 0 1280x800x24 -nolisten tcp -noreset 2>/dev/null)
    server=$!
    trap 'kill "$server"' EXIT
    read -r number <&3
    export DISPLAY=:$number
    openbox &
    ./run & program=$!
    for second in {1..300}; do
        wmctrl -c Complexion 2>/dev/null && closed=yes && break
        sleep 1
    done
    [[ -n ${closed:-} ]] || kill "$program"
    wait "$program" && [[ -n ${closed:-} ]]
"""


class NewUser:
    """Calls commands in the clone. Writes a log of each and prints a line with its result."""

    def __init__(self, system, release, folder):
        self.system, self.release, self.folder = system, release, folder
        self.failed = False

    def call(self, title, user, language, *command):
        """Calls a command as `user` with `language`, without this machine's environment variables. Returns its
        output."""
        log = self.folder / f"{re.sub(r'[^a-z]+', '-', title.lower()).strip('-')}.log"
        environment = ["env", "-i", f"PATH={ENVIRONMENT['PATH']}", f"LANG={language}", "TERM=dumb"]
        become = ["setpriv", f"--reuid={user}", f"--regid={user}", "--init-groups"] if user != "root" else []
        home = HOME if user != "root" else "/root"
        start = time.monotonic()
        with open(log, "w") as out:
            status = subprocess.run(
                ["chroot", self.system.folder, *environment, f"HOME={home}", f"USER={user}", *become,
                 "bash", "-c", f'cd "{CLONE}" && "$@"', "bash", *command],
                stdin=subprocess.DEVNULL, stdout=out, stderr=subprocess.STDOUT, env=ENVIRONMENT).returncode
        how = "passed" if status == 0 else f"FAILED with {status}"
        print(f"fresh {self.release}: {title}, {user}, LANG={language}: {how}, {time.monotonic() - start:.0f} s", flush=True)
        printed = log.read_text(errors="replace")
        if status != 0:
            self.failed = True
            print(*printed.splitlines()[-40:], sep="\n", file=sys.stderr)
        return printed


def prepare_user(system):
    """Creates the user, with sudo and a German locale."""
    system.run("apt-get", "install", "-y", "--no-install-recommends", "sudo", "locales")
    system.run("localedef", "-i", "de_DE", "-f", "UTF-8", "de_DE.UTF-8")
    system.run("useradd", "--create-home", "--shell", "/bin/bash", USER)
    sudoers = system.folder / f"etc/sudoers.d/{USER}"
    sudoers.write_text(f"{USER} ALL=(ALL) NOPASSWD: ALL\n")
    sudoers.chmod(0o440)


def keep(pictures, folder):
    for picture in pictures:
        shutil.copy(picture, folder)


def check(release):
    """Runs all stages in a system of that release. Returns whether they passed; if not, keeps the system."""
    folder = FRESH / release
    folder.mkdir(parents=True, exist_ok=True)
    with ExitStack() as stack:
        system = NewSystem(stack, folder / "system", release, "git")
        clone = system.folder / CLONE.lstrip("/")
        clone.parent.mkdir(parents=True)
        run("git", "clone", "--quiet", ROOT, clone)
        new_user = NewUser(system, release, folder)
        new_user.call("./run", "root", "C", "./run")
        keep(clone.glob("out/*.png"), folder)

        prepare_user(system)
        system.run("chown", "-R", f"{USER}:", HOME)
        tests = new_user.call("./test", USER, "de_DE.UTF-8", "./test")
        print(*re.findall(r"^\d+% tests passed.*$", tests, re.MULTILINE), sep="\n")
        new_user.call("./run on a display", USER, "de_DE.UTF-8", "bash", "-c", RUN_ON_A_DISPLAY)
        new_user.call("./package", USER, "de_DE.UTF-8", "./package")
        package = next(clone.glob("build/package/complexion_*.deb"), None)
        if new_user.failed or package is None:
            return False
        shutil.copy(package, folder)
    system.remove()

    start = time.monotonic()
    (folder / "installed").mkdir(exist_ok=True)
    check_package.check(folder / package.name, release, folder / "installed")
    print(f"fresh {release}: the installed package: passed, {time.monotonic() - start:.0f} s", flush=True)
    return True


def main():
    failed = [release for release in sys.argv[1:] or RELEASES if not check(release)]
    sys.exit(f"fresh: failed on {', '.join(failed)}" if failed else 0)


if __name__ == "__main__":
    # Mounts in a separate namespace, so that they disappear with this process however it ends.
    if os.geteuid() == 0 and "COMPLEXION_OWN_MOUNTS" not in os.environ:
        os.environ["COMPLEXION_OWN_MOUNTS"] = "1"
        os.execvp("unshare", ["unshare", "--mount", "--propagation", "private", sys.executable, __file__, *sys.argv[1:]])
    main()
