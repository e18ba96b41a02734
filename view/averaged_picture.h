// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QImage>
#include <QRect>
#include <QTransform>

namespace complexion {

/// Renders the device pixels `part` of an image placed by `pixelsToDevice` (scale and translation only). Each
/// is the area-weighted mean of the cells of mipmap level `level` that it covers. Device pixels that the
/// image covers only partly are partly transparent.
QImage averagedPicture(const Image& image, int level, const QTransform& pixelsToDevice, const QRect& part);

} // namespace complexion
