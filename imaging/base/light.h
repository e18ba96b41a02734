// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

namespace complexion {

/// Light as a mixture of sRGB's primaries, red first. Colours outside of sRGB have components below 0 or
/// above kWhiteLight.
using Light = std::array<float, 3>;

/// The light of each primary in white: so many steps that at the tone curve's steep end, near black, one is
/// less than half a level.
inline constexpr int kWhiteLight = 8191;

} // namespace complexion
