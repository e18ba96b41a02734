// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "view/frame.h"

namespace complexion {

/// An image fitted into a frame: centred, with its aspect ratio kept.
struct ImageFit {
    double scale = 1;   // frame points per image point
    double offsetX = 0; // of the image's bottom-left corner from the frame's
    double offsetY = 0;
    bool operator==(const ImageFit&) const = default;
};

ImageFit fitImage(PointSize image, PointSize frame);

/// Converts a point of the root view to a point of the image that is fitted into `frame`. A point beside the
/// image gives one outside the image's bounds.
Point imagePointAt(Point inRootView, PointSize image, const Frame& frame);

} // namespace complexion
