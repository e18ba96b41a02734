// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/skin_map.h"

#include <vector>

namespace complexion::finding {

/// A small spot that is darker or lighter than the skin around it.
struct Spot {
    int level = 0; // mipmap level on which it was found
    int x = 0;     // its centre, in pixels of that level
    int y = 0;
    float radius = 0;   // of its dark or light core, in pixels of that level
    float response = 0; // in tones of the green component; positive if darker than its surroundings
    float texture = 0;  // typical response of the skin around it

    /// The same in pixels of the photo, from the top left corner.
    float photoX() const { return (static_cast<float>(x) + 0.5F) * scale(); }
    float photoY() const { return (static_cast<float>(y) + 0.5F) * scale(); }
    float photoRadius() const { return radius * scale(); }

private:
    float scale() const { return static_cast<float>(1 << level); }
};

/// Detects spots of all sizes on the skin within `area` (pixels of the photo) that exceed the skin's
/// texture: local extrema of differences of Gaussians, two scales per mipmap level (Lindeberg, "Feature
/// detection with automatic scale selection", 1998). The order is deterministic. The mipmap levels of `image`
/// must exist.
std::vector<Spot> detectSpots(const Image& image, const SkinMap& map, PixelRect area);

} // namespace complexion::finding
