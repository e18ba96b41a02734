// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/plane.h"

#include <functional>

namespace complexion::finding {

/// Calls `visit` for each connected component (4-connected) of the positions in `mask` with the value `of`.
void forEachArea(const healing::CellMask& mask, unsigned char of,
                 const std::function<void(const std::vector<PixelPosition>&)>& visit);

/// Flips the connected components of value `of` with fewer than `minSize` positions to the other value.
void dropSmallAreas(healing::CellMask& mask, unsigned char of, int minSize);

/// Distance transform: the distance to the nearest position outside `mask`; 0 outside it. The grid's border
/// does not count as outside.
Plane depthIn(const healing::CellMask& mask);

/// Sets positions of `mask` without a value to the largest value of their neighbours, `times` times.
Plane spread(Plane values, const healing::CellMask& mask, int times);

} // namespace complexion::finding
