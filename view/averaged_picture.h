// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QImage>
#include <QRect>
#include <QTransform>

namespace complexion {

/// The device pixels `part` of an image that `pixelsToDevice` scales and moves: each is the mean of what it
/// covers of the image's level `level`, weighted by the covered areas. A pixel that the image covers in part
/// is that much transparent.
QImage averagedPicture(const Image& image, int level, const QTransform& pixelsToDevice, const QRect& part);

} // namespace complexion
