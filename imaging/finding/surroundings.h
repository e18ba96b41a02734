// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/spot_detector.h"

#include <array>

namespace complexion::finding {

/// The skin on a circle around a spot, compared with the spot's centre, in tones.
struct Ring {
    // Of the spot's contrast in the green component:
    float median = 0;
    float min = 0;
    float deviation = 0; // standard deviation
    // The same of the means of opposite samples, in which shading cancels:
    float pairMin = 0;
    float pairDeviation = 0;
    float redness = 0; // median of the spot's redness minus the ring's
};

struct Surroundings {
    /// At 1.8, 2.6, 4 and 6.5 radii of the spot.
    std::array<Ring, 4> rings;
    float skinShare = 0; // fraction of the rings that is skin
    float depth = 0;     // distance to the nearest non-skin position, in the spot's radii
    float trust = 0;     // as in the map
};

Surroundings measureSurroundings(const Image& image, const SkinMap& map, const Spot& spot);

} // namespace complexion::finding
