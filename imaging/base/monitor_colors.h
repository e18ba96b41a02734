// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/lcms.h"
#include "imaging/base/light.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace complexion {

/// How a monitor shows light (relative colorimetric).
class MonitorColors {
public:
    /// An sRGB monitor.
    MonitorColors();
    /// A monitor with the ICC profile `icc`.
    explicit MonitorColors(std::span<const std::uint8_t> icc);

    /// False if the profile cannot be used.
    bool isValid() const { return isOfPrimaries() || m_fromXyz; }

    /// Whether the monitor mixes its own primaries, each by a tone curve. `primaryLight` and `levels` require
    /// this.
    bool isOfPrimaries() const { return !m_levels[0].empty(); }

    /// The shares of the monitor's primaries in light, in the same unit.
    std::array<float, 3> primaryLight(const Light& light) const;

    /// The levels of a primary, 0 to 255, for 0 to kWhiteLight of its light.
    std::span<const float> levels(std::size_t primary) const { return m_levels[primary]; }

    /// Replaces light by the monitor's levels, 0 to 255, not rounded. On all cores unless the monitor mixes
    /// its own primaries: that takes the colour library half a microsecond a colour.
    void show(std::span<std::array<float, 3>> colors) const;

private:
    void showByLibrary(std::span<std::array<float, 3>> colors) const;
    bool setPrimaries(const LcmsProfile& profile);

    bool m_isSrgb = false;
    std::array<Light, 3> m_toPrimaries = {}; // by columns
    std::array<std::vector<float>, 3> m_levels;
    LcmsTransform m_fromXyz;
};

} // namespace complexion
