// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// Removes from a blemish's mask what protrudes from its body and is clearly weaker: mottle of the skin, a
/// wrinkle, a few hairs or the edge of a lip that the region reached along a narrow or a tapering way. The
/// body is the morphological opening of the mask with a disc in proportion to the largest one that fits into
/// it. Strong protrusions stay: they are parts of the blemish, such as a hair of a mole. `difference` is the
/// distance of each cell from the skin, `strength` that of the blemish. True if anything was removed.
bool dropProtrusions(CellMask& mask, const CellGrid<float>& difference, float strength);

} // namespace complexion::healing
