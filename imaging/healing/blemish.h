// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish_place.h"
#include "imaging/healing/skin_model.h"
#include "imaging/healing/thresholds.h"

#include <variant>

namespace complexion::healing {

/// A blemish found in a window.
struct Blemish {
    CellMask mask;          // inside the disc; includes the soft rim, has no holes
    PixelRect bounds;       // of the mask
    SkinModel model;        // of the surrounding skin
    CellGrid<Cell> skin;    // in and near the mask: the membrane, the skin's colour without detail
    CellMask unlikeSkin;    // cells near the disc that differ from the skin: the blemish and other things
    CellMask foreign;       // the subset that extends beyond the disc and is not part of the blemish
    bool isParted = false;  // a foreign region touched it and was cut off
    bool isTrimmed = false; // protrusions were removed from the mask
    bool isAlone = true;    // there is no foreign region in the disc
    LogColor tint{};        // mean difference of the blemish's strong part from the skin
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

/// Finds the region near the clicked place that differs from the skin, and extends it to its soft rim. The
/// blemish is within the window's disc, which may be another than the edit disc.
Finding findBlemish(const SkinWindow& window, const ClickedPlace& place, const Thresholds& thresholds);

} // namespace complexion::healing
