// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/deep_pixels.h"
#include "imaging/base/image.h"

#include <array>
#include <cstdint>

namespace complexion::healing {

/// Straight (not premultiplied) levels of a pixel, 0 to 255, with fractions.
using Levels = std::array<float, 3>;

/// A pixel of these levels, truncated, and this alpha.
inline RGBA32 paintedPixel(const Levels& levels, std::uint8_t alpha) {
    std::array<std::uint8_t, 3> bytes;
    for (std::size_t c = 0; c < 3; ++c)
        bytes[c] = premultiplied(static_cast<std::uint32_t>(static_cast<std::int32_t>(levels[c])), alpha);
    return {bytes[0], bytes[1], bytes[2], alpha};
}

/// As above; also gives `deep`, whose alpha is kept, the levels with their fractions.
inline RGBA32 paintedDeepPixel(const Levels& levels, std::uint8_t alpha, DeepAlpha form, RGBA64& deep) {
    std::array<std::uint16_t, 3> wide;
    std::array<std::uint8_t, 3> bytes;
    for (std::size_t c = 0; c < 3; ++c) {
        wide[c] = static_cast<std::uint16_t>(levels[c] * 257.0F + 0.5F);
        bytes[c] = premultiplied(roundedTo8(wide[c]), alpha);
        if (form == DeepAlpha::Premultiplied)
            wide[c] = static_cast<std::uint16_t>((std::uint32_t{wide[c]} * deep.alpha + 32'767) / 65'535);
    }
    deep = {wide[0], wide[1], wide[2], deep.alpha};
    return {bytes[0], bytes[1], bytes[2], alpha};
}

/// The levels of a pixel.
inline Levels levelsOf(RGBA32 pixel) {
    const std::uint8_t alpha = pixel.alpha();
    return {static_cast<float>(unpremultiplied(pixel.red(), alpha)),
            static_cast<float>(unpremultiplied(pixel.green(), alpha)),
            static_cast<float>(unpremultiplied(pixel.blue(), alpha))};
}

/// As above for a deep pixel.
inline Levels levelsOf(const RGBA64& pixel, DeepAlpha form) {
    constexpr float kPerLevel = 257;
    constexpr float kOpaque = 65'535;
    const auto alpha = static_cast<float>(pixel.alpha);
    const bool divides = form == DeepAlpha::Premultiplied && alpha > 0 && alpha < kOpaque;
    const float scale = (divides ? kOpaque / alpha : 1) / kPerLevel;
    return {static_cast<float>(pixel.red) * scale, static_cast<float>(pixel.green) * scale,
            static_cast<float>(pixel.blue) * scale};
}

} // namespace complexion::healing
