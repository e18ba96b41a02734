// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/frame.h"

namespace complexion {

/// The rules of zoom and pan in arithmetic of its own, a number at a time, in the order in which the rules
/// change them. All in points, in the root view's coordinates, y upward.
struct ZoomModel {
    double viewWidth = 0; // of the root view, the visible area
    double viewHeight = 0;
    Frame image; // the image view's

    /// A step of the zoom buttons: a tenth in (1.1) or out (0.9) about the centre, the width's ratio held in
    /// 1 to 10.
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

    /// Right before left, top before bottom: an image smaller than the area ends up at its left and bottom.
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

    /// A drag, `down` growing downward. A movement that would open a gap is dropped whole, on each axis
    /// alone.
    void drag(double right, double down) {
        const double x = image.x + right;
        if (x >= viewWidth - image.width && x <= 0)
            image.x = x;
        const double y = image.y - down;
        if (y >= viewHeight - image.height && y <= 0)
            image.y = y;
    }

    /// The area gets another size: the image keeps its ratio to it, and what it shows in the middle.
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
