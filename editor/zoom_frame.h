// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "view/frame.h"

namespace complexion {

// Zooming and panning: the image view's frame in the visible area, the root view. The zoom ratio is the
// frame's width divided by the area's; at 1 the photo fits into the area. A gap is a part of the visible area
// that the frame does not cover.

inline constexpr double kZoomInFactor = 1.1;
inline constexpr double kZoomOutFactor = 0.9;
inline constexpr double kMinZoom = 1.0;
inline constexpr double kMaxZoom = 10.0;

/// The frame zoomed by `factor` about its centre, within the zoom limits and without a gap.
Frame zoomed(const Frame& frame, PointSize visibleArea, double factor);

/// The same about a point of the visible area, whose content stays in place unless that would open a gap.
Frame zoomedAbout(const Frame& frame, PointSize visibleArea, double factor, Point about);

/// The frame at zoom ratio `ratio`, clamped to the zoom limits, about a point of the visible area.
Frame zoomedTo(const Frame& frame, PointSize visibleArea, double ratio, Point about);

/// The frame at zoom ratio 1, without a gap.
Frame fitted(const Frame& frame, PointSize visibleArea);

/// The frame moved so that it leaves no gap. A frame smaller than the visible area is placed at its bottom
/// left.
Frame repositioned(const Frame& frame, PointSize visibleArea);

/// The frame dragged by (`deltaX`, `deltaY`), y downward. A movement that would open a gap is ignored, for
/// each axis separately.
Frame panned(const Frame& frame, PointSize visibleArea, double deltaX, double deltaY);

/// The frame moved by (`deltaX`, `deltaY`), y downward, as far as possible without a gap.
Frame moved(const Frame& frame, PointSize visibleArea, double deltaX, double deltaY);

/// The frame after the visible area is resized: the same zoom ratio and centre, without a gap.
Frame resized(const Frame& frame, PointSize from, PointSize to);

} // namespace complexion
