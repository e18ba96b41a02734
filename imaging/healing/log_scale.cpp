// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/log_scale.h"

#include <numbers>

namespace complexion::healing {

namespace {

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

constexpr LogTable logarithms() {
    LogTable table{};
    int level = 0;
    for (float& entry : table)
        entry = static_cast<float>(naturalLogarithm(level++ + static_cast<double>(kDarkOffset)));
    return table;
}

} // namespace

constinit const LogTable kLogOf = logarithms();

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

} // namespace complexion::healing
