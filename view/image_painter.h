// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QRectF>
#include <QTransform>

class QPainter;

namespace complexion {

/// From this many device pixels per image pixel on, the image's pixels are shown as crisp squares.
inline constexpr double kCrispScale = 4;

/// Paints what `exposed`, in the painter's coordinates, shows of `image`, which is in the screen's colours
/// and scaled and placed by `toPainter`. Below one device pixel per pixel each device pixel is the mean of
/// the picture that it covers, so that fine detail neither vanishes nor shimmers when the picture moves; up
/// to kCrispScale the picture is smooth, and from there on crisp.
void paintImage(QPainter& painter, const Image& image, const QTransform& toPainter, const QRectF& exposed);

} // namespace complexion
