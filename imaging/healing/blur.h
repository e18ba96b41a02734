// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// The known colours of `grid` under a Gaussian of `sigma` cells: normalised convolution (Knutsson and
/// Westin, "Normalized and differential convolution", CVPR 1993), so that what is not known, or is in
/// `excluded`, takes no part. The result covers `where`; a cell has weight 0 when nothing known is near.
CellGrid<Cell> blurred(const CellGrid<Cell>& grid, float sigma, PixelRect where,
                       const CellMask& excluded = {});

} // namespace complexion::healing
