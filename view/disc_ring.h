// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "view/custom_image_view.h"

#include <QPointF>

namespace complexion {

/// A ring around a pixel of the photo; the radius is in pixels.
struct DiscRing {
    PixelPosition place;
    double radius = 0;
    bool operator==(const DiscRing&) const = default;
};

/// The centre of a pixel of the photo in the coordinates of the view, which must show a photo.
inline QPointF shownCentre(const CustomImageView& view, PixelPosition place) {
    return view.pixelsToWidget().map(
        QPointF(static_cast<double>(place.column) + 0.5, static_cast<double>(place.row) + 0.5));
}

/// A length in pixels of the photo in points of the view, which must show a photo.
inline double shownLength(const CustomImageView& view, double pixels) {
    return pixels * view.pixelsToWidget().m11();
}

} // namespace complexion
