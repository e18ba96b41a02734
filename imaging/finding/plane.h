// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::finding {

/// One value for each pixel of a halved level.
using Plane = healing::CellGrid<float>;

/// The mean of the values in a square around each place, `reach` places each way and cut off at the edges.
/// With a mask, which covers the plane, only the places in it count; 0 where there are none.
Plane boxMean(const Plane& values, int reach, const healing::CellMask* mask = nullptr);

/// The share of places around each one that are in `mask`.
Plane shareOf(const healing::CellMask& mask, int reach);

} // namespace complexion::finding
