// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QColor>

namespace complexion {

/// The colour of the photo around a place of it, in sRGB: the mean of five by five pixels, or of as many as
/// five by five points of the screen show where those are more.
QColor pickedColor(const Image& image, PixelPosition place, double pixelsPerPoint);

} // namespace complexion
