# SPDX-License-Identifier: GPL-3.0-or-later
"""Usage: expose_constants.py SOURCE TARGET

Copies a source file of imaging/healing and makes its constants scalable at run time (benchmarks/repair/tuned.h)."""

import re
import sys
from pathlib import Path

# Sizes of tables and bit fields, and what the code could not run without.
FIXED = {"kWeight", "kDirections", "kHalvings", "kExponentBits", "kExponentBias", "kSums", "kTerms", "kSteps",
         "kDifferencesOfNoise", "kMadToDeviation", "kTwosPerUnit", "kNothingDiffers", "kPerLevel", "kOpaque", "kFar",
         "kDiagonal", "kDeviation", "kPlaneRounds", "kNoCurve", "kOutOfReach", "kIntervals", "kMargin", "kMarginInCells"}
# The logarithmic scale and the dither are given by their formulas.
UNTOUCHED = {"log_scale.h", "log_scale.cpp", "place_noise.h", "cell_grid.h"}

CONSTANT = re.compile(r"^( *)((?:static |inline )?)constexpr "
                      r"(float|double|int|std::int64_t|std::size_t|std::array<(?:float|double), \d+>) (k\w+) =\s+([^;]+);",
                      re.MULTILINE)


def exposed(text, name):
    def replace(match):
        indent, storage, kind, constant, value = match.groups()
        if constant in FIXED or kind.startswith("std::array") and constant == "kCosines":
            return match[0]
        storage = {"static ": "static inline ", "inline ": "inline ", "": "static " if indent else ""}[storage]
        call = f'complexion::tuning::tuned("{name}", "{constant}", {kind}'
        call += f"{value})" if kind.startswith("std::array") else "{" + value + "})"
        return f"{indent}{storage}const {kind} {constant} = {call};"

    return text if name in UNTOUCHED else CONSTANT.sub(replace, text)


def main():
    source, target = map(Path, sys.argv[1:])
    text = exposed(source.read_text(), source.name)
    if "tuning::tuned" in text:
        text = '#include "benchmarks/repair/tuned.h"\n' + text
    target.parent.mkdir(parents=True, exist_ok=True)
    target.write_text(text)


if __name__ == "__main__":
    main()
