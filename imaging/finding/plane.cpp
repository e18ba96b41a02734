// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/plane.h"

namespace complexion::finding {

namespace {

/// A summed-area table (Crow, "Summed-area tables for texture mapping", SIGGRAPH 1984).
class SummedArea {
public:
    explicit SummedArea(PixelRect rect)
        : m_stride(static_cast<std::size_t>(rect.width) + 1),
          m_sums(m_stride * (static_cast<std::size_t>(rect.height) + 1)) {}

    /// Must be called for all positions, row by row in ascending order.
    void add(int x, int y, double value) {
        if (x == 0)
            m_row = 0;
        m_row += value;
        m_sums[indexOf(x + 1, y + 1)] = m_sums[indexOf(x + 1, y)] + m_row;
    }

    double sum(PixelRect box) const {
        return m_sums[indexOf(box.right(), box.bottom())] - m_sums[indexOf(box.x, box.bottom())] -
               m_sums[indexOf(box.right(), box.y)] + m_sums[indexOf(box.x, box.y)];
    }

private:
    std::size_t indexOf(int x, int y) const {
        return static_cast<std::size_t>(y) * m_stride + static_cast<std::size_t>(x);
    }

    std::size_t m_stride;
    std::vector<double> m_sums;
    double m_row = 0;
};

} // namespace

Plane boxMean(const Plane& values, int reach, const healing::CellMask* mask) {
    const PixelRect& rect = values.rect();
    SummedArea sums(rect);
    SummedArea counts(rect);
    healing::forEachCell(rect, [&](int x, int y) {
        const bool counted = !mask || mask->at(x, y);
        sums.add(x, y, counted ? static_cast<double>(values.at(x, y)) : 0.0);
        counts.add(x, y, counted ? 1 : 0);
    });
    Plane mean(rect);
    healing::forEachCell(rect, [&](int x, int y) {
        const PixelRect box = healing::widened({x, y, 1, 1}, reach, rect);
        const double count = counts.sum(box);
        mean.at(x, y) = count > 0 ? static_cast<float>(sums.sum(box) / count) : 0;
    });
    return mean;
}

Plane shareOf(const healing::CellMask& mask, int reach) {
    Plane values(mask.rect());
    healing::forEachCell(mask.rect(), [&](int x, int y) { values.at(x, y) = mask.at(x, y); });
    return boxMean(values, reach);
}

} // namespace complexion::finding
