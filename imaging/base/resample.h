// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

namespace complexion {

/// Resamples the whole picture to `size`, at one point per pixel, in its own colour space. Averages areas
/// along an axis that shrinks and interpolates with Catmull-Rom splines along one that grows, both on
/// premultiplied values. A picture that already has the size keeps its pixels; one without pixels becomes
/// transparent.
Image resampled(const Image& image, PixelSize size);

/// The last mipmap level whose longer side has at least `longSide` pixels, at one point per pixel. Returns
/// `image` itself if that is level 0.
Image halvedTo(const Image& image, int longSide);

} // namespace complexion
