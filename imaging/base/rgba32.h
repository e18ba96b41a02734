// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace complexion {

/// One pixel as a native 32-bit word: red in bits 24-31, green 16-23, blue 8-15, alpha 0-7.
/// The components are premultiplied by alpha. In memory (little-endian) the bytes are A, B, G, R.
struct RGBA32 {
    std::uint32_t color = 0;

    constexpr RGBA32() = default;
    constexpr explicit RGBA32(std::uint32_t word) : color(word) {}
    constexpr RGBA32(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha)
        : color((std::uint32_t{red} << 24) | (std::uint32_t{green} << 16) | (std::uint32_t{blue} << 8) |
                alpha) {}

    constexpr std::uint8_t red() const { return static_cast<std::uint8_t>(color >> 24); }
    constexpr std::uint8_t green() const { return static_cast<std::uint8_t>((color >> 16) & 255); }
    constexpr std::uint8_t blue() const { return static_cast<std::uint8_t>((color >> 8) & 255); }
    constexpr std::uint8_t alpha() const { return static_cast<std::uint8_t>(color & 255); }

    constexpr bool operator==(const RGBA32&) const = default;
};

static_assert(sizeof(RGBA32) == 4);

/// `component` multiplied by `alpha` / 255, rounded to nearest.
constexpr std::uint8_t premultiplied(std::uint32_t component, std::uint32_t alpha) {
    const std::uint32_t scaled = component * alpha + 128;
    return static_cast<std::uint8_t>((scaled + (scaled >> 8)) >> 8);
}

/// The component before premultiplication, rounded to nearest; 0 where alpha is 0.
constexpr std::uint8_t unpremultiplied(std::uint32_t component, std::uint32_t alpha) {
    if (alpha == 0)
        return 0;
    const std::uint32_t value = (component * 255 + alpha / 2) / alpha;
    return static_cast<std::uint8_t>(value > 255 ? 255 : value);
}

} // namespace complexion
