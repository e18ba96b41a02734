// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish_place.h"
#include "imaging/healing/stroke_skin.h"

#include <array>
#include <utility>
#include <variant>
#include <vector>

namespace complexion::healing {

/// The four neighbours of a pixel: columns and rows.
inline constexpr std::array<std::pair<int, int>, 4> kNeighbours = {{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};

/// What to repair in a stroke: a value for each pixel of its band.
struct StrokeMask {
    std::vector<unsigned char> inside;    // 1 for the pixels to be repaired, with their soft rim
    std::vector<unsigned char> edge;      // 1 for those just outside
    std::vector<float> difference;        // from the skin evened out along the stroke, in standard deviations
    std::vector<float> crossedDifference; // from the skin with the lines that cross the stroke
};

using StrokeFinding = std::variant<StrokeMask, BlemishRefusal>;

/// Finds what differs from the skin within `radius` of the path and does not reach into the stroke from
/// beside it. `smooth` are the band's colours; `scale` scales the limits for differences, 1 at the default
/// threshold.
StrokeFinding findStrokeMask(const StrokeBand& band, const std::vector<LogColor>& smooth,
                             const std::vector<unsigned char>& isKnown, const StrokeSkin& skin, float radius,
                             float scale);

} // namespace complexion::healing
