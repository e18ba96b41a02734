// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

namespace complexion {

/// How stored pixels are turned upright: the values 1 to 8 of the Orientation tag, 274 (TIFF 6.0 section 8).
/// The names say which sides of the upright picture the stored row 0 and column 0 are on.
enum class Orientation {
    TopLeft = 1,
    TopRight = 2,
    BottomRight = 3,
    BottomLeft = 4,
    LeftTop = 5,
    RightTop = 6,
    RightBottom = 7,
    LeftBottom = 8,
};

/// The orientation for a tag's value; TopLeft for invalid values.
constexpr Orientation orientationFromTag(int value) {
    return value >= 1 && value <= 8 ? static_cast<Orientation>(value) : Orientation::TopLeft;
}

/// Whether turning upright swaps width and height.
constexpr bool swapsSides(Orientation orientation) {
    return orientation >= Orientation::LeftTop;
}

constexpr PixelSize uprightSize(PixelSize stored, Orientation orientation) {
    return swapsSides(orientation) ? PixelSize{stored.height, stored.width} : stored;
}

/// The stored rectangle of `place`, a part of an upright picture of size `upright`.
PixelRect storedRect(PixelRect place, PixelSize upright, Orientation orientation);

/// Turns a picture stored with `orientation` upright. Returns the same object for TopLeft.
Image turnedUpright(const Image& stored, Orientation orientation);

/// Turns an upright picture for storage with `orientation`: the inverse of `turnedUpright`.
Image turnedForStorage(const Image& upright, Orientation orientation);

} // namespace complexion
