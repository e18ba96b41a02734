// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/mask_outline.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace complexion {

namespace {

/// A mask resampled to device pixels: a device pixel is inside if its centre falls on a pixel of the mask.
class DeviceMask {
public:
    DeviceMask(const PixelMask& mask, const QTransform& pixelsToDevice, const QRect& rect)
        : m_width(rect.width()), m_inside(static_cast<std::size_t>(rect.width()) * rect.height()) {
        const QTransform toPixels = pixelsToDevice.inverted();
        std::vector<int> columns;
        for (int x = rect.left(); x <= rect.right(); ++x)
            columns.push_back(static_cast<int>(std::floor(toPixels.m11() * (x + 0.5) + toPixels.dx())));
        auto place = m_inside.begin();
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            const int row = static_cast<int>(std::floor(toPixels.m22() * (y + 0.5) + toPixels.dy()));
            for (const int column : columns)
                *place++ = mask.has(row, column) ? 1 : 0;
        }
    }

    bool at(int x, int y) const {
        return m_inside[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                        static_cast<std::size_t>(x)] != 0;
    }

    /// Whether the four neighbours at `distance` are all inside, or all outside, like this pixel.
    bool isUniformAround(int x, int y, int distance) const {
        const bool inside = at(x, y);
        return at(x - distance, y) == inside && at(x + distance, y) == inside &&
               at(x, y - distance) == inside && at(x, y + distance) == inside;
    }

private:
    int m_width;
    std::vector<std::uint8_t> m_inside;
};

} // namespace

MaskOutline outlineOf(const PixelMask& mask, const QTransform& pixelsToDevice, const QRect& visible,
                      int width, QRgb light, QRgb dark) {
    const QRectF area(mask.area.x, mask.area.y, mask.area.width, mask.area.height);
    const QRect rect = pixelsToDevice.mapRect(area)
                           .toAlignedRect()
                           .adjusted(-width, -width, width, width)
                           .intersected(visible);
    if (mask.area.isEmpty() || rect.isEmpty())
        return {};
    const DeviceMask inside(mask, pixelsToDevice, rect.adjusted(-width, -width, width, width));
    MaskOutline outline{rect.topLeft(), QImage(rect.size(), QImage::Format_ARGB32)};
    outline.picture.fill(Qt::transparent);
    for (int y = 0; y < rect.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(outline.picture.scanLine(y));
        for (int x = 0; x < rect.width(); ++x)
            if (!inside.isUniformAround(x + width, y + width, width))
                line[x] = inside.at(x + width, y + width) ? light : dark;
    }
    return outline;
}

} // namespace complexion
