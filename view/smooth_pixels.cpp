// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/smooth_pixels.h"

#include "imaging/base/wide_vectors.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace complexion {

namespace {

constexpr std::uint32_t kUnitWeight = 256;

/// `count` bytes between those of two rows.
COMPLEXION_WIDE_VECTORS
void blendRows(const std::uint8_t* upper, const std::uint8_t* lower, std::uint32_t weight, std::size_t count,
               std::uint8_t* out) {
    const auto below = static_cast<std::uint16_t>(weight);
    const auto above = static_cast<std::uint16_t>(kUnitWeight - weight);
    for (std::size_t i = 0; i < count; ++i)
        out[i] =
            static_cast<std::uint8_t>((upper[i] * above + lower[i] * below + kUnitWeight / 2) / kUnitWeight);
}

/// `count` pixels, each between pixel `first[i]` of the row and the next one. Two components of a pixel are
/// computed at a time.
COMPLEXION_WIDE_VECTORS
void blendColumns(const std::uint32_t* row, const std::int32_t* first, const std::uint32_t* weight,
                  std::size_t count, std::uint32_t* out) {
    constexpr std::uint32_t kMask = 0x00FF00FF;
    constexpr std::uint32_t kHalf = 0x00800080;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t left = row[first[i]];
        const std::uint32_t right = row[first[i] + 1];
        const std::uint32_t after = weight[i];
        const std::uint32_t before = kUnitWeight - after;
        const std::uint32_t even = (left & kMask) * before + (right & kMask) * after + kHalf;
        const std::uint32_t odd = (left >> 8 & kMask) * before + (right >> 8 & kMask) * after + kHalf;
        out[i] = (even >> 8 & kMask) | (odd & ~kMask);
    }
}

} // namespace

SmoothPixels::Positions SmoothPixels::positions(int begin, int count, double scale, double offset,
                                                int extent) {
    Positions all;
    all.first.reserve(static_cast<std::size_t>(count));
    all.weight.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        // From the centre of the first pixel.
        const double place = std::clamp((begin + i + 0.5) * scale + offset - 0.5, 0.0, extent - 1.0);
        const int first = std::clamp(static_cast<int>(place), 0, std::max(0, extent - 2));
        all.first.push_back(first);
        all.weight.push_back(static_cast<std::uint32_t>(std::lround((place - first) * kUnitWeight)));
    }
    return all;
}

SmoothPixels::SmoothPixels(const QImage& source, const QTransform& toSource, const QRect& rect)
    : m_source(source),
      m_columns(positions(rect.left(), rect.width(), toSource.m11(), toSource.dx(), source.width())),
      m_rows(positions(rect.top(), rect.height(), toSource.m22(), toSource.dy(), source.height())) {}

void SmoothPixels::write(int begin, int end, const std::function<QRgb*(int y)>& rowAt) const {
    if (m_columns.first.empty())
        return;
    const int left = m_columns.first.front();
    const int right = std::min(m_columns.first.back() + 2, m_source.width());
    const auto count = static_cast<std::size_t>(right - left);
    // In the places of the source's pixels; one more, as the next pixel of the last one.
    std::vector<std::uint32_t> blended(static_cast<std::size_t>(right) + 1);
    for (int y = begin; y < end; ++y) {
        const auto index = static_cast<std::size_t>(y);
        const int upper = m_rows.first[index];
        const int lower = std::min(upper + 1, m_source.height() - 1);
        const auto bytesOf = [&](int row) {
            return m_source.constScanLine(row) + static_cast<std::size_t>(left) * sizeof(QRgb);
        };
        blendRows(bytesOf(upper), bytesOf(lower), m_rows.weight[index], count * sizeof(QRgb),
                  reinterpret_cast<std::uint8_t*>(blended.data() + left));
        blendColumns(blended.data(), m_columns.first.data(), m_columns.weight.data(), m_columns.first.size(),
                     rowAt(y));
    }
}

} // namespace complexion
