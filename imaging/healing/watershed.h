// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

#include <queue>

namespace complexion::healing {

/// The owner of a cell.
enum class Claim : unsigned char {
    None,
    Own,
    Foreign,
};

/// Marker-based watershed by flooding from the peaks down (Meyer, "Topographic distance and watershed lines",
/// 1994): divides the cells of at least `minHeight` between the marker at `own` and the markers for which
/// `isForeign(x, y)`; touching regions are separated along the valley between them. Cells that are connected
/// to neither have no owner.
template <class IsForeign>
CellMask watershed(const CellGrid<float>& height, PixelPosition own, float minHeight,
                   const IsForeign& isForeign) {
    struct Front {
        float level;
        int order; // first in, first out at equal heights, so that the result is deterministic
        int x;
        int y;
        Claim claim;
        bool operator<(const Front& other) const {
            return level != other.level ? level < other.level : order > other.order;
        }
    };
    std::priority_queue<Front> fronts;
    CellMask claims(height.rect());
    int order = 0;
    const auto claimCell = [&](int x, int y, Claim claim, float level) {
        if (claims.at(x, y) || height.at(x, y) < minHeight)
            return;
        claims.at(x, y) = static_cast<unsigned char>(claim);
        fronts.push({std::min(level, height.at(x, y)), order++, x, y, claim});
    };
    const float top = height.at(static_cast<int>(own.column), static_cast<int>(own.row));
    claimCell(static_cast<int>(own.column), static_cast<int>(own.row), Claim::Own, top);
    forEachCell(height.rect(), [&](int x, int y) {
        if (isForeign(x, y))
            claimCell(x, y, Claim::Foreign, height.at(x, y));
    });
    while (!fronts.empty()) {
        const Front front = fronts.top();
        fronts.pop();
        forEachCell(widened({front.x, front.y, 1, 1}, 1, height.rect()),
                    [&](int x, int y) { claimCell(x, y, front.claim, front.level); });
    }
    return claims;
}

} // namespace complexion::healing
