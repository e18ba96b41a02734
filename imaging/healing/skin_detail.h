// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish.h"

namespace complexion::healing {

/// What to paint over a blemish, cell by cell and pixel by pixel: at a place p of the picture
///     base(p) + gain * (the picture's own logarithmic colour at p + (columns, rows)) + grain * noise(p)
/// on the scale of log_scale.h.
struct Restoration {
    CellGrid<Cell> base; // good in the mask's bounds widened by kMargin; the last value is the distance to
                         // the mask, in cells
    float gain = 0;      // of what is finer than a cell; base holds the rest
    int columns = 0;     // pixels
    int rows = 0;
    float grain = 0; // standard deviation
};

/// Puts skin's detail on the membrane. Where the blemish is but a stain its own pores and hairs are still
/// there: the stain is taken off along its tint, and they stay ("frequency separation" is what retouchers
/// call its simpler form). Where it has a relief or a mottle of its own, the detail of the nearby patch that
/// fits best is taken instead; where there is no such patch, even noise of the skin's strength.
Restoration restoreDetail(const SkinWindow& window, const Blemish& blemish);

} // namespace complexion::healing
