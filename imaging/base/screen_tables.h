// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/light.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace complexion {

class MonitorColors;

/// The light of a profile's colours (relative colorimetric), as plain numbers: the profile, which comes with
/// a stranger's file, is opened in the process that decodes the file, and only these numbers leave it.
struct ScreenTables {
    static constexpr int kLevels = 256;

    /// For a profile of primaries and tone curves: the light of each of the 256 levels of its red, then of
    /// its green, then of its blue. Otherwise empty.
    std::vector<Light> light;
    /// For any other profile: the light of a colour cube of 65 nodes a side, blue fastest.
    std::vector<Light> nodes;

    /// Whether all values are in their ranges.
    bool isValid() const;
};

/// The tables of a profile that can be opened. Colours on an sRGB screen are within a level of the colour
/// library's; on other monitors, the rest beyond rounding is at most 0.5 (CIEDE2000).
ScreenTables screenTablesOf(std::span<const std::uint8_t> icc);

/// The tables of sRGB.
ScreenTables srgbScreenTables();

/// The conversion of colours, which valid tables describe, to the levels of a valid monitor.
std::shared_ptr<const PixelTransform> transformOf(const ScreenTables& tables, const MonitorColors& monitor);

} // namespace complexion
