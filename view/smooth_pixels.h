// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QRect>
#include <QTransform>

#include <cstdint>
#include <functional>
#include <vector>

namespace complexion {

/// Enlarges a picture to a rectangle of another grid: each pixel of the rectangle is interpolated linearly
/// between the centres of the four nearest pixels of the picture; beyond them it continues the picture's
/// edge.
class SmoothPixels {
public:
    /// `source` has 32 bits per pixel. `toSource` (scale and translation) maps the rectangle's coordinates to
    /// its pixels. The source must outlive this.
    SmoothPixels(const QImage& source, const QTransform& toSource, const QRect& rect);

    /// Writes the rows `begin` to `end` (exclusive) of the rectangle; `rowAt(y)` is the memory of row y.
    void write(int begin, int end, const std::function<QRgb*(int y)>& rowAt) const;

private:
    /// Positions along one axis: between pixel `first[i]` and the next one, at `weight[i]` parts of 256.
    struct Positions {
        std::vector<std::int32_t> first;
        std::vector<std::uint32_t> weight;
    };
    static Positions positions(int begin, int count, double scale, double offset, int extent);

    const QImage& m_source;
    Positions m_columns; // for each column of the rectangle
    Positions m_rows;
};

} // namespace complexion
