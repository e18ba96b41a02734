// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba32.h"

#include <cstdint>

namespace complexion {

/// One pixel with 16 bits a component, as stored in its file.
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

/// An 8-bit component in 16 bits: 255 becomes 65535.
constexpr std::uint16_t widenedTo16(std::uint32_t component) {
    return static_cast<std::uint16_t>(component * 257);
}

/// An 8-bit pixel, which is always premultiplied, in 16 bits.
RGBA64 widened(RGBA32 pixel, DeepAlpha form);

/// The new value of `deep` when an edit changes its rounded pixel from `before` to `after`: unchanged if they
/// are equal; otherwise `after` widened, with the 16-bit alpha kept if the 8-bit alpha did not change.
RGBA64 repainted(RGBA64 deep, RGBA32 before, RGBA32 after, DeepAlpha form);

} // namespace complexion
