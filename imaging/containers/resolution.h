// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"

#include <cstdint>

namespace complexion {

inline constexpr double kCentimetresPerInch = 2.54;

/// Pixels per unit of length, in the units that file formats use.
struct Resolution {
    enum class Unit { None, Inch, Centimetre };

    double across = 0;
    double down = 0;
    /// None: only their ratio, the pixel aspect ratio, has a meaning.
    Unit unit = Unit::None;

    bool operator==(const Resolution&) const = default;
};

/// The size in points of a picture of `pixels`. Resolutions without a unit, and numbers that are not positive
/// and finite, count as 72 pixels per inch.
PointSize sizeAtResolution(PixelSize pixels, const Resolution& resolution);

/// Converts a resolution to whole pixels per metre; without a unit, rounds the number itself.
std::uint32_t pixelsPerMetre(double resolution, Resolution::Unit unit);

/// The exact inverse, in pixels per centimetre.
Resolution resolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down);

/// The same in pixels per inch. A number that a whole resolution rounds to becomes that resolution: whole
/// pixels per metre cannot express 72 per inch.
Resolution wholeResolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down);

/// The density in the files we write: 72 pixels per inch, rounded.
inline constexpr std::uint32_t kDefaultPixelsPerMetre = 2835;

} // namespace complexion
