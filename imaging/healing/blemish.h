// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish_place.h"
#include "imaging/healing/skin_model.h"

#include <variant>

namespace complexion::healing {

/// A blemish found in a window.
struct Blemish {
    CellMask mask;         // inside the disc; includes the soft rim, has no holes
    PixelRect bounds;      // of the mask
    SkinModel model;       // of the surrounding skin
    CellGrid<Cell> skin;   // in and near the mask: the membrane, the skin's colour without detail
    CellMask unlikeSkin;   // cells near the disc that differ from the skin: the blemish and other things
    CellMask foreign;      // the subset that extends beyond the disc and is not part of the blemish
    bool isParted = false; // a foreign region touched it and was cut off
    bool isAlone = true;   // there is no foreign region in the disc
    LogColor tint{};       // mean difference of the blemish's strong part from the skin
};

/// A blemish, or why none was found.
using Refusal = BlemishRefusal;
using Finding = std::variant<Blemish, Refusal>;

/// The clicked area. A blemish must have a part near it that clearly differs from the skin.
struct ClickedPlace {
    float x = 0; // all in cells of the searched window
    float y = 0;
    float radius = 0; // of the edit disc
};

/// The window's own disc as the clicked area.
inline ClickedPlace middleOf(const SkinWindow& window) {
    return {window.centerX, window.centerY, window.radius};
}

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

/// Finds the region near the clicked place that differs from the skin, and extends it to its soft rim. The
/// blemish is within the window's disc, which may be another than the edit disc.
Finding findBlemish(const SkinWindow& window, const ClickedPlace& place, const Thresholds& thresholds);

} // namespace complexion::healing
