#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Usage: scripts/build.sh [--for program|tests|bench] PRESET [target]...
#        scripts/build.sh --options program|tests|bench|work
#
# Builds targets of a preset (all of them when none is named) in build/PRESET. Quiet when all is up to date.
#
# `--for` names what is built, so that nothing else is configured and no other package is needed. Without it the build
# is for working on the program: with the tests, and warnings are errors. A build folder only ever gains options: what
# one command has added stays when another one builds there, and nothing is compiled again for it (but once, when
# warnings become errors). `--options` prints what a new folder is configured with.
set -euo pipefail

# What each purpose needs to be on.
program=()
tests=(COMPLEXION_TESTS)
bench=(COMPLEXION_BENCHMARKS)
work=(COMPLEXION_TESTS COMPLEXION_WERROR)

usage() {
    echo "usage: scripts/build.sh [--for program|tests|bench] PRESET [target]..." >&2
    exit 2
}

purpose=work
only_print=
case ${1:-} in
    --for | --options)
        [[ ${2:-} =~ ^(program|tests|bench|work)$ ]] || usage
        purpose=$2
        [[ $1 == --options ]] && only_print=yes
        shift 2
        ;;
esac
declare -n needed=$purpose
options=()
for option in COMPLEXION_TESTS COMPLEXION_BENCHMARKS COMPLEXION_WERROR; do
    [[ " ${needed[*]} " == *" $option "* ]] && options+=("-D$option=ON") || options+=("-D$option=OFF")
done
[[ -n $only_print ]] && { echo "${options[@]}"; exit; }
[[ $# -gt 0 ]] || usage

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
cd "$root"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
configure() {
    cmake "$@" >"$log" 2>&1 || {
        rm -f "build/$preset/build.ninja" # the next attempt begins anew
        cat "$log" >&2
        exit 1
    }
}
if [[ ! -f build/$preset/build.ninja ]]; then
    echo "Configuring build/$preset"
    configure --preset "$preset" "${options[@]}"
else
    added=()
    for option in "${needed[@]}"; do
        grep -qx "$option:BOOL=ON" "build/$preset/CMakeCache.txt" || added+=("-D$option=ON")
    done
    [[ ${#added[@]} -eq 0 ]] || configure "${added[@]}" "build/$preset"
fi
targets=()
[[ $# -gt 0 ]] && targets=(--target "$@")
# Left out: what the build system says about itself when nothing is to be done.
chatter='^(ninja: no work to do\.|-- .*|\[[0-9/]*\] Re-(checking globbed directories|running CMake)\.\.\.)$'
cmake --build --preset "$preset" "${targets[@]}" 2>&1 | { grep --line-buffered -vE "$chatter" || true; }
