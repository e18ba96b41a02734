// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QRect>
#include <QTransform>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace complexion {

/// Scales a picture to a rectangle of another grid: each pixel of the rectangle is the nearest one of the
/// picture, or the nearest at the picture's edge.
class NearestPixels {
public:
    /// `source` has 32 bits per pixel. It wraps around: its top-left pixel is at its `offset()`. `toSource`
    /// (scale and translation) maps the rectangle's coordinates to pixels from there. The source must outlive
    /// this.
    NearestPixels(const QImage& source, const QTransform& toSource, const QRect& rect);

    /// Writes the rows `begin` to `end` (exclusive) of the rectangle; `rowAt(y)` is the memory of row y.
    void write(int begin, int end, const std::function<QRgb*(int y)>& rowAt) const;

private:
    /// Eight neighbours, all of them among the 16 pixels of the source from `first` on.
    struct Eight {
        alignas(32) std::array<std::int32_t, 8> places = {};
        int first = -1; ///< negative if they are not
    };

    void writeRow(const QRgb* source, QRgb* row) const;
    /// For processors with 256-bit vectors. Returns how many pixels are written.
    std::size_t writeEights(const QRgb* source, QRgb* row) const;

    const uchar* m_source;
    qsizetype m_bytesPerLine;
    std::vector<int> m_columns; // of the source, for each column of the rectangle
    std::vector<int> m_rows;
    std::vector<Eight> m_eights; // m_columns in groups; empty if the processor lacks such vectors
};

} // namespace complexion
