// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/regions.h"

namespace complexion::healing {

namespace {

constexpr float kFar = 1e6F;
constexpr float kDiagonal = 1.41421356F;

/// Shortens the distance at (x, y) by way of a neighbour.
void shorten(CellGrid<float>& distance, int x, int y, int dx, int dy) {
    if (!distance.contains(x + dx, y + dy))
        return;
    const float way = distance.at(x + dx, y + dy) + (dx != 0 && dy != 0 ? kDiagonal : 1);
    distance.at(x, y) = std::min(distance.at(x, y), way);
}

} // namespace

PixelRect boundsOf(const CellMask& mask) {
    PixelRect bounds;
    forEachCell(mask.rect(), [&](int x, int y) {
        if (mask.at(x, y))
            bounds = bounds.united({x, y, 1, 1});
    });
    return bounds;
}

CellGrid<float> distanceTo(const CellMask& mask) {
    CellGrid<float> distance(mask.width(), mask.height(), kFar);
    forEachCell(mask.rect(), [&](int x, int y) {
        if (mask.at(x, y)) {
            distance.at(x, y) = 0;
            return;
        }
        shorten(distance, x, y, -1, 0);
        shorten(distance, x, y, -1, -1);
        shorten(distance, x, y, 0, -1);
        shorten(distance, x, y, 1, -1);
    });
    for (int y = mask.height() - 1; y >= 0; --y)
        for (int x = mask.width() - 1; x >= 0; --x) {
            shorten(distance, x, y, 1, 0);
            shorten(distance, x, y, 1, 1);
            shorten(distance, x, y, 0, 1);
            shorten(distance, x, y, -1, 1);
        }
    return distance;
}

void fillHoles(CellMask& mask) {
    const PixelRect bounds = widened(boundsOf(mask), 1, mask.rect());
    CellMask outside(mask.width(), mask.height());
    std::vector<PixelPosition> open;
    const auto enter = [&](int x, int y) {
        if (x < bounds.x || y < bounds.y || x >= bounds.right() || y >= bounds.bottom() || mask.at(x, y) ||
            outside.at(x, y))
            return;
        outside.at(x, y) = 1;
        open.push_back({y, x});
    };
    for (int x = bounds.x; x < bounds.right(); ++x) {
        enter(x, bounds.y);
        enter(x, bounds.bottom() - 1);
    }
    for (int y = bounds.y; y < bounds.bottom(); ++y) {
        enter(bounds.x, y);
        enter(bounds.right() - 1, y);
    }
    while (!open.empty()) {
        const auto x = static_cast<int>(open.back().column);
        const auto y = static_cast<int>(open.back().row);
        open.pop_back();
        // By sides only: what a diagonal line of the mask encloses is enclosed.
        enter(x - 1, y);
        enter(x + 1, y);
        enter(x, y - 1);
        enter(x, y + 1);
    }
    forEachCell(bounds, [&](int x, int y) {
        if (!outside.at(x, y))
            mask.at(x, y) = 1;
    });
}

} // namespace complexion::healing
