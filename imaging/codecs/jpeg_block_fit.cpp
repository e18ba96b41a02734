// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_block_fit.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

namespace complexion::jpeg {

namespace {

/// Level shift of 8-bit samples (ITU-T T.81 A.3.1).
constexpr float kLevelShift = 128;

/// A pinned sample must round to its value: its unrounded value may be off by this much, just under half a
/// level.
constexpr float kPinMargin = 0.48F;
/// A sample whose unrounded value is off by no more costs nothing where no sample is pinned. Larger and
/// smaller margins leave more samples that round to another value: with this one 6 %, of 8.6 % after
/// rounding.
constexpr float kSafeMargin = 0.3F;
/// Weight of a free sample's squared error, relative to a pinned sample's.
constexpr float kFreeWeight = 0.02F;
constexpr int kMaxSteps = 1000;
constexpr float kWeightGrowth = 1.2F;
constexpr float kMaxPinWeight = 1000;
/// Largest error of a free sample, in levels.
constexpr float kMaxFreeError = 4;
/// Number of the most promising steps that are evaluated.
constexpr std::size_t kEvaluatedSteps = 6;
/// Beyond any sample. An open bound for pinned samples at black and white, which are clamped.
constexpr float kUnbounded = 1e6F;

/// DC coefficients of an all-white and an all-black block.
constexpr int kMaxDc = 1016;
constexpr int kMinDc = -1024;

int maxOf(std::size_t coefficient) {
    return coefficient == 0 ? kMaxDc : kMaxAc;
}

int minOf(std::size_t coefficient) {
    return coefficient == 0 ? kMinDc : -kMaxAc;
}

FloatBlock targetOf(const SampleBlock& samples, const FloatBlock& change) {
    FloatBlock target{};
    for (std::size_t i = 0; i < kBlockArea; ++i)
        target[i] = std::clamp(std::round(static_cast<float>(samples[i]) + change[i]), 0.0F, 255.0F);
    return target;
}

CoefficientBlock quantised(const FloatBlock& coefficients) {
    CoefficientBlock block{};
    for (std::size_t k = 0; k < kBlockArea; ++k)
        block[k] = static_cast<std::int16_t>(
            std::clamp(static_cast<int>(std::lround(coefficients[k])), minOf(k), maxOf(k)));
    return block;
}

/// Coordinate descent over a block's coefficients: each step changes one coefficient by one.
class Search {
public:
    /// The range that each sample should be in, and the weight of its squared error.
    struct Goal {
        FloatBlock low = {};
        FloatBlock high = {};
        FloatBlock weights = {};
    };
    Search(const CoefficientBlock& start, const Goal& goal)
        : m_block(start), m_values(inverseDct(start)), m_goal(goal) {}

    const CoefficientBlock& block() const { return m_block; }

