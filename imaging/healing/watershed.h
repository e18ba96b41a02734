// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

#include <queue>

namespace complexion::healing {

/// Whose a cell is.
enum class Claim : unsigned char {
    None,
    Own,
    Foreign,
};

/// Divides the heights of at least `least` between the one at `own` and those that are `isForeign(x, y)`: two
/// that touch are parted along the valley between them, by flooding from the tops down (Meyer, "Topographic
/// distance and watershed lines", 1994). What is connected to neither is nobody's.
template <class IsForeign>
CellMask watershed(const CellGrid<float>& height, PixelPosition own, float least,
                   const IsForeign& isForeign) {
    struct Front {
        float level;
        int order; // first come, first served, so that the result is defined
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
        if (claims.at(x, y) || height.at(x, y) < least)
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
