// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/frame.h"

namespace complexion {

/// An independent model of zoom and pan, used as an oracle: plain arithmetic in the same order as the rules.
/// All values in points, in coordinates of the root view, y upward.
struct ZoomModel {
    double viewWidth = 0; // of the root view, which is the visible area
    double viewHeight = 0;
    Frame image; // the image view's frame

    /// A step of the zoom buttons: by 1.1 or 0.9 about the centre, with the zoom (the ratio of the widths)
    /// limited to 1 to 10.
    void step(double factor) {
        const double widthBefore = image.width;
        const double heightBefore = image.height;
        const double ratio = (image.width / viewWidth) * factor;
        if (ratio < 1.0) {
            image.width = viewWidth;
            image.height = viewHeight;
        } else if (ratio > 10.0) {
            image.width = viewWidth * 10.0;
            image.height = viewHeight * 10.0;
        } else {
            image.width = image.width * factor;
            image.height = image.height * factor;
        }
        image.x = image.x + (image.width - widthBefore) * -0.5;
        image.y = image.y + (image.height - heightBefore) * -0.5;
        closeGaps();
    }

    void reset() {
        image.width = viewWidth;
        image.height = viewHeight;
        closeGaps();
    }

    /// Right before left, top before bottom: an image smaller than the area ends up at the bottom left.
    void closeGaps() {
        if (viewWidth - image.width > image.x)
            image.x = viewWidth - image.width;
        if (image.x > 0)
            image.x = 0;
        if (viewHeight - image.height > image.y)
            image.y = viewHeight - image.height;
        if (image.y > 0)
            image.y = 0;
    }

    /// A drag. A movement that would open a gap is dropped entirely, separately on each axis.
    void drag(double right, double down) {
        const double x = image.x + right;
        if (x >= viewWidth - image.width && x <= 0)
            image.x = x;
        const double y = image.y - down;
        if (y >= viewHeight - image.height && y <= 0)
            image.y = y;
    }

    /// Resizes the area. The image keeps its zoom and the point at the centre of the area.
    void resizeView(double width, double height) {
        const double ratio = image.width / viewWidth;
        const double middleX = (viewWidth / 2 - image.x) / image.width;
        const double middleY = (viewHeight / 2 - image.y) / image.height;
        image.width = width * ratio;
        image.height = height * ratio;
        image.x = width / 2 - middleX * image.width;
        image.y = height / 2 - middleY * image.height;
        viewWidth = width;
        viewHeight = height;
        closeGaps();
    }
};

} // namespace complexion
