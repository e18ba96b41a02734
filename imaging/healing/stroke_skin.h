// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"
#include "imaging/healing/stroke_band.h"

#include <array>
#include <vector>

namespace complexion::healing {

/// The skin on both sides of a stroke, and what it makes of the colours expected under the stroke.
///
/// The colours of the two sides are interpolated across the stroke, so that a shadow's edge along it remains.
/// They are known in two ways: evened out along the stroke, and at each place of it, which includes lines
/// that cross it.
class StrokeSkin {
public:
    /// `colors` are those of the band's pixels, smoothed; the sides begin at `radius` from the path and end
    /// at the band's reach.
    StrokeSkin(const StrokeBand& band, const std::vector<LogColor>& colors, float radius);

    /// The expected colour of a pixel, from the evened-out sides.
    LogColor even(const StrokeBand::Pixel& pixel) const { return expected(m_even, pixel); }
    /// As above, with the lines that cross the stroke.
    LogColor crossed(const StrokeBand::Pixel& pixel) const { return expected(m_crossed, pixel); }

    /// The length of a difference from the expected colour in standard deviations of the skin's variation
    /// (Mahalanobis distance).
    float deviations(const LogColor& difference) const;

private:
    static constexpr std::size_t kSides = 2; // left, right
    using Side = std::vector<LogColor>;      // a colour for each pixel of the path's length
    using Sides = std::array<Side, kSides>;

    LogColor expected(const Sides& sides, const StrokeBand::Pixel& pixel) const;
    void takeSides(const StrokeBand& band, const std::vector<LogColor>& colors);
    void evenOut();
    void measureVariation(const StrokeBand& band, const std::vector<LogColor>& colors);

    float m_radius;
    Sides m_crossed;
    Sides m_even;
    std::array<float, 6> m_inverse{}; // of the covariance: rr rg rb gg gb bb
};

/// Whether a pixel shows the skin beside the stroke.
inline bool isBeside(const StrokeBand::Pixel& pixel, float radius, float reach) {
    const float distance = pixel.across < 0 ? -pixel.across : pixel.across;
    return !pixel.isCap && distance >= radius && distance <= reach;
}

} // namespace complexion::healing
