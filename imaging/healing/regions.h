// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// The smallest rectangle that holds the mask.
PixelRect boundsOf(const CellMask& mask);

/// Adds to `mask` every place that `belongs(x, y)` and that is reached from it through such places, by sides
/// and corners.
template <class Belongs>
void growThrough(CellMask& mask, std::vector<PixelPosition>& open, const Belongs& belongs) {
    while (!open.empty()) {
        const PixelPosition place = open.back();
        open.pop_back();
        const PixelRect near =
            widened({static_cast<int>(place.column), static_cast<int>(place.row), 1, 1}, 1, mask.rect());
        forEachCell(near, [&](int x, int y) {
            if (mask.at(x, y) || !belongs(x, y))
                return;
            mask.at(x, y) = 1;
            open.push_back({y, x});
        });
    }
}

/// The distance of each cell of `where` to the mask, by way of `where`, in cells; 0 in it. A chamfer distance
/// with steps 1 and 1.4142 (Borgefors, "Distance transformations in digital images", 1986), right within 8 %.
CellGrid<float> distanceTo(const CellMask& mask, PixelRect where);

/// Fills what of the grid the mask encloses.
void fillHoles(CellMask& mask);

} // namespace complexion::healing
