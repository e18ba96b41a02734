// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/backdrop.h"

#include "view/image_painter.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr std::int64_t kMaxArea = 1 << 21; // pixels
/// Neighbours that interpolation blends.
constexpr int kMargin = 2;
constexpr int kRowsPerStep = 32;

} // namespace

QTransform Backdrop::fromImage() const {
    return QTransform::fromScale(1.0 / (1 << m_level), 1.0 / (1 << m_level));
}

QRect Backdrop::toPixels(const QRectF& part) const {
    return fromImage().mapRect(part).toAlignedRect().adjusted(-kMargin, -kMargin, kMargin, kMargin) &
           m_pixels.rect();
}

void Backdrop::invalidate(const PixelRect& changed) {
    if (!m_pixels.isNull())
        m_missing += toPixels(QRectF(changed.x, changed.y, changed.width, changed.height));
}

void Backdrop::allocate(const Image& image) {
    if (!m_pixels.isNull())
        return;
    const PixelSize size = image.pixelSize();
    m_level = 0;
    while (m_level < Tile::kLastLevel && size.area() >> 2 * m_level > kMaxArea)
        ++m_level;
    // Without the cells at the right and the bottom that the image covers only partly.
    m_pixels =
        QImage(std::max(1, size.width >> m_level), std::max(1, size.height >> m_level), QImage::Format_RGB32);
    m_missing = m_pixels.rect();
}

void Backdrop::render(const Image& image, const QRect& rect) {
    auto* const first = reinterpret_cast<QRgb*>(m_pixels.scanLine(rect.y())) + rect.x();
    writeAveraged(image, fromImage(), rect, m_background, first, m_pixels.bytesPerLine());
    m_missing -= rect;
}

void Backdrop::prepare(const Image& image, std::chrono::milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    allocate(image);
    while (!m_missing.isEmpty() && std::chrono::steady_clock::now() < end) {
        QRect rect = *m_missing.begin();
        rect.setHeight(std::min(rect.height(), kRowsPerStep));
        render(image, rect);
    }
}

void Backdrop::prepare(const Image& image, const QRectF& part) {
    allocate(image);
    for (const QRect& rect : m_missing& toPixels(part))
        render(image, rect);
}

} // namespace complexion
