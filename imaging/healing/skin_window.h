// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/healing/cell_grid.h"
#include "imaging/healing/repair_disc.h"

#include <cmath>

namespace complexion::healing {

/// The picture around an edit disc as a grid of cells, each the mean of `step` by `step` pixels: a disc of
/// more than kMaxRadius is looked at with about kReducedRadius cells of radius, so that the cost of
/// looking hardly grows with it.
struct SkinWindow {
    static constexpr int kMaxRadius = 20;
    static constexpr int kReducedRadius = 16;

    int step = 1;         // pixels of a cell's side
    PixelRect pixels;     // what the grid covers, in the picture
    CellGrid<Cell> cells; // weight 0 where the picture is transparent
    /// How strong the pixels' grain is in each cell: the variance, on the logarithmic scale, of such noise. A
    /// slope is no grain. Empty when a cell is one pixel.
    CellGrid<float> grain;
    float centerX = 0; // of the disc, in cells; whole numbers are the middles of cells
    float centerY = 0;
    float radius = 0; // in cells

    /// How far a cell lies from the disc's centre, in radii.
    float distance(int x, int y) const {
        const float dx = static_cast<float>(x) - centerX;
        const float dy = static_cast<float>(y) - centerY;
        return std::sqrt(dx * dx + dy * dy) / radius;
    }

    /// The cells within `radii` radii of the centre, as a rectangle.
    PixelRect around(float radii) const;

    /// Where the middle of a pixel lies between the middles of cells.
    float cellX(std::int64_t column) const;
    float cellY(std::int64_t row) const;
};

enum class Resolution {
    Full,   // for a repair
    Coarse, // enough to tell where a blemish is
};

/// Reads the window of a disc that lies inside `image`. It is cut off at the picture's edges.
SkinWindow readSkinWindow(const Image& image, const RepairDisc& disc,
                          Resolution resolution = Resolution::Full);

} // namespace complexion::healing
