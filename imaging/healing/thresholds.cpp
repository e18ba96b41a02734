// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/thresholds.h"

#include <algorithm>

namespace complexion::healing {

namespace {

constexpr float kUsualThreshold = 10;
constexpr float kThresholdStart = 5;

} // namespace

float scaleOfThreshold(std::int64_t threshold) {
    return (static_cast<float>(std::max<std::int64_t>(threshold, 0)) + kThresholdStart) /
           (kUsualThreshold + kThresholdStart);
}

} // namespace complexion::healing
