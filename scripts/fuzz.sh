#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Usage: scripts/fuzz.sh SECONDS [program]...
#
# Runs each fuzz target (by default all: decode_jpeg, metadata_png, round_trip ...) for that long. The seeds are
# generated files and, if COMPLEXION_TEST_PHOTOS names a folder, its small files. The corpus is kept in
# build/fuzz/corpus for the next run. A file that makes a target fail is kept in build/fuzz/finds.
#
# The target `reader` sends files through a confined child. It damages the seeds in an order that depends on
# COMPLEXION_FUZZ_SEED only, which is 1 by default.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
seconds=$1
shift
build=build/fuzz
mkdir -p "$build/finds" "$build/seeds"
"$build/tests/fuzz/fuzz_seeds" "$build/seeds" || exit 1

programs=("$@")
[[ $# -gt 0 ]] || programs=({decode,metadata}_{jpeg,png,tiff,gif,bmp} round_trip exact_jpeg attachments deep reader_answer reader)
failed=0
for program in "${programs[@]}"; do
    if [[ $program == reader ]]; then
        build/release/tests/fuzz/fuzz_reader "$seconds" "${COMPLEXION_FUZZ_SEED:-1}" "$build/finds" \
            "$build"/seeds/{jpeg,png,tiff,gif,bmp} || failed=1
        continue
    fi
    mkdir -p "$build/corpus/$program"
    seeds=("$build/seeds/${program#*_}")
    [[ -d ${seeds[0]} ]] || seeds=("$build"/seeds/*)
    if "$build/tests/fuzz/fuzz_$program" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=2048 -max_len=65536 \
        -print_final_stats=1 -artifact_prefix="$build/finds/$program-" "$build/corpus/$program" "${seeds[@]}" \
        >"$build/$program.log" 2>&1; then
        awk -v name="$program" '/number_of_executed_units/ { runs = $2 } / cov: / { line = $0 }
            END { sub(/.* cov: /, "", line); sub(/ .*/, "", line); print name ": " runs " files, " line " edges, no failure" }' \
            "$build/$program.log"
    else
        failed=1
        echo "$program: FAILED"
        tail -n 40 "$build/$program.log"
    fi
done
exit "$failed"
