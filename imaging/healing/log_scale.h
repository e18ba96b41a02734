// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

/// The scale's value of a component.
float logOf(std::uint8_t component);
/// As above, of a component between whole levels, 0 to 255.
float logOf(float component);

/// The component, 0 to 255 and not rounded, of a value of the scale.
float componentOf(float logarithm);

/// e to the power of `x`, for |x| up to 40.
double exponential(double x);

} // namespace complexion::healing
