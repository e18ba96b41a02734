// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRegion>
#include <QRgb>

#include <cstddef>
#include <optional>

class QPainter;

namespace complexion {

/// The memory that a painter paints on, for writing opaque pixels there directly: on several threads, and
/// without an intermediate picture.
class DevicePixels {
public:
    /// Nothing unless `painter` paints on 32-bit pixels in memory, without a clip of its own, opacity or a
    /// composition mode. Valid until the painter is used again.
    static std::optional<DevicePixels> of(const QPainter& painter);

    /// The part of the device that may be written.
    const QRegion& writable() const { return m_writable; }
    /// The pixels of row `y` of the device.
    QRgb* row(int y) const {
        return reinterpret_cast<QRgb*>(m_pixels + static_cast<std::ptrdiff_t>(y) * m_bytesPerLine);
    }

private:
    DevicePixels() = default;

    QRegion m_writable;
    uchar* m_pixels = nullptr;
    qsizetype m_bytesPerLine = 0;
};

} // namespace complexion
