// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// The known colours of `grid` under a Gaussian of `sigma` cells: normalised convolution (Knutsson and
/// Westin, "Normalized and differential convolution", CVPR 1993), so that what is not known takes no part.
/// Computed inside `where`; a cell there has weight 0 when nothing known is near, all cells outside of it are
/// zero.
CellGrid<Cell> blurred(const CellGrid<Cell>& grid, float sigma, PixelRect where);

} // namespace complexion::healing
