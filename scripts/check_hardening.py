#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Inspects the built program: fails if a hardening option of Debian's builds is missing, or if the program could access
a network itself. It opens a single address, in the user's browser, from a single source file. Also runs
the program with a photo, and fails if the process that decodes it is not confined."""

import os
import re
import struct
import subprocess
import sys
import tempfile
import time
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAM = ROOT / "build/release/app/complexion"
NETWORK = re.compile(r"^(socket|socketpair|connect|bind|listen|accept4?|getaddrinfo|gethostby\w+|res_\w+|send(to|msg|mmsg)?|"
                     r"recv(from|msg|mmsg)?)$|QNetwork|Q(Tcp|Udp|Ssl|Local|Abstract)Socket")
# Between the program and its reader process. Without one of the other calls, they reach nobody else.
PAIRED = {"socketpair", "send", "sendmsg", "recv", "recvmsg"}
NETWORK_LIBRARIES = re.compile(r"Network|curl|ssl|soup|WebEngine", re.IGNORECASE)
OPENS_ADDRESS = "QDesktopServices::openUrl"


def readelf(*options):
    return subprocess.run(["readelf", "--wide", *options, PROGRAM], check=True, capture_output=True, text=True).stdout


def imported():
    names = re.findall(r"\bUND\s+(\S+)", readelf("--dyn-syms"))
    plain = {name.split("@")[0] for name in names}
    shown = subprocess.run(["c++filt"], input="\n".join(plain), check=True, capture_output=True, text=True).stdout
    return plain | set(shown.splitlines())


def wrong_protections():
    segments = readelf("--program-headers")
    dynamic = readelf("--dynamic")
    symbols = imported()
    stack = re.search(r"GNU_STACK.*", segments)
    checks = {
        "is not a position-independent executable": "DYN" in readelf("--file-header"),
        "has an executable stack": stack and "E" not in stack.group().split()[-2],
        "leaves its relocations writable": "GNU_RELRO" in segments and re.search(r"BIND_NOW|\bNOW\b", dynamic),
        "has no stack protector": "__stack_chk_fail" in symbols,
        "is not built with _FORTIFY_SOURCE": any(name.startswith("__") and name.endswith("_chk") for name in symbols),
    }
    return [f"{PROGRAM.name} {what}" for what, holds in checks.items() if not holds]


def wrong_connections():
    wrong = [f"{PROGRAM.name} calls {name}" for name in sorted(imported() - PAIRED) if NETWORK.search(name)]
    libraries = re.findall(r"\(NEEDED\).*\[(.*)\]", readelf("--dynamic"))
    wrong += [f"{PROGRAM.name} needs {name}" for name in libraries if NETWORK_LIBRARIES.search(name)]
    sources = [path for folder in ("app", "editor", "view", "imaging") for path in (ROOT / folder).rglob("*.cpp")]
    places = [path.relative_to(ROOT) for path in sources if OPENS_ADDRESS in path.read_text()]
    if [str(place) for place in places] != ["app/system_platform.cpp"]:
        wrong.append(f"addresses are opened in {', '.join(map(str, places)) or 'no file'}")
    return wrong


def write_large_png(path, side=9000):
    """A grey picture whose decoding takes a while."""
    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))
    header = struct.pack(">IIBBBBB", side, side, 8, 0, 0, 0, 0)
    pixels = zlib.compress((b"\0" + bytes(range(250)) * (side // 250)) * side, 1)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", pixels) + chunk(b"IEND", b""))


def children(pid):
    try:
        return Path(f"/proc/{pid}/task/{pid}/children").read_text().split()
    except OSError:  # the process has ended
        return []


def status(pid):
    try:
        return dict(re.findall(r"^(\w+):\s+(.*)$", Path(f"/proc/{pid}/status").read_text(), re.MULTILINE))
    except OSError:
        return {}


def confinement():
    """The status of a process that decodes a photo, as soon as it is confined; its last one before; none without one."""
    seen = {}
    with tempfile.TemporaryDirectory() as folder:
        photo = Path(folder, "photo.png")
        write_large_png(photo)
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "HOME": folder, "XDG_STATE_HOME": folder}
        program = subprocess.Popen([PROGRAM, photo], env=environment)
        end = time.monotonic() + 60
        while time.monotonic() < end and program.poll() is None and seen.get("Seccomp") != "2":
            for reader in children(program.pid):
                for child in children(reader):
                    seen = status(child) or seen
        program.terminate()
        program.wait()
    return seen


def wrong_confinement():
    seen = confinement()
    return [f"a decoding process has {name} {seen.get(name, 'unknown')} in place of {wanted}"
            for name, wanted in (("Seccomp", "2"), ("NoNewPrivs", "1")) if seen.get(name) != wanted]


def main():
    wrong = wrong_protections() + wrong_connections() + wrong_confinement()
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
