// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::finding {

/// One value for each pixel of a mipmap level.
using Plane = healing::CellGrid<float>;

/// Box blur: the mean of the values in a square of side 2 `reach` + 1 around each position, clipped at the
/// edges. With a mask (of the plane's size), the mean of the positions in the mask; 0 if there are none.
Plane boxMean(const Plane& values, int reach, const healing::CellMask* mask = nullptr);

/// The fraction of the square around each position that is in `mask`.
Plane shareOf(const healing::CellMask& mask, int reach);

} // namespace complexion::finding
