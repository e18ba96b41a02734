// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace complexion {

/// How the colours of a profile appear on an sRGB screen (relative colorimetric), as plain numbers: the
/// profile, which comes with a stranger's file, is opened in the process that decodes the file, and only
/// these numbers leave it.
struct ScreenTables {
    static constexpr int kLevels = 256;

    /// The screen's white in `light`: so many steps that at the tone curve's steep end, near black, one is
    /// less than half a level.
    static constexpr int kWhite = 8191;

    /// For a profile of primaries and tone curves: the light that each of the 256 levels of red, then of
    /// green, then of blue adds to the screen's red, green and blue. Otherwise empty.
    std::vector<std::array<float, 3>> light;
    /// For any other profile: a colour cube of 33 or 65 nodes a side, blue fastest. 65535 is the full level.
    std::vector<std::array<std::uint16_t, 3>> nodes;

    /// Whether all values are in their ranges.
    bool isValid() const;
};

/// The tables of a profile that can be opened. Colours are within a level of the colour library's; in a cube
/// of 65, which is for profiles that are far from even, the farthest may be a little more.
ScreenTables screenTablesOf(std::span<const std::uint8_t> icc);

/// The conversion that valid tables describe.
std::shared_ptr<const PixelTransform> transformOf(const ScreenTables& tables);

} // namespace complexion
