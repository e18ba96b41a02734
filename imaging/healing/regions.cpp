// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/regions.h"

#include <numbers>

namespace complexion::healing {

namespace {

constexpr float kFar = 1e6F;
constexpr float kDiagonal = std::numbers::sqrt2_v<float>;

} // namespace

PixelRect boundsOf(const CellMask& mask) {
    int left = mask.rect().right();
    int top = mask.rect().bottom();
    int right = mask.rect().x;
    int bottom = mask.rect().y;
    forEachCell(mask.rect(), [&](int x, int y) {
        if (!mask.at(x, y))
            return;
        left = std::min(left, x);
        right = std::max(right, x + 1);
        top = std::min(top, y);
        bottom = y + 1;
    });
    return right > left ? PixelRect{left, top, right - left, bottom - top} : PixelRect{};
}

CellGrid<float> distanceTo(const CellMask& mask, PixelRect where) {
    // A border of far cells avoids checks at the edge.
    CellGrid<float> distance({where.x - 1, where.y - 1, where.width + 2, where.height + 2}, kFar);
    const std::ptrdiff_t stride = distance.rect().width;
    forEachCell(where.intersected(mask.rect()), [&](int x, int y) {
        if (mask.at(x, y))
            distance.at(x, y) = 0;
    });
    for (int y = where.y; y < where.bottom(); ++y) {
        float* here = &distance.at(where.x, y);
        for (const float* const end = here + where.width; here < end; ++here) {
            const float* above = here - stride;
            const float straight = std::min(here[-1], above[0]) + 1;
            const float diagonal = std::min(above[-1], above[1]) + kDiagonal;
            *here = std::min({*here, straight, diagonal});
        }
    }
    for (int y = where.bottom() - 1; y >= where.y; --y) {
        float* here = &distance.at(where.right() - 1, y);
        for (const float* const end = here - where.width; here > end; --here) {
            const float* below = here + stride;
            const float straight = std::min(here[1], below[0]) + 1;
            const float diagonal = std::min(below[-1], below[1]) + kDiagonal;
            *here = std::min({*here, straight, diagonal});
        }
    }
    return distance;
}

void fillHoles(CellMask& mask) {
    const PixelRect inner = boundsOf(mask);
    const PixelRect bounds{inner.x - 1, inner.y - 1, inner.width + 2, inner.height + 2};
    CellMask outside(bounds);
    std::vector<PixelPosition> open;
    const auto enter = [&](int x, int y) {
        if (x < bounds.x || y < bounds.y || x >= bounds.right() || y >= bounds.bottom() ||
            mask.valueAt(x, y) || outside.at(x, y))
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
        // 4-connected, so that a diagonal line of the mask is a closed boundary.
        enter(x - 1, y);
        enter(x + 1, y);
        enter(x, y - 1);
        enter(x, y + 1);
    }
    forEachCell(inner, [&](int x, int y) {
        if (!outside.at(x, y))
            mask.at(x, y) = 1;
    });
}

} // namespace complexion::healing
