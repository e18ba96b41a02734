// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/log_scale.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numbers>

namespace complexion::healing {

namespace {

constexpr int kLevels = 256;
constexpr int kSteps = 4096; // of the inverse table; straight lines between them err by 0.00003 levels

/// ln(x) for x >= 1, by the series of the inverse hyperbolic tangent.
constexpr double naturalLogarithm(double x) {
    double twos = 0;
    while (x > 1.5) {
        x /= 2;
        ++twos;
    }
    const double z = (x - 1) / (x + 1);
    double sum = 0;
    double power = z;
    for (int n = 1; n < 40; n += 2, power *= z * z)
        sum += power / n;
    return twos * std::numbers::ln2 + 2 * sum;
}

constexpr double kLow = naturalLogarithm(kDarkOffset);
constexpr double kHigh = naturalLogarithm(kLevels - 1 + kDarkOffset);
constexpr double kStepsPerUnit = kSteps / (kHigh - kLow);

std::array<float, kLevels + 1> makeLogarithms() {
    std::array<float, kLevels + 1> table{};
    for (int level = 0; level <= kLevels; ++level)
        table[static_cast<std::size_t>(level)] =
            static_cast<float>(naturalLogarithm(level + static_cast<double>(kDarkOffset)));
    return table;
}

std::array<float, kSteps + 2> makeComponents() {
    std::array<float, kSteps + 2> table{};
    for (int step = 0; step < kSteps + 2; ++step)
        table[static_cast<std::size_t>(step)] =
            static_cast<float>(exponential(kLow + step / kStepsPerUnit) - static_cast<double>(kDarkOffset));
    return table;
}

const std::array<float, kLevels + 1>& logarithms() {
    static const auto table = makeLogarithms();
    return table;
}

} // namespace

double exponential(double x) {
    constexpr int kHalvings = 10;
    const double small = x / (1 << kHalvings);
    double sum = 1;
    double term = 1;
    for (int n = 1; n < 14; ++n) {
        term *= small / n;
        sum += term;
    }
    for (int i = 0; i < kHalvings; ++i)
        sum *= sum;
    return sum;
}

float logOf(std::uint8_t component) {
    return logarithms()[component];
}

float logOf(float component) {
    const int level = std::clamp(static_cast<int>(component), 0, kLevels - 1);
    const float* entry = logarithms().data() + level;
    return entry[0] + (component - static_cast<float>(level)) * (entry[1] - entry[0]);
}

float componentOf(float logarithm) {
    static const auto table = makeComponents();
    const float place = std::clamp((logarithm - static_cast<float>(kLow)) * static_cast<float>(kStepsPerUnit),
                                   0.0F, static_cast<float>(kSteps));
    const int step = static_cast<int>(place);
    const float* entry = table.data() + step;
    return entry[0] + (place - static_cast<float>(step)) * (entry[1] - entry[0]);
}

} // namespace complexion::healing
