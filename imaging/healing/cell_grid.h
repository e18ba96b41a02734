// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace complexion::healing {

/// A two-dimensional array over a rectangle that need not begin at (0, 0), so that grids of different parts
/// of a window share its coordinates.
template <class T>
class CellGrid {
public:
    CellGrid() = default;
    explicit CellGrid(PixelRect rect, const T& value = {})
        : m_rect(rect),
          m_values(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height), value) {}

    const PixelRect& rect() const { return m_rect; }
    bool contains(int x, int y) const {
        return x >= m_rect.x && y >= m_rect.y && x < m_rect.right() && y < m_rect.bottom();
    }

    T& at(int x, int y) { return m_values[indexOf(x, y)]; }
    const T& at(int x, int y) const { return m_values[indexOf(x, y)]; }
    /// The first value of a row. For loops in which `at` would compute each index anew.
    T* row(int y) { return &at(m_rect.x, y); }
    const T* row(int y) const { return &at(m_rect.x, y); }
    /// The value at a position; a default value outside the rectangle.
    T valueAt(int x, int y) const { return contains(x, y) ? at(x, y) : T{}; }

private:
    std::size_t indexOf(int x, int y) const {
        return static_cast<std::size_t>((y - m_rect.y) * m_rect.width + x - m_rect.x);
    }

    PixelRect m_rect;
    std::vector<T> m_values;
};

/// Three components, red, green and blue, on the logarithmic scale of log_scale.h.
using LogColor = std::array<float, 3>;

inline LogColor minus(const LogColor& a, const LogColor& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

/// A colour and its weight, which is 0 if the colour is unknown.
using Cell = std::array<float, 4>;
inline constexpr std::size_t kWeight = 3;

/// 1 for cells that belong to a region, 0 for others.
using CellMask = CellGrid<unsigned char>;

/// Calls `visit(x, y)` for each position in `rect`, row by row.
template <class Visit>
void forEachCell(PixelRect rect, const Visit& visit) {
    for (int y = rect.y; y < rect.bottom(); ++y)
        for (int x = rect.x; x < rect.right(); ++x)
            visit(x, y);
}

/// `rect` widened by `margin` on each side and clipped to `whole`.
inline PixelRect widened(PixelRect rect, int margin, PixelRect whole) {
    return PixelRect{rect.x - margin, rect.y - margin, rect.width + 2 * margin, rect.height + 2 * margin}
        .intersected(whole);
}

} // namespace complexion::healing