    /// Takes the best of the evaluated steps. False if none reduces the cost.
    bool takeBestStep() {
        // The gradient by coefficient is the forward transform of the gradient by sample.
        FloatBlock gradient{};
        float now = 0;
        for (std::size_t i = 0; i < kBlockArea; ++i) {
            const float distance = excess(i, m_values[i]);
            gradient[i] = m_goal.weights[i] * distance + kLevelShift;
            now += m_goal.weights[i] * distance * distance;
        }
        gradient = forwardDct(gradient);
        float best = now;
        std::size_t coefficient = kBlockArea;
        for (std::size_t tried = 0; tried < kEvaluatedSteps; ++tried) {
            const auto steepest =
                std::ranges::max_element(gradient, {}, [](float slope) { return std::abs(slope); });
            const auto k = static_cast<std::size_t>(steepest - gradient.begin());
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
        if (coefficient == kBlockArea)
            return false;
        take(coefficient, m_sign);
        return true;
    }

    void takeRandomStep() {
        const auto random = static_cast<std::size_t>(m_random());
        const std::size_t coefficient = random / 2 % kBlockArea;
        const int sign = random % 2 == 0 ? 1 : -1;
        if (isAllowed(coefficient, sign))
            take(coefficient, sign);
    }

    void setWeights(const FloatBlock& weights) { m_goal.weights = weights; }

private:
    /// The signed distance of a sample's value from its range; 0 inside it.
    float excess(std::size_t i, float value) const {
        return std::max(value - m_goal.high[i], 0.0F) - std::max(m_goal.low[i] - value, 0.0F);
    }

    float costAfter(std::size_t coefficient, int sign) const {
        const FloatBlock& basis = dctBasis()[coefficient];
        const auto step = static_cast<float>(sign);
        float cost = 0;
        for (std::size_t i = 0; i < kBlockArea; ++i) {
            const float distance = excess(i, m_values[i] + step * basis[i]);
            cost += m_goal.weights[i] * distance * distance;
        }
        return cost;
    }

    bool isAllowed(std::size_t coefficient, int sign) const {
        const int value = m_block[coefficient] + sign;
        return value >= minOf(coefficient) && value <= maxOf(coefficient);
    }

    void take(std::size_t coefficient, int sign) {
        m_block[coefficient] = static_cast<std::int16_t>(m_block[coefficient] + sign);
        for (std::size_t i = 0; i < kBlockArea; ++i)
            m_values[i] += static_cast<float>(sign) * dctBasis()[coefficient][i];
    }

    CoefficientBlock m_block;
    FloatBlock m_values;
    Goal m_goal;
    int m_sign = 0;
    std::minstd_rand m_random{1}; // a standardised sequence
};

bool keepsPinned(const CoefficientBlock& block, const SampleBlock& samples, const SampleMask& pinned) {
    const SampleBlock decoded = decodedSamples(block);
    for (std::size_t i = 0; i < kBlockArea; ++i)
        if (pinned[i] && decoded[i] != samples[i])
            return false;
    return true;
}

/// A block near `start` that decodes to the pinned samples exactly. Nothing if none is found.
std::optional<CoefficientBlock> withPinnedSamples(const CoefficientBlock& start, const FloatBlock& target,
                                                  const SampleBlock& samples, const SampleMask& pinned) {
    Search::Goal goal;
    for (std::size_t i = 0; i < kBlockArea; ++i) {
        const auto sample = static_cast<float>(samples[i]);
        goal.low[i] = !pinned[i] ? target[i] : samples[i] == 0 ? -kUnbounded : sample - kPinMargin;
        goal.high[i] = !pinned[i] ? target[i] : samples[i] == 255 ? kUnbounded : sample + kPinMargin;
        goal.weights[i] = pinned[i] ? 1 : kFreeWeight;
    }
    Search search(start, goal);
    for (int step = 0; step < kMaxSteps; ++step) {
        if (keepsPinned(search.block(), samples, pinned))
            return search.block();
        if (search.takeBestStep())
            continue;
        for (std::size_t i = 0; i < kBlockArea; ++i)
            if (pinned[i])
                goal.weights[i] = std::min(goal.weights[i] * kWeightGrowth, kMaxPinWeight);
        search.setWeights(goal.weights);
        search.takeRandomStep();
    }
    return std::nullopt;
}

/// A block near `start`, which is the nearest to `target` in the mean, of which more samples round to it.
CoefficientBlock withFewerMisses(const CoefficientBlock& start, const FloatBlock& target) {
    Search::Goal goal;
    for (std::size_t i = 0; i < kBlockArea; ++i) {
        goal.low[i] = target[i] <= 0 ? -kUnbounded : target[i] - kSafeMargin;
        goal.high[i] = target[i] >= 255 ? kUnbounded : target[i] + kSafeMargin;
        goal.weights[i] = 1;
    }
    Search search(start, goal);
    for (int step = 0; step < kMaxSteps && search.takeBestStep(); ++step) {
    }
    return search.block();
}

bool isNear(const CoefficientBlock& block, const FloatBlock& target) {
    const SampleBlock decoded = decodedSamples(block);
    for (std::size_t i = 0; i < kBlockArea; ++i)
        if (std::abs(static_cast<float>(decoded[i]) - target[i]) > kMaxFreeError)
            return false;
    return true;
}

} // namespace

CoefficientBlock fitBlock(const CoefficientBlock& source, const FloatBlock& change,
                          const SampleMask& pinned) {
    const SampleBlock samples = decodedSamples(source);
    const FloatBlock target = targetOf(samples, change);
    if (std::ranges::equal(target, samples, {}, {},
                           [](std::uint8_t sample) { return static_cast<float>(sample); }))
        return source;
    const CoefficientBlock plain = quantised(forwardDct(target));
    if (pinned.none())
        return withFewerMisses(plain, target);
    const std::optional<CoefficientBlock> found = withPinnedSamples(plain, target, samples, pinned);
    return found && isNear(*found, target) ? *found : source;
}

} // namespace complexion::jpeg
