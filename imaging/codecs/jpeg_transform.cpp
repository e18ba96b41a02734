// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_transform.h"

#include "imaging/base/wide_vectors.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

namespace complexion {

namespace {

constexpr std::size_t kSide = kJpegBlockSide;
constexpr float kLevelShift = 128;

// The slow integer transform is Loeffler, Ligtenberg and Moschytz's of 1989 with constants of 13 fraction
// bits. Multiplied out, each output is a sum of inputs with these weights; sums of integers are exact, so any
// order gives its bits.

/// Rows: outputs 0 .. 3 (7 .. 4 have the same); columns: inputs 0, 2, 4, 6.
constexpr std::array<std::array<std::int32_t, 4>, 4> kEvenWeights = {{
    {8192, 10703, 8192, 4433},
    {8192, 4433, -8192, -10704},
    {8192, -4433, -8192, 10704},
    {8192, -10703, 8192, -4433},
}};
/// Rows: outputs 0 .. 3 (7 .. 4 have their negatives); columns: inputs 1, 3, 5, 7.
constexpr std::array<std::array<std::int32_t, 4>, 4> kOddWeights = {{
    {11363, 9633, 6437, 2260},
    {9633, -2259, -11362, -6436},
    {6437, -11362, 2261, 9633},
    {2260, -6436, 9633, -11363},
}};
/// The first pass keeps two fraction bits; the second takes off these, its own 13, and the factor of 8.
constexpr int kFirstShift = 13 - 2;
constexpr int kSecondShift = 13 + 2 + 3;

/// `value` / 2^`bits`, rounded, halves upward.
constexpr std::int32_t descaled(std::int32_t value, int bits) {
    return (value + (1 << (bits - 1))) >> bits;
}

/// Transforms eight columns at once: element [i][column] of `in` is input i.
void transformColumns(const std::array<std::array<std::int32_t, kSide>, kSide>& in,
                      std::array<std::array<std::int32_t, kSide>, kSide>& out, int shift) {
    for (std::size_t n = 0; n < kSide / 2; ++n)
        for (std::size_t column = 0; column < kSide; ++column) {
            std::int32_t even = 0;
            std::int32_t odd = 0;
            for (std::size_t k = 0; k < kSide / 2; ++k) {
                even += kEvenWeights[n][k] * in[2 * k][column];
                odd += kOddWeights[n][k] * in[2 * k + 1][column];
            }
            out[n][column] = descaled(even + odd, shift);
            out[kSide - 1 - n][column] = descaled(even - odd, shift);
        }
}

std::array<std::array<float, kSide>, kSide> makeCosines() {
    std::array<std::array<float, kSide>, kSide> cosines{};
    for (std::size_t k = 0; k < kSide; ++k)
        for (std::size_t n = 0; n < kSide; ++n)
            cosines[k][n] = static_cast<float>(
                (k == 0 ? std::numbers::sqrt2 / 4 : 0.5) *
                std::cos(static_cast<double>((2 * n + 1) * k) * std::numbers::pi / (2 * kSide)));
    return cosines;
}

/// cosines()[k][n]: how much a one-dimensional coefficient k adds to sample n.
const std::array<std::array<float, kSide>, kSide>& cosines() {
    static const auto kCosines = makeCosines();
    return kCosines;
}

/// out[j][i] = sum over k of in[i][k] * weights(k, j): one dimension, and the sides swapped.
template <class Weights>
JpegFloats transformRows(const JpegFloats& in, const Weights& weights) {
    JpegFloats out{};
    for (std::size_t i = 0; i < kSide; ++i)
        for (std::size_t j = 0; j < kSide; ++j) {
            float sum = 0;
            for (std::size_t k = 0; k < kSide; ++k)
                sum += in[i * kSide + k] * weights(k, j);
            out[j * kSide + i] = sum;
        }
    return out;
}

} // namespace

COMPLEXION_WIDE_VECTORS
JpegSamples decodedSamples(const JpegBlock& block) {
    std::array<std::array<std::int32_t, kSide>, kSide> in{};
    std::array<std::array<std::int32_t, kSide>, kSide> half{};
    for (std::size_t i = 0; i < kJpegBlockArea; ++i)
        in[i / kSide][i % kSide] = block[i];
    transformColumns(in, half, kFirstShift);
    // Between the passes the usual decoders keep 16 bits.
    for (std::size_t i = 0; i < kJpegBlockArea; ++i)
        in[i % kSide][i / kSide] =
            std::clamp<std::int32_t>(half[i / kSide][i % kSide], std::numeric_limits<std::int16_t>::min(),
                                     std::numeric_limits<std::int16_t>::max());
    transformColumns(in, half, kSecondShift);
    JpegSamples samples{};
    for (std::size_t i = 0; i < kJpegBlockArea; ++i)
        samples[i] = static_cast<std::uint8_t>(std::clamp(half[i % kSide][i / kSide] + 128, 0, 255));
    return samples;
}

JpegFloats inverseTransform(const JpegFloats& coefficients) {
    const auto weights = [](std::size_t k, std::size_t n) { return cosines()[k][n]; };
    JpegFloats samples = transformRows(transformRows(coefficients, weights), weights);
    for (float& sample : samples)
        sample += kLevelShift;
    return samples;
}

JpegFloats inverseTransform(const JpegBlock& block) {
    JpegFloats coefficients{};
    std::ranges::copy(block, coefficients.begin());
    return inverseTransform(coefficients);
}

JpegFloats forwardTransform(const JpegFloats& samples) {
    JpegFloats shifted = samples;
    for (float& sample : shifted)
        sample -= kLevelShift;
    const auto weights = [](std::size_t n, std::size_t k) { return cosines()[k][n]; };
    return transformRows(transformRows(shifted, weights), weights);
}

const std::array<JpegFloats, kJpegBlockArea>& jpegBasis() {
    static const auto kBasis = [] {
        std::array<JpegFloats, kJpegBlockArea> basis{};
        for (std::size_t k = 0; k < kJpegBlockArea; ++k)
            for (std::size_t p = 0; p < kJpegBlockArea; ++p)
                basis[k][p] = cosines()[k / kSide][p / kSide] * cosines()[k % kSide][p % kSide];
        return basis;
    }();
    return kBasis;
}

} // namespace complexion
