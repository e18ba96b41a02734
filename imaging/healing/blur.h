// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// Blurs the known colours of `grid` with a Gaussian of `sigma` cells. Normalised convolution (Knutsson and
/// Westin, "Normalized and differential convolution", CVPR 1993): unknown cells and those in `excluded` do
/// not contribute. The result covers `where`; a cell has weight 0 if there is no known cell nearby.
CellGrid<Cell> blurred(const CellGrid<Cell>& grid, float sigma, PixelRect where,
                       const CellMask& excluded = {});

} // namespace complexion::healing
