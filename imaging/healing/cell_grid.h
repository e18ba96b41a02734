// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/geometry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace complexion::healing {

/// A rectangle of values, row 0 at the top.
template <class T>
class CellGrid {
public:
    CellGrid() = default;
    CellGrid(int width, int height, const T& value = {})
        : m_width(width),
          m_height(height),
          m_values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), value) {}

    int width() const { return m_width; }
    int height() const { return m_height; }
    PixelRect rect() const { return {0, 0, m_width, m_height}; }
    bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }

    T* row(int y) { return m_values.data() + static_cast<std::ptrdiff_t>(y) * m_width; }
    const T* row(int y) const { return m_values.data() + static_cast<std::ptrdiff_t>(y) * m_width; }
    T& at(int x, int y) { return row(y)[x]; }
    const T& at(int x, int y) const { return row(y)[x]; }

private:
    int m_width = 0;
    int m_height = 0;
    std::vector<T> m_values;
};

/// Three components, red, green and blue, on the logarithmic scale of log_scale.h.
using LogColor = std::array<float, 3>;

/// A colour and, last, its weight: 0 where it is not known.
using Cell = std::array<float, 4>;
inline constexpr std::size_t kWeight = 3;

/// 1 where a cell belongs to something, 0 elsewhere.
using CellMask = CellGrid<unsigned char>;

/// Calls `visit(x, y)` for each place of `rect`, row by row.
template <class Visit>
void forEachCell(PixelRect rect, const Visit& visit) {
    for (int y = rect.y; y < rect.bottom(); ++y)
        for (int x = rect.x; x < rect.right(); ++x)
            visit(x, y);
}

/// `rect` made larger by `margin` on each side, within `whole`.
inline PixelRect widened(PixelRect rect, int margin, PixelRect whole) {
    return PixelRect{rect.x - margin, rect.y - margin, rect.width + 2 * margin, rect.height + 2 * margin}
        .intersected(whole);
}

} // namespace complexion::healing
