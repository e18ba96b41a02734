// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

namespace complexion {

/// How stored pixels are turned to be upright: the values 1 to 8 of the EXIF and TIFF tag 274 ("Orientation",
/// TIFF 6.0: where row 0 and column 0 of the stored picture lie in the upright one).
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

/// The orientation of a tag's value; upright for values that mean nothing.
constexpr Orientation orientationFromTag(int value) {
    return value >= 1 && value <= 8 ? static_cast<Orientation>(value) : Orientation::TopLeft;
}

/// Whether upright width is stored height.
constexpr bool swapsSides(Orientation orientation) {
    return orientation >= Orientation::LeftTop;
}

constexpr PixelSize uprightSize(PixelSize stored, Orientation orientation) {
    return swapsSides(orientation) ? PixelSize{stored.height, stored.width} : stored;
}

/// Where the pixels of `place`, a part of an upright picture of size `upright`, are stored.
PixelRect storedPlace(PixelRect place, PixelSize upright, Orientation orientation);

/// The upright picture of pixels stored with `orientation`; the same object for TopLeft.
Image turnedUpright(const Image& stored, Orientation orientation);

/// The pixels to store with `orientation` so that a viewer shows `upright`: undoes `turnedUpright`.
Image turnedForStorage(const Image& upright, Orientation orientation);

} // namespace complexion
