// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"

namespace complexion {

/// The position and size of a blemish that the natural repair found.
struct BlemishPlace {
    PixelPosition middle;
    double radius = 0; // pixels, of a disc that covers the blemish with its soft rim
    double reach = 0;  // pixels from the middle to the farthest pixel of the blemish
    bool operator==(const BlemishPlace&) const = default;
};

/// Why the natural repair finds no blemish at a click.
enum class BlemishRefusal {
    NothingDiffers,   // nothing near the click differs enough from the surrounding skin
    ComesFromOutside, // the region is part of something larger that extends beyond the disc
    FillsDisc,        // the region leaves too little skin in the disc
    NoSkin,           // there is no skin around the disc
    OverBorder,       // the disc crosses the picture's border
};

} // namespace complexion
