// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

#include <vector>

namespace complexion::healing {

/// The owner of a cell.
enum class Claim : unsigned char {
    None,
    Own,
    Foreign,
};

/// Marker-based watershed by flooding from the peaks down (Meyer, "Topographic distance and watershed lines",
/// 1994): divides the cells of at least `minHeight` between the marker at `own` and the markers at `foreign`;
/// touching regions are separated along the valley between them. Cells that are connected to neither have no
/// owner. Heights must not be negative, markers must be at least that high, and `own` must not be foreign.
CellMask watershed(const CellGrid<float>& height, PixelPosition own,
                   const std::vector<PixelPosition>& foreign, float minHeight);

} // namespace complexion::healing
