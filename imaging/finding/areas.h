// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/plane.h"

#include <functional>

namespace complexion::finding {

/// Calls `visit` once for each area of connected places of `mask` that have the value `of`; places touch by
/// their sides.
void forEachArea(const healing::CellMask& mask, unsigned char of,
                 const std::function<void(const std::vector<PixelPosition>&)>& visit);

/// Turns the areas of value `of` that have fewer than `least` places into the other value.
void dropSmallAreas(healing::CellMask& mask, unsigned char of, int least);

/// How far the nearest place outside `mask` is, in places; 0 there. The border of the grid is no outside.
Plane depthIn(const healing::CellMask& mask);

/// Gives places of `mask` that have no value the greatest of their neighbours' values, `times` over.
Plane spread(Plane values, const healing::CellMask& mask, int times);

} // namespace complexion::finding
