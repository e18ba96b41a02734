// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/changed_pixels.h"

#include <QImage>
#include <QRect>
#include <QTransform>

namespace complexion {

/// The outline of a mask whose pixels `pixelsToDevice` scales and moves, in device pixels.
struct MaskOutline {
    QPoint origin; // of the picture, in device pixels
    QImage picture;
};

/// A light line just inside the edge and a dark one just outside, `width` device pixels each; only what lies
/// in `visible`, in device pixels.
MaskOutline outlineOf(const PixelMask& mask, const QTransform& pixelsToDevice, const QRect& visible,
                      int width, QRgb light, QRgb dark);

} // namespace complexion
