// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QImage>
#include <QRect>
#include <QRgb>
#include <QTransform>

namespace complexion {

/// Renders the device pixels `part` of an image placed by `pixelsToDevice` (scale and translation only). Each
/// is the area-weighted mean of the cells of mipmap level `level` that it covers. Device pixels that the
/// image covers only partly are partly transparent.
/// The result is premultiplied.
QImage averagedPicture(const Image& image, int level, const QTransform& pixelsToDevice, const QRect& part);

/// Where `average` writes.
struct AveragedPixels {
    QRgb* first = nullptr; ///< the top-left device pixel
    qsizetype bytesPerLine = 0;
    /// Opaque: what is painted over. Transparent: the pixels are premultiplied.
    QRgb background = 0;
};

/// As averagedPicture, to memory.
void average(const Image& image, int level, const QTransform& pixelsToDevice, const QRect& part,
             const AveragedPixels& out);

} // namespace complexion
