#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Builds targets of a preset (all of them when none is named) in build/PRESET. Quiet when all is up to date.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
cd "$root"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if [[ ! -f build/$preset/build.ninja ]]; then
    echo "Configuring build/$preset"
    cmake --preset "$preset" >"$log" 2>&1 || {
        rm -f "build/$preset/build.ninja"
        cat "$log" >&2
        exit 1
    }
fi
targets=()
[[ $# -gt 0 ]] && targets=(--target "$@")
# Left out: what the build system says about itself when nothing is to be done.
chatter='^(ninja: no work to do\.|-- .*|\[[0-9/]*\] Re-(checking globbed directories|running CMake)\.\.\.)$'
cmake --build --preset "$preset" "${targets[@]}" 2>&1 | { grep --line-buffered -vE "$chatter" || true; }
