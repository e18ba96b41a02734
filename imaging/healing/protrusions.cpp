// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/protrusions.h"

#include "imaging/healing/regions.h"

namespace complexion::healing {

namespace {

constexpr float kOpening = 0.7F;     // radius of the opening, in radii of the largest disc inside the mask
constexpr float kMinLength = 0.25F;  // of a protrusion, in the same unit,
constexpr float kMinCells = 1.5F;    // and in cells
constexpr float kMinSeparate = 1;    // cells from the body: nearer ones may be as strong as the body
constexpr float kMaxStrength = 0.4F; // of the blemish's strength: a stronger protrusion is part of it

/// The opening of a mask, as the distance to its eroded cells.
struct Body {
    CellGrid<float> distance;
    float opening = 0;
    float inner = 0; // the radius of the largest disc inside the mask

    Body(const CellMask& mask, PixelRect bounds) {
        const PixelRect where = {bounds.x - 1, bounds.y - 1, bounds.width + 2, bounds.height + 2};
        CellMask outside(where);
        forEachCell(where, [&](int x, int y) { outside.at(x, y) = mask.valueAt(x, y) ? 0 : 1; });
        const CellGrid<float> depth = distanceTo(outside, where);
        forEachCell(where, [&](int x, int y) { inner = std::max(inner, depth.at(x, y)); });
        opening = kOpening * inner;
        CellMask eroded(where);
        forEachCell(where, [&](int x, int y) { eroded.at(x, y) = depth.at(x, y) > opening ? 1 : 0; });
        distance = distanceTo(eroded, where);
    }

    /// How far a cell is from the opening; 0 or less inside it.
    float outsideBy(PixelPosition cell) const {
        return distance.at(static_cast<int>(cell.column), static_cast<int>(cell.row)) - opening;
    }
};

/// The cells of `open` that are 8-connected to `start`. Adds them to `taken`.
std::vector<PixelPosition> takeConnected(const CellMask& open, PixelPosition start, CellMask& taken) {
    std::vector<PixelPosition> cells = {start};
    std::vector<PixelPosition> next = {start};
    taken.at(static_cast<int>(start.column), static_cast<int>(start.row)) = 1;
    growThrough(taken, next, [&](int x, int y) {
        if (!open.at(x, y))
            return false;
        cells.push_back({y, x});
        return true;
    });
    return cells;
}

} // namespace

bool dropProtrusions(CellMask& mask, const CellGrid<float>& difference, float strength) {
    const PixelRect bounds = boundsOf(mask);
    const Body body(mask, bounds);
    CellMask open(bounds);
    forEachCell(bounds,
                [&](int x, int y) { open.at(x, y) = mask.at(x, y) && body.outsideBy({y, x}) > 0 ? 1 : 0; });
    const float minLength = std::max(kMinCells, kMinLength * body.inner);
    CellMask taken(bounds);
    bool anyDropped = false;
    forEachCell(bounds, [&](int x, int y) {
        if (!open.at(x, y) || taken.at(x, y))
            return;
        const std::vector<PixelPosition> protrusion = takeConnected(open, {y, x}, taken);
        float length = 0;
        float strongest = 0;
        for (const PixelPosition& cell : protrusion) {
            const float off = body.outsideBy(cell);
            length = std::max(length, off);
            if (off > kMinSeparate)
                strongest = std::max(
                    strongest, difference.at(static_cast<int>(cell.column), static_cast<int>(cell.row)));
        }
        if (length <= minLength || strongest > kMaxStrength * strength)
            return;
        anyDropped = true;
        for (const PixelPosition& cell : protrusion)
            mask.at(static_cast<int>(cell.column), static_cast<int>(cell.row)) = 0;
    });
    return anyDropped;
}

} // namespace complexion::healing
