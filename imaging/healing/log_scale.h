// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace complexion::healing {

// The scale on which skin is compared: ln(component + kDarkOffset), component 0 to 255. Pigment, blood and
// shading multiply the light that skin gives back, so that on this scale they add (Tsumura et al.,
// "Image-based skin color and texture analysis/synthesis by extracting hemoglobin and melanin information in
// the skin", SIGGRAPH 2003), whatever the tone of the skin and the gamma of the picture's colour space. The
// offset keeps the noise of black small.
//
// Both directions are computed with basic arithmetic alone, so that every machine gets the same values.
inline constexpr float kDarkOffset = 4;

/// The scale's values of 0 to 256.
using LogTable = std::array<float, 257>;
extern const LogTable kLogOf;

/// The scale's value of a component.
inline float logOf(std::uint8_t component) {
    return kLogOf[component];
}

/// As above, of a component between whole levels, 0 to 255.
inline float logOf(float component) {
    const int level = std::clamp(static_cast<int>(component), 0, 255);
    const float* entry = kLogOf.data() + level;
    return entry[0] + (component - static_cast<float>(level)) * (entry[1] - entry[0]);
}

/// The component, 0 to 255 and not rounded, of a value of the scale.
inline float componentOf(float logarithm) {
    // e^x = 2^n 2^f, the latter by the polynomial that meets it in the six Chebyshev nodes of [0, 1]: it is
    // right within 1e-7.
    constexpr float kTwosPerUnit = 1.44269504F;
    constexpr float kMin = 2;        // of black
    constexpr float kMax = 8.01681F; // of 255
    constexpr int kExponentBits = 23;
    constexpr int kExponentBias = 127;
    const float low = logarithm * kTwosPerUnit;
    const float raised = low < kMin ? kMin : low;
    const float twos = raised > kMax ? kMax : raised;
    const auto whole = static_cast<std::int32_t>(twos);
    const float f = twos - static_cast<float>(whole);
    const float power =
        0.99999988F + f * (0.693154514F + f * (0.240141824F + f * (0.0558603369F +
                                                                   f * (0.00894959085F + f * 0.001893754F))));
    return power * std::bit_cast<float>((whole + kExponentBias) << kExponentBits) - kDarkOffset;
}

/// e to the power of `x`, for |x| up to 40.
double exponential(double x);

} // namespace complexion::healing
