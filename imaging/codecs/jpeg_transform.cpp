// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_transform.h"

#include "imaging/base/wide_vectors.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

namespace complexion::jpeg {

namespace {

constexpr std::size_t kSide = kBlockSide;
constexpr float kLevelShift = 128;

// libjpeg's slow integer transform follows Loeffler, Ligtenberg and Moschytz (1989) with 13-bit fixed-point
// constants. Multiplied out, each output is a weighted sum of inputs. Integer sums are exact, so any order of
// summation gives the same bits.

/// Row n: outputs n and 7 - n. Column k: input 2k.
constexpr std::array<std::array<std::int32_t, 4>, 4> kEvenWeights = {{
    {8192, 10703, 8192, 4433},
    {8192, 4433, -8192, -10704},
    {8192, -4433, -8192, 10704},
    {8192, -10703, 8192, -4433},
}};
/// Row n: output n and, negated, output 7 - n. Column k: input 2k + 1.
constexpr std::array<std::array<std::int32_t, 4>, 4> kOddWeights = {{
    {11363, 9633, 6437, 2260},
    {9633, -2259, -11362, -6436},
    {6437, -11362, 2261, 9633},
    {2260, -6436, 9633, -11363},
}};
/// The first pass keeps two fraction bits. The second removes these, its own 13, and the factor of 8.
constexpr int kFirstShift = 13 - 2;
constexpr int kSecondShift = 13 + 2 + 3;

/// `value` / 2^`bits`, rounded half up.
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

/// cosines()[k][n] is the contribution of one-dimensional coefficient k to sample n.
const std::array<std::array<float, kSide>, kSide>& cosines() {
    static const auto kCosines = makeCosines();
    return kCosines;
}

/// out[j][i] = sum over k of in[i][k] * weights(k, j): transforms the rows and transposes.
template <class Weights>
FloatBlock transformRows(const FloatBlock& in, const Weights& weights) {
    FloatBlock out{};
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
SampleBlock decodedSamples(const CoefficientBlock& block) {
    std::array<std::array<std::int32_t, kSide>, kSide> in{};
    std::array<std::array<std::int32_t, kSide>, kSide> half{};
    for (std::size_t i = 0; i < kBlockArea; ++i)
        in[i / kSide][i % kSide] = block[i];
    transformColumns(in, half, kFirstShift);
    // Common decoders keep 16 bits between the passes.
    for (std::size_t i = 0; i < kBlockArea; ++i)
        in[i % kSide][i / kSide] =
            std::clamp<std::int32_t>(half[i / kSide][i % kSide], std::numeric_limits<std::int16_t>::min(),
                                     std::numeric_limits<std::int16_t>::max());
    transformColumns(in, half, kSecondShift);
    SampleBlock samples{};
    for (std::size_t i = 0; i < kBlockArea; ++i)
        samples[i] = static_cast<std::uint8_t>(std::clamp(half[i % kSide][i / kSide] + 128, 0, 255));
    return samples;
}

FloatBlock inverseDct(const FloatBlock& coefficients) {
    const auto weights = [](std::size_t k, std::size_t n) { return cosines()[k][n]; };
    FloatBlock samples = transformRows(transformRows(coefficients, weights), weights);
    for (float& sample : samples)
        sample += kLevelShift;
    return samples;
}

FloatBlock inverseDct(const CoefficientBlock& block) {
    FloatBlock coefficients{};
    std::ranges::copy(block, coefficients.begin());
    return inverseDct(coefficients);
}

FloatBlock forwardDct(const FloatBlock& samples) {
    FloatBlock shifted = samples;
    for (float& sample : shifted)
        sample -= kLevelShift;
    const auto weights = [](std::size_t n, std::size_t k) { return cosines()[k][n]; };
    return transformRows(transformRows(shifted, weights), weights);
}

const std::array<FloatBlock, kBlockArea>& dctBasis() {
    static const auto kBasis = [] {
        std::array<FloatBlock, kBlockArea> basis{};
        for (std::size_t k = 0; k < kBlockArea; ++k)
            for (std::size_t p = 0; p < kBlockArea; ++p)
                basis[k][p] = cosines()[k / kSide][p / kSide] * cosines()[k % kSide][p % kSide];
        return basis;
    }();
    return kBasis;
}

} // namespace complexion::jpeg
