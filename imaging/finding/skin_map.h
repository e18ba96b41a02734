// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/finding/plane.h"

namespace complexion::finding {

/// Where a photo shows skin, on one of its halved levels.
struct SkinMap {
    int level = 0;
    /// 1 on skin, and on what is small enough on it to be a blemish. Empty when there is no skin.
    healing::CellMask skin;
    /// How far the nearest place without skin is, in the level's pixels; 0 there.
    Plane depth;
    /// How much a place counts, 0 to 1: an area apart from the face may be something else of its colour.
    Plane trust;
    /// The side of a square as large as all skin, in pixels of the photo: what blemishes are small against.
    float extent = 0;

    bool hasSkin() const { return extent > 0; }

    /// The place on this map of a pixel of the photo halved `fromLevel` times, moved inside.
    PixelPosition placeOf(int x, int y, int fromLevel) const;
};

/// Finds skin by what the photo itself shows: the most frequent colours among the smooth places, of those
/// that blood and pigment can give to skin of any tone. Eyes, brows, nostrils, lips and deep shadows are not
/// skin: they are darker or redder than the skin around them, and larger than a blemish. `image` has halved
/// levels.
SkinMap findSkin(const Image& image);

} // namespace complexion::finding
