// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/changed_pixels.h"

#include <QImage>
#include <QRect>
#include <QTransform>

namespace complexion {

/// A mask's outline, rendered in device pixels.
struct MaskOutline {
    QPoint origin; // of the picture, in device pixels
    QImage picture;
};

/// Draws a light line just inside the mask's edge and a dark one just outside, each `width` device pixels
/// wide, clipped to `visible` (device pixels). `pixelsToDevice` scales and translates only.
MaskOutline outlineOf(const PixelMask& mask, const QTransform& pixelsToDevice, const QRect& visible,
                      int width, QRgb light, QRgb dark);

} // namespace complexion
