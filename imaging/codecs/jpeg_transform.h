// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace complexion::jpeg {

// The DCT of 8 by 8 blocks (ITU-T T.81 A.3.3). All arrays are row-major: samples from the top row down,
// coefficients by increasing vertical frequency.

inline constexpr int kBlockSide = 8;
inline constexpr std::size_t kBlockArea = 64;

/// A block's dequantised coefficients.
using CoefficientBlock = std::array<std::int16_t, kBlockArea>;
/// A block's samples, 0 to 255.
using SampleBlock = std::array<std::uint8_t, kBlockArea>;
using FloatBlock = std::array<float, kBlockArea>;

/// The largest magnitudes of an AC coefficient and of a DC difference in an 8-bit Huffman-coded file (ITU-T
/// T.81 F.1.2).
inline constexpr int kMaxAc = 1023;
inline constexpr int kMaxDcDifference = 2047;

/// The samples that common decoders compute for a block: bit-identical to libjpeg's slow integer transform.
SampleBlock decodedSamples(const CoefficientBlock& block);

/// The exact inverse DCT plus the level shift of 128, neither rounded nor clamped.
FloatBlock inverseDct(const FloatBlock& coefficients);
FloatBlock inverseDct(const CoefficientBlock& block);

/// The forward DCT of samples minus the level shift of 128.
FloatBlock forwardDct(const FloatBlock& samples);

/// The DCT basis: `dctBasis()[k][p]` is the contribution of coefficient k to sample p.
const std::array<FloatBlock, kBlockArea>& dctBasis();

} // namespace complexion::jpeg
