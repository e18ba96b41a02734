// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "view/frame.h"

namespace complexion {

// The rules of zoom and pan: how the image view's frame moves in the visible area, the root view. The zoom
// ratio is the frame's width over the area's; 1 fits the photo into the area.

inline constexpr double kZoomInFactor = 1.1;
inline constexpr double kZoomOutFactor = 0.9;
inline constexpr double kMinZoom = 1.0;
inline constexpr double kMaxZoom = 10.0;

/// The frame after a zoom step by `factor` about its centre, held within the limits and without a gap.
Frame zoomed(const Frame& frame, PointSize visibleArea, double factor);

/// The same about a point of the visible area: what it shows stays under it unless that would open a gap.
Frame zoomedAbout(const Frame& frame, PointSize visibleArea, double factor, Point about);

/// The frame at zoom ratio `ratio`, brought within the limits, about a point of the visible area.
Frame zoomedTo(const Frame& frame, PointSize visibleArea, double ratio, Point about);

/// The frame at zoom ratio 1, without a gap.
Frame fitted(const Frame& frame, PointSize visibleArea);

/// The frame moved so that it leaves no gap in the visible area; one that is smaller than the area is pinned
/// to the left and bottom edges.
Frame repositioned(const Frame& frame, PointSize visibleArea);

/// The frame after a drag by (`deltaX`, `deltaY`), y downward. Each axis on its own: a step that would open a
/// gap is dropped whole.
Frame panned(const Frame& frame, PointSize visibleArea, double deltaX, double deltaY);

/// The frame moved by (`deltaX`, `deltaY`), y downward, as far as no gap opens.
Frame moved(const Frame& frame, PointSize visibleArea, double deltaX, double deltaY);

/// The frame when the visible area changes its size: the same zoom ratio about the same centre, without a
/// gap.
Frame resized(const Frame& frame, PointSize from, PointSize to);

} // namespace complexion
