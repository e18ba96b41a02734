// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/areas.h"

#include <cstdlib>

namespace complexion::finding {

using healing::CellMask;

void forEachArea(const CellMask& mask, unsigned char of,
                 const std::function<void(const std::vector<PixelPosition>&)>& visit) {
    CellMask seen(mask.rect());
    std::vector<PixelPosition> area;
    const auto take = [&](int x, int y) {
        if (seen.at(x, y) || mask.at(x, y) != of)
            return;
        seen.at(x, y) = 1;
        area.push_back({y, x});
    };
    healing::forEachCell(mask.rect(), [&](int firstX, int firstY) {
        area.clear();
        take(firstX, firstY);
        std::size_t visited = 0;
        while (visited < area.size()) { // it grows
            const PixelPosition from = area[visited++];
            const int fromX = static_cast<int>(from.column);
            const int fromY = static_cast<int>(from.row);
            healing::forEachCell(healing::widened({fromX, fromY, 1, 1}, 1, mask.rect()), [&](int x, int y) {
                if (x == fromX || y == fromY)
                    take(x, y);
            });
        }
        if (!area.empty())
            visit(area);
    });
}

void dropSmallAreas(CellMask& mask, unsigned char of, int minSize) {
    const CellMask before = mask;
    forEachArea(before, of, [&](const std::vector<PixelPosition>& area) {
        if (std::ssize(area) >= minSize)
            return;
        for (const PixelPosition& place : area)
            mask.at(static_cast<int>(place.column), static_cast<int>(place.row)) = of ? 0 : 1;
    });
}

Plane depthIn(const CellMask& mask) {
    // Chamfer distances (Borgefors, "Distance transformations in digital images", 1986).
    constexpr float kStraight = 1;
    constexpr float kDiagonal = 1.41F;
    constexpr float kFar = 1e6F;
    const PixelRect rect = mask.rect();
    Plane depth(rect);
    const auto at = [&](int x, int y) { return depth.contains(x, y) ? depth.at(x, y) : kFar; };
    healing::forEachCell(rect, [&](int x, int y) {
        if (mask.at(x, y))
            depth.at(x, y) = std::min({kFar, at(x - 1, y) + kStraight, at(x, y - 1) + kStraight,
                                       at(x - 1, y - 1) + kDiagonal, at(x + 1, y - 1) + kDiagonal});
    });
    for (int y = rect.height - 1; y >= 0; --y)
        for (int x = rect.width - 1; x >= 0; --x)
            depth.at(x, y) = std::min({depth.at(x, y), at(x + 1, y) + kStraight, at(x, y + 1) + kStraight,
                                       at(x + 1, y + 1) + kDiagonal, at(x - 1, y + 1) + kDiagonal});
    return depth;
}

Plane spread(Plane values, const CellMask& mask, int times) {
    for (int i = 0; i < times; ++i) {
        const Plane before = values;
        healing::forEachCell(values.rect(), [&](int x, int y) {
            if (before.at(x, y) > 0 || !mask.at(x, y))
                return;
            healing::forEachCell(healing::widened({x, y, 1, 1}, 1, values.rect()), [&](int nearX, int nearY) {
                values.at(x, y) = std::max(values.at(x, y), before.at(nearX, nearY));
            });
        });
    }
    return values;
}

} // namespace complexion::finding
