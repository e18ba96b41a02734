// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/finding/plane.h"

namespace complexion::finding {

/// The skin in a photo, at one of its mipmap levels.
struct SkinMap {
    int level = 0;
    /// 1 for skin, including spots small enough to be blemishes. Empty if there is no skin.
    healing::CellMask skin;
    /// Distance to the nearest non-skin position, in pixels of the level; 0 there.
    Plane depth;
    /// Confidence from 0 to 1: an area apart from the face may be something else of the same colour.
    Plane trust;
    /// The side of a square with the area of all skin, in pixels of the photo. The scale for blemish sizes.
    float extent = 0;

    bool hasSkin() const { return extent > 0; }

    /// The position on this map of a pixel of mipmap level `fromLevel`, clamped to the map.
    PixelPosition placeOf(int x, int y, int fromLevel) const;
    /// Whether that position is skin.
    bool isSkin(int x, int y, int fromLevel) const;
};

/// Segments the skin from the photo's own colours: the most frequent colours of smooth areas among those that
/// blood and pigment can produce at any skin tone. Eyes, brows, nostrils, lips and deep shadows are excluded:
/// they are darker or redder than the skin around them, and larger than a blemish. The mipmap levels of
/// `image` must exist.
SkinMap findSkin(const Image& image);

} // namespace complexion::finding
