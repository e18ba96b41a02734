// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace complexion::healing {

/// The factor by which a threshold scales the limits for differences from the skin: 1 at the default, 10.
float scaleOfThreshold(std::int64_t threshold);

/// A search at this threshold or a higher one finds nothing.
inline constexpr std::int64_t kNothingDiffers = 255;

/// How much a blemish has to differ from the skin, in grey levels; 10 by default.
struct Thresholds {
    std::int64_t region = 0; // what is found by itself
    std::int64_t rim = 0;    // what has the region's tint and is connected to it

    static Thresholds both(std::int64_t threshold) { return {threshold, threshold}; }
};

} // namespace complexion::healing
