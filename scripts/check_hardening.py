#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Inspects the built program: fails if a hardening option of Debian's builds is missing, or if the program could access
a network itself. It opens a single address, in the user's browser, from a single source file."""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAM = ROOT / "build/release/app/complexion"
NETWORK = re.compile(r"^(socket|socketpair|connect|bind|listen|accept4?|getaddrinfo|gethostby\w+|res_\w+|send(to|msg|mmsg)?|"
                     r"recv(from|msg|mmsg)?)$|QNetwork|Q(Tcp|Udp|Ssl|Local|Abstract)Socket")
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
    wrong = [f"{PROGRAM.name} calls {name}" for name in sorted(imported()) if NETWORK.search(name)]
    libraries = re.findall(r"\(NEEDED\).*\[(.*)\]", readelf("--dynamic"))
    wrong += [f"{PROGRAM.name} needs {name}" for name in libraries if NETWORK_LIBRARIES.search(name)]
    sources = [path for folder in ("app", "editor", "view", "imaging") for path in (ROOT / folder).rglob("*.cpp")]
    places = [path.relative_to(ROOT) for path in sources if OPENS_ADDRESS in path.read_text()]
    if [str(place) for place in places] != ["app/system_platform.cpp"]:
        wrong.append(f"addresses are opened in {', '.join(map(str, places)) or 'no file'}")
    return wrong


def main():
    wrong = wrong_protections() + wrong_connections()
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
