// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish.h"

namespace complexion::healing {

/// What is painted over a blemish: at a position p of the picture
///     base(p) + gain * (the picture's own logarithmic colour at p + (columns, rows)) + grain * noise(p)
/// on the scale of log_scale.h.
struct Restoration {
    CellGrid<Cell> base; // valid in the mask's bounds widened by kMargin; the weight is the distance to the
                         // mask, in cells
    float gain = 0;      // of detail finer than a cell; coarser detail is in `base`
    int columns = 0;     // pixels
    int rows = 0;
    float grain = 0; // standard deviation
};

/// Adds skin detail to the membrane. If the blemish is only a stain, its own pores and hairs are still
/// visible: the stain is subtracted along its tint and the detail is kept (a refinement of what retouchers
/// call frequency separation). If the blemish has a relief or a texture of its own, the detail of the best
/// matching patch nearby is copied instead. If there is no such patch, detail that is only faint is kept, or
/// uniform noise as strong as the skin's is added.
Restoration restoreDetail(const SkinWindow& window, const Blemish& blemish);

} // namespace complexion::healing
