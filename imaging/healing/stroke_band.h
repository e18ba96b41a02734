// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"

#include <span>
#include <vector>

namespace complexion::healing {

/// A position in pixels: whole numbers are the centres of pixels, y is downward.
struct PixelPoint {
    float x = 0;
    float y = 0;
};

/// The pixels within a distance of a path, row by row, each with its position along and across the path.
/// Rows store only the columns near the path, so that memory and time follow the path's length.
class StrokeBand {
public:
    /// `path` has at least one point. The band is clipped to a picture of `size`.
    StrokeBand(std::span<const PixelPoint> path, float reach, PixelSize size);

    struct Row {
        int y = 0;
        int x = 0; // of the first pixel
        int count = 0;
        std::size_t first = 0; // index of the first pixel
    };
    const std::vector<Row>& rows() const { return m_rows; }
    std::size_t size() const { return m_pixels.size(); }

    struct Pixel {
        float along = 0;    // the nearest point of the path: pixels from its start
        float across = 0;   // the distance from the path, negative on its left side
        bool isCap = false; // nearest to an end of the path
    };
    const Pixel& pixel(std::size_t index) const { return m_pixels[index]; }
    /// Whether the pixel is within the reach.
    bool isInside(std::size_t index) const;

    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    /// The index of a pixel; kNone if it is not in any row.
    std::size_t indexAt(int x, int y) const;

    /// Calls `visit(x, y, index)` for each pixel, row by row.
    template <class Visit>
    void forEachPixel(const Visit& visit) const {
        for (const Row& row : m_rows)
            for (int x = 0; x < row.count; ++x)
                visit(row.x + x, row.y, row.first + static_cast<std::size_t>(x));
    }

    float length() const { return m_length; } // of the path
    /// The unit vector to the right side of the path at a distance along it.
    PixelPoint normalAt(float along) const;

private:
    struct Segment {
        PixelPoint start;
        PixelPoint direction; // of unit length; (1, 0) for a single point
        float length = 0;
        float along = 0; // of the start
    };
    void addRows(PixelSize size);
    void measure(const Segment& segment, bool isFirst, bool isLast);

    float m_reach;
    float m_length = 0;
    std::vector<Segment> m_segments;
    std::vector<Row> m_rows;
    std::vector<Pixel> m_pixels;
};

} // namespace complexion::healing
