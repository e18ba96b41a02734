#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Installs the missing Debian or Ubuntu packages for the purposes named (the lists below). Prints what it installs, and
# nothing if nothing is missing.
#
# "a|b" means the first of these packages that is available; "b<1.2" is satisfied only by a version before 1.2.
set -euo pipefail

build=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libgl-dev libwayland-dev libxcb1-dev
    libjpeg-dev libpng-dev libisal-dev zlib1g-dev libtiff-dev
    libgif-dev libimagequant-dev libcgif-dev liblcms2-dev libseccomp-dev libfontconfig-dev
    fonts-urw-base35 qt6-translations-l10n 'qt6-svg-plugins|libqt6svg6<6.7.2-5'
)
# A virtual display, and tools to control the window on it.
window=(
    xvfb openbox xdotool wmctrl x11-utils imagemagick dbus at-spi2-core
    python3 python3-gi gir1.2-atspi-2.0 python3-pil fonts-dejavu-core xdg-desktop-portal-gtk weston qt6-wayland
)
tests=(
    libgtest-dev libgmock-dev libimage-exiftool-perl
    imagemagick libtiff-tools libjpeg-turbo-progs python3 python3-pil python3-numpy
)
check=(git clang-format-19 clang-tidy-19 valgrind)
package=(build-essential dpkg-dev debhelper fakeroot git lintian)
desktop=(desktop-file-utils appstream mandoc flatpak-builder) # read what desktops and distributions read
system=(debootstrap) # creates the system in which the package is tested
coverage=(gcovr)
fuzz=(clang libclang-rt-dev)
film=(ffmpeg) # records the tutorial
bench=(libbenchmark-dev libopencv-photo-dev) # OpenCV only for comparison

wanted=()
for purpose in "$@"; do
    case $purpose in
        build | window | tests | check | package | desktop | system | coverage | film | bench | fuzz) declare -n packages=$purpose ;;
        *) echo "setup: unknown purpose: $purpose" >&2; exit 2 ;;
    esac
    wanted+=("${packages[@]}")
done

# Other distributions have different package names.
if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    cat >&2 <<'END'
setup: this system does not use Debian packages. Complexion needs a C++20 compiler, CMake 3.25, Ninja, pkg-config,
Qt 6.4 or later (Gui, Widgets, DBus, Svg with its image plug-in, Linguist tools), libjpeg-turbo, libpng, libtiff, giflib,
cgif, libimagequant, ISA-L, zlib, Little CMS 2, libseccomp, libxcb and libwayland-client; its tests also need GoogleTest.
Install these, then run:

    cmake --preset release -DCOMPLEXION_TESTS=OFF -DCOMPLEXION_WERROR=OFF
    cmake --build --preset release
    build/release/app/complexion
END
    exit 1
fi

declare -A installed=() # package to version
while read -r status name version; do
    [[ $status == ii ]] && installed[$name]=$version
done < <(dpkg-query --show --showformat='${db:Status-Abbrev} ${Package} ${Version}\n')

is_installed() {
    local name=${1%%<*}
    [[ -n ${installed[$name]:-} ]] || return 1
    [[ $name == "$1" ]] || dpkg --compare-versions "${installed[$name]}" lt "${1#*<}"
}

# Whether any of "a|b<1.2" is installed.
is_satisfied() {
    local alternative
    for alternative in ${1//|/ }; do
        is_installed "$alternative" && return
    done
    return 1
}

# The first package of "a|b<1.2" that is available, or else the last.
first_known() {
    local name
    for name in ${1//|/ }; do
        name=${name%%<*}
        [[ -n $(apt-cache show --no-all-versions "$name" 2>/dev/null) ]] && break
    done
    echo "$name"
}

unsatisfied=()
for entry in "${wanted[@]}"; do
    is_satisfied "$entry" || unsatisfied+=("$entry")
done
[[ ${#unsatisfied[@]} -eq 0 ]] && exit 0

choose_missing() {
    missing=()
    for entry in "${unsatisfied[@]}"; do
        [[ $entry == *"|"* ]] && missing+=("$(first_known "$entry")") || missing+=("$entry")
    done
}
choose_missing
echo "Installing ${missing[*]}"
as_root=()
if [[ $(id -u) -ne 0 ]]; then
    command -v sudo >/dev/null || {
        echo "setup: installing needs root, and there is no sudo. As root: apt-get install ${missing[*]}" >&2
        exit 1
    }
    as_root=(sudo)
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt_get() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 "$@" >"$log" 2>&1
}
install_missing() {
    apt_get install -y --no-install-recommends "${missing[@]}"
}
# The package lists may be missing or outdated; if so, update them and try again.
install_missing || { apt_get update && choose_missing && install_missing; } || {
    cat "$log" >&2
    echo "setup: cannot install ${missing[*]}" >&2
    exit 1
}
