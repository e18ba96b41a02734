// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba32.h"

#include <cstdint>

namespace complexion {

/// One pixel of 16 bits a component, as its file stores it.
struct RGBA64 {
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
    std::uint16_t alpha = 0;

    constexpr bool operator==(const RGBA64&) const = default;
    constexpr bool isOpaque() const { return alpha == UINT16_MAX; }
    constexpr bool isGrey() const { return red == green && green == blue; }
};

static_assert(sizeof(RGBA64) == 8);

/// Whether the colours of deep pixels are multiplied by their alpha.
enum class DeepAlpha { Straight, Premultiplied };

/// A 16-bit component in 8 bits: round(value / 257) without a division.
constexpr std::uint8_t roundedTo8(std::uint32_t value) {
    return static_cast<std::uint8_t>((value + 128 - ((value + 128) >> 8)) >> 8);
}

/// An 8-bit component in 16 bits: 0 and 255 become the ends of the range.
constexpr std::uint16_t widenedTo16(std::uint32_t component) {
    return static_cast<std::uint16_t>(component * 257);
}

/// An 8-bit pixel, premultiplied as always, in 16 bits.
RGBA64 widened(RGBA32 pixel, DeepAlpha form);

/// What `deep` becomes when an edit gives its rounded pixel `before` the value `after`: itself where that
/// changes nothing, otherwise `after` widened, with the alpha as deep as it was if that stays.
RGBA64 repainted(RGBA64 deep, RGBA32 before, RGBA32 after, DeepAlpha form);

} // namespace complexion
