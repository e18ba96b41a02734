// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace complexion::healing {

// Skin is compared on a logarithmic scale: ln(component + kDarkOffset), component 0 to 255. Pigment, blood
// and shading multiply the reflected light, so their effects add on this scale (Tsumura et al., "Image-based
// skin color and texture analysis/synthesis by extracting hemoglobin and melanin information in the skin",
// SIGGRAPH 2003), independently of skin tone and of the colour space's gamma. The offset limits noise near
// black.
//
// Both conversions use only basic arithmetic, so that results are identical on all machines.
inline constexpr float kDarkOffset = 4;

/// Logarithms of the components 0 to 256.
using LogTable = std::array<float, 257>;
extern const LogTable kLogOf;

/// The logarithm of a component.
inline float logOf(std::uint8_t component) {
    return kLogOf[component];
}

/// As above, interpolated between whole levels; 0 to 255.
inline float logOf(float component) {
    const int level = std::clamp(static_cast<int>(component), 0, 255);
    const float* entry = kLogOf.data() + level;
    return entry[0] + (component - static_cast<float>(level)) * (entry[1] - entry[0]);
}

/// The inverse: the component, 0 to 255, not rounded.
inline float componentOf(float logarithm) {
    // e^x = 2^n 2^f. 2^f is approximated by the polynomial that interpolates it at the six Chebyshev nodes of
    // [0, 1]; the error is at most 1e-7.
    constexpr float kTwosPerUnit = 1.44269504F;
    constexpr float kMin = 2;        // black
    constexpr float kMax = 8.01681F; // component 255
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

/// e^x for |x| up to 40, identical on all machines.
double exponential(double x);

} // namespace complexion::healing
