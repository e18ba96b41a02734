// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/stroke_band.h"

#include <algorithm>
#include <cmath>

namespace complexion::healing {

namespace {

constexpr float kFar = 1e9F; // pixels

} // namespace

StrokeBand::StrokeBand(std::span<const PixelPoint> path, float reach, PixelSize size) : m_reach(reach) {
    for (std::size_t i = 1; i < path.size(); ++i) {
        const PixelPoint moved{path[i].x - path[i - 1].x, path[i].y - path[i - 1].y};
        const float length = std::sqrt(moved.x * moved.x + moved.y * moved.y);
        if (length == 0)
            continue;
        m_segments.push_back({.start = path[i - 1],
                              .direction = {moved.x / length, moved.y / length},
                              .length = length,
                              .along = m_length});
        m_length += length;
    }
    if (m_segments.empty())
        m_segments.push_back({.start = path.front(), .direction = {1, 0}, .length = 0, .along = 0});
    addRows(size);
    for (std::size_t i = 0; i < m_segments.size(); ++i)
        measure(m_segments[i], i == 0, i + 1 == m_segments.size());
}

void StrokeBand::addRows(PixelSize size) {
    float top = kFar;
    float bottom = -kFar;
    for (const Segment& each : m_segments) {
        const float end = each.start.y + each.direction.y * each.length;
        top = std::min({top, each.start.y, end});
        bottom = std::max({bottom, each.start.y, end});
    }
    const int first = std::max(0, static_cast<int>(std::floor(top - m_reach)));
    const int last = std::min(size.height - 1, static_cast<int>(std::ceil(bottom + m_reach)));
    if (last < first)
        return;
    struct Extent {
        float left = kFar;
        float right = -kFar;
    };
    std::vector<Extent> extents(static_cast<std::size_t>(last - first) + 1);
    for (const Segment& each : m_segments) {
        const PixelPoint end{each.start.x + each.direction.x * each.length,
                             each.start.y + each.direction.y * each.length};
        const int from =
            std::max(first, static_cast<int>(std::floor(std::min(each.start.y, end.y) - m_reach)));
        const int to = std::min(last, static_cast<int>(std::ceil(std::max(each.start.y, end.y) + m_reach)));
        for (int y = from; y <= to; ++y) {
            // The columns of the part of the segment that is within reach of the row.
            float low = 0;
            float high = each.length;
            if (each.direction.y != 0) {
                const float one = (static_cast<float>(y) - m_reach - each.start.y) / each.direction.y;
                const float other = (static_cast<float>(y) + m_reach - each.start.y) / each.direction.y;
                low = std::clamp(std::min(one, other), 0.0F, each.length);
                high = std::clamp(std::max(one, other), 0.0F, each.length);
            }
            const float a = each.start.x + each.direction.x * low;
            const float b = each.start.x + each.direction.x * high;
            Extent& extent = extents[static_cast<std::size_t>(y - first)];
            extent.left = std::min(extent.left, std::min(a, b) - m_reach);
            extent.right = std::max(extent.right, std::max(a, b) + m_reach);
        }
    }
    std::size_t count = 0;
    for (int y = first; y <= last; ++y) {
        const Extent& extent = extents[static_cast<std::size_t>(y - first)];
        const int left = std::max(0, static_cast<int>(std::floor(std::min(extent.left, 1e9F))));
        const int right =
            std::min(size.width - 1, static_cast<int>(std::ceil(std::max(extent.right, -1e9F))));
        const int width = std::max(0, right - left + 1);
        m_rows.push_back({.y = y, .x = left, .count = width, .first = count});
        count += static_cast<std::size_t>(width);
    }
    m_pixels.assign(count, {.along = 0, .across = kFar, .isCap = false});
}

void StrokeBand::measure(const Segment& segment, bool isFirst, bool isLast) {
    const PixelPoint end{segment.start.x + segment.direction.x * segment.length,
                         segment.start.y + segment.direction.y * segment.length};
    const float left = std::min(segment.start.x, end.x) - m_reach;
    const float right = std::max(segment.start.x, end.x) + m_reach;
    const float top = std::min(segment.start.y, end.y) - m_reach;
    const float bottom = std::max(segment.start.y, end.y) + m_reach;
    if (m_rows.empty())
        return;
    const int firstRow = std::max(m_rows.front().y, static_cast<int>(std::floor(top)));
    const int lastRow = std::min(m_rows.back().y, static_cast<int>(std::ceil(bottom)));
    for (int rowY = firstRow; rowY <= lastRow; ++rowY) {
        const Row& row = m_rows[static_cast<std::size_t>(rowY - m_rows.front().y)];
        const auto y = static_cast<float>(rowY);
        const int from = std::max(row.x, static_cast<int>(std::floor(left)));
        const int to = std::min(row.x + row.count - 1, static_cast<int>(std::ceil(right)));
        for (int x = from; x <= to; ++x) {
            const float dx = static_cast<float>(x) - segment.start.x;
            const float dy = y - segment.start.y;
            const float wanted = dx * segment.direction.x + dy * segment.direction.y;
            const float along = std::clamp(wanted, 0.0F, segment.length);
            const float offX = dx - along * segment.direction.x;
            const float offY = dy - along * segment.direction.y;
            const float square = offX * offX + offY * offY;
            Pixel& pixel = m_pixels[row.first + static_cast<std::size_t>(x - row.x)];
            if (square >= pixel.across * pixel.across)
                continue;
            const float distance = std::sqrt(square);
            const float side = dx * -segment.direction.y + dy * segment.direction.x;
            pixel = {.along = segment.along + along,
                     .across = side < 0 ? -distance : distance,
                     .isCap = (isFirst && wanted < 0) || (isLast && wanted > segment.length)};
        }
    }
}

bool StrokeBand::isInside(std::size_t index) const {
    return std::abs(m_pixels[index].across) <= m_reach;
}

std::size_t StrokeBand::indexAt(int x, int y) const {
    if (m_rows.empty() || y < m_rows.front().y || y > m_rows.back().y)
        return kNone;
    const Row& row = m_rows[static_cast<std::size_t>(y - m_rows.front().y)];
    if (x < row.x || x >= row.x + row.count)
        return kNone;
    return row.first + static_cast<std::size_t>(x - row.x);
}

PixelPoint StrokeBand::normalAt(float along) const {
    const auto next = std::ranges::upper_bound(m_segments, along, {}, &Segment::along);
    const Segment& segment = next == m_segments.begin() ? m_segments.front() : next[-1];
    return {-segment.direction.y, segment.direction.x};
}

} // namespace complexion::healing
