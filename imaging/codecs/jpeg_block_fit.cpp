// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_block_fit.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

namespace complexion {

namespace {

/// What the transforms subtract from samples.
constexpr float kLevelShift = 128;
/// Smaller changes do not make a block differ.
constexpr float kMinChange = 1e-4F;
/// Of a sample that changes by less, the rounded value is kept.
constexpr float kUnchanged = 0.02F;

/// A held sample has to round to its value; so much of the half level is used.
constexpr float kHoldMargin = 0.48F;
/// What a squared level's error of another sample counts, against one of a held sample.
constexpr float kFreeWeight = 0.02F;
constexpr int kMaxSteps = 1000;
constexpr float kWeightGrowth = 1.2F;
constexpr float kMaxHoldWeight = 1000;
/// Free samples must not pay for the held ones with more than this, in levels.
constexpr float kMaxFreeError = 4;
/// So many of the steps that look best are tried.
constexpr std::size_t kTriedSteps = 6;
/// No sample comes near; for what lies beyond black and white, which is clamped.
constexpr float kFarAway = 1e6F;

/// White's and black's.
constexpr int kMaxDc = 1016;
constexpr int kMinDc = -1024;

int maxOf(std::size_t coefficient) {
    return coefficient == 0 ? kMaxDc : kMaxJpegAc;
}

int minOf(std::size_t coefficient) {
    return coefficient == 0 ? kMinDc : -kMaxJpegAc;
}

JpegFloats targetOf(const JpegBlock& source, const JpegSamples& samples, const JpegFloats& change) {
    const JpegFloats before = inverseTransform(source);
    JpegFloats target{};
    for (std::size_t i = 0; i < kJpegBlockArea; ++i)
        target[i] = std::abs(change[i]) < kUnchanged
                        ? static_cast<float>(samples[i])
                        : std::clamp(std::round(before[i] + change[i]), 0.0F, 255.0F);
    return target;
}

JpegBlock quantised(const JpegFloats& coefficients) {
    JpegBlock block{};
    for (std::size_t k = 0; k < kJpegBlockArea; ++k)
        block[k] = static_cast<std::int16_t>(
            std::clamp(static_cast<int>(std::lround(coefficients[k])), minOf(k), maxOf(k)));
    return block;
}

/// Walks from a block to a better one, one step of one coefficient at a time.
class Search {
public:
    /// `low` and `high` are where the values of the samples should lie, and `weights` says how much.
    struct Aim {
        JpegFloats low = {};
        JpegFloats high = {};
        JpegFloats weights = {};
    };
    Search(const JpegBlock& start, const Aim& aim)
        : m_block(start), m_values(inverseTransform(start)), m_aim(aim) {}

    const JpegBlock& block() const { return m_block; }

    /// Takes the best step; false when all make it worse.
    bool takeBestStep() {
        // The cost's slope along each coefficient is the transform of its slope along the samples.
        JpegFloats slopes{};
        float now = 0;
        for (std::size_t i = 0; i < kJpegBlockArea; ++i) {
            const float outside = outsideOf(i, m_values[i]);
            slopes[i] = m_aim.weights[i] * outside + kLevelShift;
            now += m_aim.weights[i] * outside * outside;
        }
        slopes = forwardTransform(slopes);
        float best = now;
        std::size_t coefficient = kJpegBlockArea;
        for (std::size_t tried = 0; tried < kTriedSteps; ++tried) {
            const auto steepest =
                std::ranges::max_element(slopes, {}, [](float slope) { return std::abs(slope); });
            const auto k = static_cast<std::size_t>(steepest - slopes.begin());
            const int sign = *steepest > 0 ? -1 : 1;
            *steepest = 0;
            if (!isAllowed(k, sign))
                continue;
            if (const float cost = costAfter(k, sign); cost < best) {
                best = cost;
                coefficient = k;
                m_sign = sign;
            }
        }
        if (coefficient == kJpegBlockArea)
            return false;
        take(coefficient, m_sign);
        return true;
    }

