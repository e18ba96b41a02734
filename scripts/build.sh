#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Usage: scripts/build.sh [--for program|tests|bench] PRESET [target]...
#        scripts/build.sh --options program|tests|bench|work
#
# Builds targets of a preset (by default all) in build/PRESET. Prints nothing if everything is up to date.
#
# `--for` names the purpose of the build: nothing else is configured, and no other packages are needed. The default is a
# developer's build, with the tests and with warnings as errors. Options are only ever added to a build folder, never
# removed, so that commands with different purposes do not cause each other's files to be recompiled (except once, when
# warnings become errors). `--options` prints the options with which a new folder is configured.
set -euo pipefail

# The options that each purpose needs.
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
        rm -f "build/$preset/build.ninja" # so that the next attempt starts from scratch
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
# Filters out the build system's messages about being up to date.
chatter='^(ninja: no work to do\.|-- .*|\[[0-9/]*\] Re-(checking globbed directories|running CMake)\.\.\.)$'
cmake --build --preset "$preset" "${targets[@]}" 2>&1 | { grep --line-buffered -vE "$chatter" || true; }
