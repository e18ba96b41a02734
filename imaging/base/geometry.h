// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>

namespace complexion {

/// A size in whole pixels.
struct PixelSize {
    int width = 0;
    int height = 0;
    bool operator==(const PixelSize&) const = default;
    std::int64_t area() const { return std::int64_t{width} * height; }
};

/// A size in points, the unit of layout: 72 to the inch.
struct PointSize {
    double width = 0;
    double height = 0;
    bool operator==(const PointSize&) const = default;
};

/// A point of an image or a view, in points, origin at the bottom left, y upward.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// The position of a pixel: row 0 is the top row, column 0 the leftmost column.
struct PixelPosition {
    std::int64_t row = 0;
    std::int64_t column = 0;
    bool operator==(const PixelPosition&) const = default;
};

/// The centre of a pixel of an upright picture of `size` points, at one point per pixel.
inline Point centreOf(PixelPosition pixel, PointSize size) {
    return {static_cast<double>(pixel.column) + 0.5, size.height - static_cast<double>(pixel.row) - 0.5};
}

/// A rectangle of whole pixels, top-down: x and y are its first column and row.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelRect&) const = default;
    bool isEmpty() const { return width <= 0 || height <= 0; }
    std::int64_t area() const { return isEmpty() ? 0 : std::int64_t{width} * height; }
    int right() const { return x + width; }
    int bottom() const { return y + height; }

    PixelRect intersected(const PixelRect& other) const {
        const int left = std::max(x, other.x);
        const int top = std::max(y, other.y);
        return {left, top, std::max(0, std::min(right(), other.right()) - left),
                std::max(0, std::min(bottom(), other.bottom()) - top)};
    }

    /// The bounding box of both rectangles; empty ones are ignored.
    PixelRect united(const PixelRect& other) const {
        if (isEmpty())
            return other;
        if (other.isEmpty())
            return *this;
        const int left = std::min(x, other.x);
        const int top = std::min(y, other.y);
        return {left, top, std::max(right(), other.right()) - left, std::max(bottom(), other.bottom()) - top};
    }
};

} // namespace complexion
