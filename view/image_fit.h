// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "view/frame.h"

namespace complexion {

/// How an image is fitted into a frame: scaled in proportion and centred.
struct ImageFit {
    double scale = 1;   // frame points per image point
    double offsetX = 0; // of the image's bottom-left corner from the frame's
    double offsetY = 0;
    bool operator==(const ImageFit&) const = default;
};

ImageFit fitImage(PointSize image, PointSize frame);

/// A point of the root view as a point of the image that is fitted into `frame`. Points beside the image give
/// points outside its size.
Point imagePointAt(Point inRootView, PointSize image, const Frame& frame);

} // namespace complexion
