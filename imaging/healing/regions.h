// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// The mask's bounding rectangle.
PixelRect boundsOf(const CellMask& mask);

/// Region growing, 8-connected: adds to `mask` every position that satisfies `belongs(x, y)` and is connected
/// to those in `open` through such positions.
template <class Belongs>
void growThrough(CellMask& mask, std::vector<PixelPosition>& open, const Belongs& belongs) {
    const PixelRect& rect = mask.rect();
    while (!open.empty()) {
        const auto x = static_cast<int>(open.back().column);
        const auto y = static_cast<int>(open.back().row);
        open.pop_back();
        for (int nextY = std::max(y - 1, rect.y); nextY < std::min(y + 2, rect.bottom()); ++nextY) {
            unsigned char* row = &mask.at(rect.x, nextY) - rect.x;
            for (int nextX = std::max(x - 1, rect.x); nextX < std::min(x + 2, rect.right()); ++nextX)
                if (!row[nextX] && belongs(nextX, nextY)) {
                    row[nextX] = 1;
                    open.push_back({nextY, nextX});
                }
        }
    }
}

/// The distance of each cell of `where` to the mask, in cells; 0 inside it. A chamfer distance with steps 1
/// and 1.4142 (Borgefors, "Distance transformations in digital images", 1986); the error is at most 8 %.
CellGrid<float> distanceTo(const CellMask& mask, PixelRect where);

/// Adds everything that the mask encloses.
void fillHoles(CellMask& mask);

} // namespace complexion::healing
