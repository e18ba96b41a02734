// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish_place.h"
#include "imaging/healing/skin_model.h"

#include <variant>

namespace complexion::healing {

/// A blemish as it was found in a window.
struct Blemish {
    CellMask mask;         // with its soft rim, without holes, inside the disc
    PixelRect bounds;      // of the mask
    SkinModel model;       // of the skin around
    CellGrid<Cell> skin;   // in and near the mask: the membrane, the skin's colour without any detail
    CellMask unlikeSkin;   // cells near the disc that differ from the skin, the blemish and others
    CellMask foreign;      // those of them that reach out of the disc: no part of the blemish
    bool isParted = false; // from what is foreign and touches it
    LogColor tint{};       // what the blemish's strong part differs from the skin by, in the mean
};

/// A blemish, or why there is none.
using Refusal = BlemishRefusal;
using Finding = std::variant<Blemish, Refusal>;

/// The place that was clicked, where a blemish must have a part that clearly differs from the skin.
struct ClickedPlace {
    float x = 0; // in cells of the window that is searched, like the radius
    float y = 0;
    float radius = 0; // of the edit disc
};

/// The middle of the window's own disc.
inline ClickedPlace middleOf(const SkinWindow& window) {
    return {window.centerX, window.centerY, window.radius};
}

/// What a threshold multiplies differences in the skin's deviations by: 1 at the usual one, 10.
float scaleOfThreshold(std::int64_t threshold);

/// What differs from the skin near the clicked place by more than `threshold` steers (grey levels; 10 is
/// usual, more makes less of it a blemish), grown to its soft rim. It lies in the window's disc, which need
/// not be the edit disc.
Finding findBlemish(const SkinWindow& window, const ClickedPlace& place, std::int64_t threshold);

} // namespace complexion::healing
