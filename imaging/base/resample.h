// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

namespace complexion {

/// The whole picture stretched to `size`, at one point per pixel, in the source's colour space. Along an axis
/// that shrinks each pixel is the mean of the area it covers, along one that grows the pixels are joined by
/// Catmull-Rom splines; both work on the premultiplied values. A picture that has the size already keeps its
/// very pixels; one without pixels becomes transparent.
Image resampled(const Image& image, PixelSize size);

/// The whole picture halved as often as its longer side stays at least `longSide` pixels, at one point per
/// pixel; the very image when that is never.
Image halvedTo(const Image& image, int longSide);

} // namespace complexion
