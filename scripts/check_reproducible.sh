#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Builds the package of the last commit twice: in another folder, with other user settings, at another time and without
# the compiler's cache. Both must be the same, byte for byte. If not, lists the files that differ.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
first=$root/build/package
second=$root/build/second/package/folder
"$root/package" >/dev/null
mkdir -p "$root/build/home"
(
    umask 027
    export TZ=Asia/Tokyo LC_ALL=C LANGUAGE=de HOME=$root/build/home USER=somebody CCACHE_DISABLE=1
    "$root/package" "$second" >/dev/null
)

different=0
for package in "$first"/*.deb; do
    again=$second/$(basename "$package")
    cmp --silent "$package" "$again" && continue
    different=1
    echo "$(basename "$package") depends on more than the commit. The files that differ:" >&2
    for side in "$package" "$again"; do
        rm -rf "$side.files"
        dpkg-deb --raw-extract "$side" "$side.files"
    done
    diff --recursive --brief --no-dereference "$package.files" "$again.files" >&2 || true
    diff <(dpkg-deb --contents "$package") <(dpkg-deb --contents "$again") >&2 || true
done
exit "$different"
