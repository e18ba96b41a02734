// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>

namespace complexion::jpeg {

// Changes of colours and of the components that make them, without rounding and clamping.

/// Changes of red, green and blue.
using ColorChange = std::array<float, 3>;
/// Changes of luminance, blue chroma and red chroma.
using ComponentChange = std::array<float, 3>;

inline constexpr std::size_t kLuminance = 0;
inline constexpr std::size_t kBlueChroma = 1;
inline constexpr std::size_t kRedChroma = 2;

using ColorWeights = std::array<std::array<float, 3>, 3>;

/// RGB to YCbCr and back (JFIF 1.02, "Conversion to and from RGB").
inline constexpr ColorWeights kComponentsOfRgb = {{
    {0.299F, 0.587F, 0.114F},
    {-0.168735892F, -0.331264108F, 0.5F},
    {0.5F, -0.418687589F, -0.081312411F},
}};
inline constexpr ColorWeights kRgbOfComponents = {{
    {1, 0, 1.402F},
    {1, -0.344136286F, -0.714136286F},
    {1, 1.772F, 0},
}};
inline constexpr ColorWeights kIdentity = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

/// The change of the luminance that comes closest to `color` together with these changes of the chroma: with
/// the least sum of absolute errors.
float nearestLuminance(const ColorChange& color, float blueChroma, float redChroma);

/// The whole changes of the components that come closest to `color`. Rounding each component on its own
/// is worse.
ComponentChange nearestWholeChange(const ColorChange& color);

} // namespace complexion::jpeg
