// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/device_pixels.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>

namespace complexion {

std::optional<DevicePixels> DevicePixels::of(const QPainter& painter) {
    const QPaintEngine* const engine = painter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster || painter.hasClipping() ||
        painter.opacity() != 1 || painter.compositionMode() != QPainter::CompositionMode_SourceOver)
        return std::nullopt;
    // For a widget this is the memory of its window.
    const QPaintDevice* const device = engine->paintDevice();
    if (!device || device->devType() != QInternal::Image)
        return std::nullopt;
    const auto& image = *static_cast<const QImage*>(device);
    if (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32_Premultiplied)
        return std::nullopt;
    DevicePixels pixels;
    // The painter has already made the pixels its own; bits() might copy them again.
    pixels.m_pixels = const_cast<uchar*>(image.constBits());
    pixels.m_bytesPerLine = image.bytesPerLine();
    pixels.m_writable = image.rect();
    if (const QRegion exposed = engine->systemClip(); !exposed.isEmpty())
        pixels.m_writable &= exposed;
    return pixels;
}

} // namespace complexion
