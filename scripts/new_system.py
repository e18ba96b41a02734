# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes a new minimal Debian system in a folder, from the archive that this machine installs from. Needs root."""

import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
DOWNLOADS = ROOT / "downloads"  # packages, a folder a release; they outlive build/
ENVIRONMENT = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8", "DEBIAN_FRONTEND": "noninteractive",
               **{name: value for name, value in os.environ.items() if name.lower().endswith("_proxy")}}


def run(*command):
    """Runs a command; its output is shown only when it fails, which ends the program."""
    done = subprocess.run([*map(str, command)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          env=ENVIRONMENT)
    if done.returncode:
        sys.exit(f"{done.stdout}\n{Path(sys.argv[0]).stem}: {' '.join(map(str, command))} has failed")


def this_release():
    """The codename of this machine's own release."""
    return re.search(r"^VERSION_CODENAME=(\w+)$", Path("/etc/os-release").read_text(), re.MULTILINE)[1]


def archives(release):
    """The archives that this machine installs its own release from, as (address, suite) of the wanted release."""
    lines = subprocess.run(["apt-get", "indextargets", "--format", "$(CREATED_BY) $(REPO_URI) $(RELEASE)"], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    own = this_release()
    found = {(address, release + suite.removeprefix(own)): None
             for created_by, address, suite in map(str.split, lines)
             if created_by == "Packages" and re.fullmatch(rf"{own}(-updates|-security)?", suite)}
    return sorted(found, key=lambda archive: archive[1])


def own_settings():
    """How this machine's apt reaches an archive: proxies, certificates, what it takes for valid."""
    kept = re.compile(r'Acquire::(https?::|Check-|Retries|ForceIPv).* ".+";')
    lines = subprocess.run(["apt-config", "dump"], check=True, capture_output=True, text=True).stdout.splitlines()
    return "".join(line + "\n" for line in lines if kept.match(line))


class NewSystem:
    """A minimal system of a release, with this machine's /proc and devices of its own, in a folder that must not be there before.
    `stack` unmounts what was mounted; the folder stays."""

    def __init__(self, stack, folder, release, *packages):
        self.stack = stack
        self.folder = folder
        if os.geteuid() != 0:
            sys.exit(f"{Path(sys.argv[0]).stem}: a new system can be made by root alone")
        sources = archives(release)
        address = next((address for address, suite in sources if suite == release), None)
        if address is None:
            sys.exit(f"{Path(sys.argv[0]).stem}: this machine installs from no archive that has {release}")
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
        """To be called when nothing is mounted any more."""
        run("rm", "-rf", "--one-file-system", self.folder)
