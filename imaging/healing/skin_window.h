// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/healing/cell_grid.h"
#include "imaging/healing/repair_disc.h"

#include <cmath>

namespace complexion::healing {

/// The picture around an edit disc, reduced to a grid of cells, each the mean of `step` by `step` pixels. A
/// disc larger than kMaxRadius is reduced to about kReducedRadius cells of radius, so that the cost hardly
/// depends on the disc's size.
struct SkinWindow {
    static constexpr int kMaxRadius = 20;
    static constexpr int kReducedRadius = 16;

    int step = 1;         // the side of a cell, in pixels
    PixelRect pixels;     // the part of the picture that the grid covers
    CellGrid<Cell> cells; // weight 0 if transparent
    /// The variance of the pixels' grain in each cell, on the logarithmic scale; gradients do not count.
    /// Empty if a cell is one pixel.
    CellGrid<float> grain;
    /// What was subtracted from the cells because it passes through the disc (lines.h). Empty if nothing was.
    CellGrid<Cell> lines;
    float centerX = 0; // of the disc, in cells; whole numbers are the centres of cells
    float centerY = 0;
    float radius = 0; // in cells

    /// The distance of a cell from the disc's centre, in radii.
    float distance(int x, int y) const {
        const float dx = static_cast<float>(x) - centerX;
        const float dy = static_cast<float>(y) - centerY;
        return std::sqrt(dx * dx + dy * dy) / radius;
    }

    bool hasLines() const { return lines.rect().width > 0; }

    /// The cells within `radii` radii of the centre, as a rectangle.
    PixelRect around(float radii) const;

    /// The position of a pixel's centre, in cells.
    float cellX(std::int64_t column) const;
    float cellY(std::int64_t row) const;
};

enum class Resolution {
    Full,   // for a repair
    Coarse, // enough to locate a blemish
};

/// Reads the window of a disc that is inside `image`. The window is clipped at the picture's edges.
SkinWindow readSkinWindow(const Image& image, const RepairDisc& disc,
                          Resolution resolution = Resolution::Full);

} // namespace complexion::healing
