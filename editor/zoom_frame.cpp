// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/zoom_frame.h"

#include <algorithm>

namespace complexion {

namespace {

/// The fraction of a size change to add to the origin, for zooming about the frame's centre.
constexpr Point kCentringWeights{-0.5, -0.5};

/// The weights for zooming about a point of the visible area.
Point weightsAbout(const Frame& frame, Point about) {
    return {-(about.x - frame.x) / frame.width, -(about.y - frame.y) / frame.height};
}

Frame zoomedByWeights(const Frame& frame, PointSize visibleArea, double factor, Point weights) {
    Frame next = frame;
    const double ratio = frame.width / visibleArea.width * factor;
    if (ratio < kMinZoom) {
        next.width = visibleArea.width;
        next.height = visibleArea.height;
    } else if (ratio > kMaxZoom) {
        next.width = visibleArea.width * kMaxZoom;
        next.height = visibleArea.height * kMaxZoom;
    } else {
        next.width = frame.width * factor;
        next.height = frame.height * factor;
    }
    next.x += (next.width - frame.width) * weights.x;
    next.y += (next.height - frame.height) * weights.y;
    return repositioned(next, visibleArea);
}

} // namespace

Frame zoomed(const Frame& frame, PointSize visibleArea, double factor) {
    return zoomedByWeights(frame, visibleArea, factor, kCentringWeights);
}

Frame zoomedAbout(const Frame& frame, PointSize visibleArea, double factor, Point about) {
    return zoomedByWeights(frame, visibleArea, factor, weightsAbout(frame, about));
}

Frame zoomedTo(const Frame& frame, PointSize visibleArea, double ratio, Point about) {
    const double clamped = std::clamp(ratio, kMinZoom, kMaxZoom);
    const Point weights = weightsAbout(frame, about);
    Frame next{frame.x, frame.y, visibleArea.width * clamped, visibleArea.height * clamped};
    next.x += (next.width - frame.width) * weights.x;
    next.y += (next.height - frame.height) * weights.y;
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

Frame moved(const Frame& frame, PointSize visibleArea, double deltaX, double deltaY) {
    return repositioned({frame.x + deltaX, frame.y - deltaY, frame.width, frame.height}, visibleArea);
}

Frame resized(const Frame& frame, PointSize from, PointSize to) {
    if (from.width <= 0 || from.height <= 0)
        return fitted(frame, to);
    // The width's ratio is also the height's: the frame has the area's aspect ratio.
    const double ratio = frame.width / from.width;
    const double centreX = (from.width / 2 - frame.x) / frame.width;
    const double centreY = (from.height / 2 - frame.y) / frame.height;
    Frame next{0, 0, to.width * ratio, to.height * ratio};
    next.x = to.width / 2 - centreX * next.width;
    next.y = to.height / 2 - centreY * next.height;
    return repositioned(next, to);
}

} // namespace complexion
