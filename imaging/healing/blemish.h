// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/skin_model.h"

#include <optional>

namespace complexion::healing {

/// A blemish as it was found in a window.
struct Blemish {
    CellMask mask;       // with its soft rim, without holes, inside the disc
    PixelRect bounds;    // of the mask
    SkinModel model;     // of the skin around
    CellGrid<Cell> skin; // in and near the mask: the membrane, the skin's colour without any detail
    CellMask unlikeSkin; // cells near the disc that differ from the skin, the blemish and others
    CellMask foreign;    // those of them that reach out of the disc: no part of the blemish
    LogColor tint{};     // what the blemish's strong part differs from the skin by, in the mean
};

/// What differs from the skin near the disc's centre by more than `threshold` steers (grey levels; 10 is
/// usual, more makes less of it a blemish), grown to its soft rim. Nothing when there is none, and when the
/// disc is so full of it that there is no skin to go by.
std::optional<Blemish> findBlemish(const SkinWindow& window, std::int64_t threshold);

} // namespace complexion::healing
