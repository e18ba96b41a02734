// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/zoom_frame.h"

namespace complexion {

namespace {

constexpr double kCentringWeight = -0.5;

} // namespace

Frame zoomed(const Frame& frame, PointSize visibleArea, double factor) {
    Frame next = frame;
    const double ratio = frame.width / visibleArea.width * factor;
    if (ratio < kSmallestZoom) {
        next.width = visibleArea.width;
        next.height = visibleArea.height;
    } else if (ratio > kLargestZoom) {
        next.width = visibleArea.width * kLargestZoom;
        next.height = visibleArea.height * kLargestZoom;
    } else {
        next.width = frame.width * factor;
        next.height = frame.height * factor;
    }
    next.x += (next.width - frame.width) * kCentringWeight;
    next.y += (next.height - frame.height) * kCentringWeight;
    return repositioned(next, visibleArea);
}

Frame fitted(const Frame& frame, PointSize visibleArea) {
    return repositioned({frame.x, frame.y, visibleArea.width, visibleArea.height}, visibleArea);
}

Frame repositioned(const Frame& frame, PointSize visibleArea) {
    Frame next = frame;
    if (visibleArea.width - next.width > next.x)
        next.x = visibleArea.width - next.width;
    if (next.x > 0)
        next.x = 0;
    if (visibleArea.height - next.height > next.y)
        next.y = visibleArea.height - next.height;
    if (next.y > 0)
        next.y = 0;
    return next;
}

Frame panned(const Frame& frame, PointSize visibleArea, double deltaX, double deltaY) {
    Frame next = frame;
    const double x = frame.x + deltaX;
    if (x >= visibleArea.width - frame.width && x <= 0)
        next.x = x;
    const double y = frame.y - deltaY;
    if (y >= visibleArea.height - frame.height && y <= 0)
        next.y = y;
    return next;
}

Frame resized(const Frame& frame, PointSize from, PointSize to) {
    if (from.width <= 0 || from.height <= 0)
        return fitted(frame, to);
    // The ratio is one number, the width's: a frame has the area's own proportion.
    const double ratio = frame.width / from.width;
    const double centreX = (from.width / 2 - frame.x) / frame.width;
    const double centreY = (from.height / 2 - frame.y) / frame.height;
    Frame next{0, 0, to.width * ratio, to.height * ratio};
    next.x = to.width / 2 - centreX * next.width;
    next.y = to.height / 2 - centreY * next.height;
    return repositioned(next, to);
}

} // namespace complexion
