// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/image_fit.h"

namespace complexion {

ImageFit fitImage(PointSize image, PointSize frame) {
    if (frame.width / frame.height <= image.width / image.height) {
        const double scale = frame.width / image.width;
        return {scale, 0, (frame.height - image.height * scale) * 0.5};
    }
    const double scale = frame.height / image.height;
    return {scale, (frame.width - image.width * scale) * 0.5, 0};
}

Point imagePointAt(Point inRootView, PointSize image, const Frame& frame) {
    const ImageFit fit = fitImage(image, {frame.width, frame.height});
    const Point inFrame{inRootView.x - frame.x, inRootView.y - frame.y};
    return {(inFrame.x - fit.offsetX) / fit.scale, (inFrame.y - fit.offsetY) / fit.scale};
}

} // namespace complexion
