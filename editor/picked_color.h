// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <QColor>

namespace complexion {

/// The mean colour around `place`, in sRGB: of 5 by 5 pixels, or of the pixels shown in 5 by 5 points on the
/// screen if those are more. Weighted by alpha.
QColor pickedColor(const Image& image, PixelPosition place, double pixelsPerPoint);

} // namespace complexion
