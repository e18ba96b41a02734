#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Installs the Debian packages that are missing, for the purposes named (the lists below).
# Says what it installs; says nothing when nothing is missing.
set -euo pipefail

build=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libgl-dev
    libjpeg62-turbo-dev libpng-dev libisal-dev zlib1g-dev libtiff-dev
    libgif-dev libimagequant-dev libcgif-dev liblcms2-dev
    fonts-urw-base35
)
# A virtual display, and what drives the window on it from outside.
window=(
    xvfb openbox xdotool wmctrl x11-utils imagemagick dbus at-spi2-core
    python3 python3-gi gir1.2-atspi-2.0 python3-pil fonts-dejavu-core
)
tests=(
    libgtest-dev libgmock-dev libimage-exiftool-perl
    imagemagick libtiff-tools libjpeg-turbo-progs python3 python3-pil python3-numpy
)
check=(clang-format-19 clang-tidy-19 valgrind)
package=(dpkg-dev debhelper fakeroot git lintian desktop-file-utils appstream mandoc)
system=(debootstrap) # makes a new system to try the package in
coverage=(gcovr)
fuzz=(clang libclang-rt-14-dev)
film=(ffmpeg) # records the tutorial
bench=(libbenchmark-dev libopencv-photo-dev) # the latter only to be compared with

wanted=()
for purpose in "$@"; do
    case $purpose in
        build | window | tests | check | package | system | coverage | film | bench | fuzz) declare -n packages=$purpose ;;
        *) echo "setup: unknown purpose: $purpose" >&2; exit 2 ;;
    esac
    wanted+=("${packages[@]}")
done

command -v dpkg-query >/dev/null || {
    echo "setup: this is no Debian system; the packages needed are: ${wanted[*]}" >&2
    exit 1
}
installed=$(dpkg-query --show --showformat='${db:Status-Abbrev} ${Package}\n' | awk '$1 == "ii" { print $2 }')
missing=()
for name in "${wanted[@]}"; do
    grep -qxF -- "$name" <<<"$installed" || missing+=("$name")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "Installing ${missing[*]}"
as_root=()
if [[ $(id -u) -ne 0 ]]; then
    command -v sudo >/dev/null || {
        echo "setup: installing needs root, and there is no sudo" >&2
        exit 1
    }
    as_root=(sudo)
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt_get() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 "$@" >"$log" 2>&1
}
# The lists may be missing or older than the archive: the second attempt has fresh ones.
apt_get install -y --no-install-recommends "${missing[@]}" ||
    { apt_get update && apt_get install -y --no-install-recommends "${missing[@]}"; } || {
    cat "$log" >&2
    echo "setup: cannot install ${missing[*]}" >&2
    exit 1
}
