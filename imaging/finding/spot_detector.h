// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/skin_map.h"

#include <vector>

namespace complexion::finding {

/// Something small that is darker or lighter than the skin around it.
struct Spot {
    int level = 0; // of the image, on which it was found
    int x = 0;     // its middle, in that level's pixels
    int y = 0;
    float radius = 0;   // of its dark or light middle, in that level's pixels
    float response = 0; // in tones of the green component; positive where it is darker than around it
    float texture = 0;  // what the skin around responds with, usually

    /// The same in pixels of the photo, from its top left corner.
    float photoX() const { return (static_cast<float>(x) + 0.5F) * scale(); }
    float photoY() const { return (static_cast<float>(y) + 0.5F) * scale(); }
    float photoRadius() const { return radius * scale(); }

private:
    float scale() const { return static_cast<float>(1 << level); }
};

/// The spots of all sizes on the skin within `area`, in pixels of the photo, that stand out against the
/// skin's texture: the extrema of differences of Gaussians, two scales on each of some halved levels
/// (Lindeberg, "Feature detection with automatic scale selection", 1998). In a fixed order. `image` has
/// halved levels.
std::vector<Spot> detectSpots(const Image& image, const SkinMap& map, PixelRect area);

} // namespace complexion::finding
