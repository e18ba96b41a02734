// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace complexion::healing {

// Dither and noise that depend only on a pixel's position, so that the same click gives the same pixels.

/// Bayer's ordered dither (1973): the order in which the 64 pixels of a square are set.
inline constexpr std::array<std::uint8_t, 64> kDitherOrder = {
    0,  32, 8,  40, 2,  34, 10, 42, 48, 16, 56, 24, 50, 18, 58, 26, 12, 44, 4,  36, 14, 46,
    6,  38, 60, 28, 52, 20, 62, 30, 54, 22, 3,  35, 11, 43, 1,  33, 9,  41, 51, 19, 59, 27,
    49, 17, 57, 25, 15, 47, 7,  39, 13, 45, 5,  37, 63, 31, 55, 23, 61, 29, 53, 21};

/// The value between 0 and 1 to be added to a component before it is truncated. The pattern is shifted for
/// each component, so that they are not all rounded up at the same pixels.
inline float ditherAt(std::int64_t row, std::int64_t column, std::size_t component) {
    const auto shift = static_cast<std::int64_t>(component);
    const std::int64_t index = ((row + 5 * shift) & 7) * 8 + ((column + 3 * shift) & 7);
    return (static_cast<float>(kDitherOrder[static_cast<std::size_t>(index)]) + 0.5F) / 64;
}

/// Noise of variance 1: the sum of four bytes of a hash of the position (Steele et al., "Fast splittable
/// pseudorandom number generators", OOPSLA 2014).
inline float noiseAt(std::int64_t row, std::int64_t column) {
    std::uint64_t hash =
        static_cast<std::uint64_t>(row) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(column);
    hash = (hash ^ (hash >> 30)) * 0xBF58476D1CE4E5B9U;
    hash = (hash ^ (hash >> 27)) * 0x94D049BB133111EBU;
    hash ^= hash >> 31;
    const auto sum =
        static_cast<float>((hash & 255) + ((hash >> 8) & 255) + ((hash >> 16) & 255) + ((hash >> 24) & 255));
    constexpr float kDeviation = 147.8F; // standard deviation of the sum of four uniform bytes
    return (sum - 510) / kDeviation;
}

} // namespace complexion::healing