    void takeAnyStep() {
        const auto drawn = static_cast<std::size_t>(m_random());
        const std::size_t coefficient = drawn / 2 % kJpegBlockArea;
        const int sign = drawn % 2 == 0 ? 1 : -1;
        if (isAllowed(coefficient, sign))
            take(coefficient, sign);
    }

    void setWeights(const JpegFloats& weights) { m_aim.weights = weights; }

private:
    /// How far a sample's value lies outside its range, and on which side.
    float outsideOf(std::size_t i, float value) const {
        return std::max(value - m_aim.high[i], 0.0F) - std::max(m_aim.low[i] - value, 0.0F);
    }

    float costAfter(std::size_t coefficient, int sign) const {
        const JpegFloats& basis = jpegBasis()[coefficient];
        const auto step = static_cast<float>(sign);
        float cost = 0;
        for (std::size_t i = 0; i < kJpegBlockArea; ++i) {
            const float outside = outsideOf(i, m_values[i] + step * basis[i]);
            cost += m_aim.weights[i] * outside * outside;
        }
        return cost;
    }

    bool isAllowed(std::size_t coefficient, int sign) const {
        const int value = m_block[coefficient] + sign;
        return value >= minOf(coefficient) && value <= maxOf(coefficient);
    }

    void take(std::size_t coefficient, int sign) {
        m_block[coefficient] = static_cast<std::int16_t>(m_block[coefficient] + sign);
        for (std::size_t i = 0; i < kJpegBlockArea; ++i)
            m_values[i] += static_cast<float>(sign) * jpegBasis()[coefficient][i];
    }

    JpegBlock m_block;
    JpegFloats m_values;
    Aim m_aim;
    int m_sign = 0;
    std::minstd_rand m_random{1}; // its draws are defined
};

bool holds(const JpegBlock& block, const JpegSamples& samples, const JpegSampleMask& held) {
    const JpegSamples made = decodedSamples(block);
    for (std::size_t i = 0; i < kJpegBlockArea; ++i)
        if (held[i] && made[i] != samples[i])
            return false;
    return true;
}

/// A block near `start` that makes the held samples exactly; nothing when none is found.
std::optional<JpegBlock> withHeldSamples(const JpegBlock& start, const JpegFloats& target,
                                         const JpegSamples& samples, const JpegSampleMask& held) {
    Search::Aim aim;
    for (std::size_t i = 0; i < kJpegBlockArea; ++i) {
        const auto sample = static_cast<float>(samples[i]);
        aim.low[i] = !held[i] ? target[i] : samples[i] == 0 ? -kFarAway : sample - kHoldMargin;
        aim.high[i] = !held[i] ? target[i] : samples[i] == 255 ? kFarAway : sample + kHoldMargin;
        aim.weights[i] = held[i] ? 1 : kFreeWeight;
    }
    Search search(start, aim);
    for (int step = 0; step < kMaxSteps; ++step) {
        if (holds(search.block(), samples, held))
            return search.block();
        if (search.takeBestStep())
            continue;
        for (std::size_t i = 0; i < kJpegBlockArea; ++i)
            if (held[i])
                aim.weights[i] = std::min(aim.weights[i] * kWeightGrowth, kMaxHoldWeight);
        search.setWeights(aim.weights);
        search.takeAnyStep();
    }
    return std::nullopt;
}

bool isNear(const JpegBlock& block, const JpegFloats& target) {
    const JpegSamples made = decodedSamples(block);
    for (std::size_t i = 0; i < kJpegBlockArea; ++i)
        if (std::abs(static_cast<float>(made[i]) - target[i]) > kMaxFreeError)
            return false;
    return true;
}

} // namespace

JpegBlock fittedBlock(const JpegBlock& source, const JpegFloats& change, const JpegSampleMask& held) {
    if (std::ranges::all_of(change, [](float value) { return std::abs(value) < kMinChange; }))
        return source;
    const JpegSamples samples = decodedSamples(source);
    const JpegFloats target = targetOf(source, samples, change);
    const JpegBlock plain = quantised(forwardTransform(target));
    if (held.none())
        return plain;
    const std::optional<JpegBlock> found = withHeldSamples(plain, target, samples, held);
    return found && isNear(*found, target) ? *found : source;
}

} // namespace complexion
