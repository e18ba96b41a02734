// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QRect>
#include <QRectF>
#include <QRgb>
#include <QTransform>

class QPainter;

namespace complexion {

/// At this many device pixels per image pixel and above, pixels are painted as sharp squares.
inline constexpr double kCrispScale = 4;

/// Whether `transform` only enlarges or reduces, and moves.
bool isScaleAndTranslation(const QTransform& transform);

/// Whether pixels are averaged at this scale: below one device pixel per pixel.
bool isAveraged(const QTransform& pixelsToDevice);

/// Paints the part of `image` within `exposed`, in the painter's coordinates. `image` is in the screen's
/// colour space; `toPainter` maps its pixels to the painter's coordinates. Below one device pixel per pixel
/// each device pixel is the area mean of the image pixels it covers, so that fine detail neither vanishes nor
/// shimmers while panning; up to kCrispScale scaling is bilinear, above it nearest-neighbour.
void paintImage(QPainter& painter, const Image& image, const QTransform& toPainter, const QRectF& exposed);

/// As paintImage for averaged pixels, over the opaque colour `background` in memory: writes the device pixels
/// `part`, the top-left one to `first`, in rows `bytesPerLine` apart. `pixelsToDevice` only scales and moves.
void writeAveraged(const Image& image, const QTransform& pixelsToDevice, const QRect& part, QRgb background,
                   QRgb* first, qsizetype bytesPerLine);

} // namespace complexion
