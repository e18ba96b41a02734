// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace complexion {

// The transforms of an 8 by 8 block (T.81, A.3.3). All arrays are in row order, rows from top to bottom, and
// coefficients with rising vertical frequency.

inline constexpr int kJpegBlockSide = 8;
inline constexpr std::size_t kJpegBlockArea = 64;

/// A block's coefficients, dequantised.
using JpegBlock = std::array<std::int16_t, kJpegBlockArea>;
/// A block's samples, 0 to 255.
using JpegSamples = std::array<std::uint8_t, kJpegBlockArea>;
using JpegFloats = std::array<float, kJpegBlockArea>;

/// The largest magnitude of an AC coefficient, and of the difference of two DC coefficients, that an 8-bit
/// Huffman-coded file holds (T.81, F.1.2).
inline constexpr int kMaxJpegAc = 1023;
inline constexpr int kMaxJpegDcDifference = 2047;

/// The samples that the usual decoders make of a block: to the bit those of libjpeg's slow integer transform.
JpegSamples decodedSamples(const JpegBlock& block);

/// The inverse transform as it is defined, with 128 added: neither rounded nor clamped.
JpegFloats inverseTransform(const JpegFloats& coefficients);
JpegFloats inverseTransform(const JpegBlock& block);

/// The forward transform of samples less 128.
JpegFloats forwardTransform(const JpegFloats& samples);

/// The transform's basis: `jpegBasis()[k][p]` is how much coefficient k adds to sample p.
const std::array<JpegFloats, kJpegBlockArea>& jpegBasis();

} // namespace complexion
