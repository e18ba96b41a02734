// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/spot_detector.h"

#include <array>

namespace complexion::finding {

/// The skin on a circle around a spot, compared with the spot's middle. In tones.
struct Ring {
    float median = 0; // how much the spot stands out from it, in the green component: all four
    float least = 0;
    float quarter = 0;   // what it stands out from three quarters of the ring
    float deviation = 0; // standard deviation
    float redness = 0;   // how much redder than the ring the spot is
};

struct Surroundings {
    /// At 1.8, 2.6, 4 and 6.5 radii of the spot.
    std::array<Ring, 4> rings;
    float skinShare = 0; // of the rings
    float depth = 0;     // from the spot to the nearest place without skin, in the spot's radii
    float trust = 0;     // as in the map
};

Surroundings measureSurroundings(const Image& image, const SkinMap& map, const Spot& spot);

} // namespace complexion::finding
