# SPDX-License-Identifier: GPL-3.0-or-later
"""Creates a minimal Debian system in a folder, from the archive that this machine uses. Needs root."""

import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
DOWNLOADS = ROOT / "downloads"  # packages, in a folder per release; kept when build/ is deleted
ENVIRONMENT = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8", "DEBIAN_FRONTEND": "noninteractive",
               **{name: value for name, value in os.environ.items() if name.lower().endswith("_proxy")}}


def run(*command):
    """Runs a command. If it fails, exits with the command's output."""
    done = subprocess.run([*map(str, command)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          env=ENVIRONMENT)
    if done.returncode:
        sys.exit(f"{done.stdout}\n{Path(sys.argv[0]).stem}: {' '.join(map(str, command))} failed")


def this_release():
    """The codename of this machine's release."""
    return re.search(r"^VERSION_CODENAME=(\w+)$", Path("/etc/os-release").read_text(), re.MULTILINE)[1]


def archives(release):
    """The archives that this machine uses, as (address, suite) pairs for another release."""
    lines = subprocess.run(["apt-get", "indextargets", "--format", "$(CREATED_BY) $(REPO_URI) $(RELEASE)"], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    own = this_release()
    found = {(address, release + suite.removeprefix(own)): None
             for created_by, address, suite in map(str.split, lines)
             if created_by == "Packages" and re.fullmatch(rf"{own}(-updates|-security)?", suite)}
    return sorted(found, key=lambda archive: archive[1])


def own_settings():
    """This machine's settings for access to archives: proxies, certificates, validity checks."""
    kept = re.compile(r'Acquire::(https?::|Check-|Retries|ForceIPv).* ".+";')
    lines = subprocess.run(["apt-config", "dump"], check=True, capture_output=True, text=True).stdout.splitlines()
    return "".join(line + "\n" for line in lines if kept.match(line))


class NewSystem:
    """A minimal system of a release, with this machine's /proc and its own devices. Replaces the folder if it exists.
    `stack` unmounts everything; the folder remains."""

    def __init__(self, stack, folder, release, *packages):
        self.stack = stack
        self.folder = folder
        if os.geteuid() != 0:
            sys.exit(f"{Path(sys.argv[0]).stem}: only root can create a new system")
        sources = archives(release)
        address = next((address for address, suite in sources if suite == release), None)
        if address is None:
            sys.exit(f"{Path(sys.argv[0]).stem}: no archive that this machine uses has {release}")
        downloads = DOWNLOADS / release
        downloads.mkdir(parents=True, exist_ok=True)
        run("rm", "-rf", "--one-file-system", folder)
        folder.parent.mkdir(parents=True, exist_ok=True)
        run("debootstrap", "--variant=minbase", f"--include={','.join(['ca-certificates', *packages])}",
            f"--cache-dir={downloads}", release, folder, address)
        (folder / "etc/apt/sources.list").write_text("".join(f"deb {address} {suite} main\n" for address, suite in sources))
        (folder / "etc/apt/apt.conf.d/90host").write_text(own_settings())
        for name in ("resolv.conf", "hosts"):
            run("cp", f"/etc/{name}", folder / "etc")
        self.mount(folder / "proc", "--bind", "/proc")
        self.mount(folder / "dev/shm", "-t", "tmpfs", "-o", "mode=1777", "tmpfs")
        self.mount(folder / "var/cache/apt/archives", "--bind", downloads)
        self.run("apt-get", "update")

    def mount(self, place, *options):
        place.mkdir(parents=True, exist_ok=True)
        run("mount", *options, place)
        self.stack.callback(run, "umount", "--lazy", place)

    def run(self, *command):
        """Runs a command in the system, as its root."""
        run("chroot", self.folder, *command)

    def remove(self):
        """Deletes the folder. Call this only when nothing is mounted any more."""
        run("rm", "-rf", "--one-file-system", self.folder)
