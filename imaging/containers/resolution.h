// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"

#include <cstdint>

namespace complexion {

inline constexpr double kCentimetresPerInch = 2.54;

/// How many pixels there are to a unit of length, in the units that files state it in.
struct Resolution {
    enum class Unit { None, Inch, Centimetre };

    double across = 0;
    double down = 0;
    /// None: the numbers are only the shape of a pixel.
    Unit unit = Unit::None;

    bool operator==(const Resolution&) const = default;
};

/// The size in points of a picture of `pixels`. Resolutions without a unit, and numbers that are not positive
/// and finite, count as 72 pixels per inch.
PointSize sizeAtResolution(PixelSize pixels, const Resolution& resolution);

/// A resolution for files that count whole pixels per metre; without a unit, the bare number.
std::uint32_t pixelsPerMetre(double resolution, Resolution::Unit unit);

/// The other way round, exactly: in pixels per centimetre.
Resolution resolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down);

/// The same in pixels per inch. Whole pixels per metre cannot express 72 to the inch: a number that a whole
/// resolution is rounded to means that resolution.
Resolution wholeResolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down);

/// The nearest to 72 pixels per inch, which our files state.
inline constexpr std::uint32_t kUsualPixelsPerMetre = 2835;

} // namespace complexion
