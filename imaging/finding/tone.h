// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

namespace complexion::finding {

/// Tone curve for comparing spots, for components 0 to 255: the repair's logarithmic scale with a larger
/// offset for dark components, to which the eye is less sensitive than a logarithm.
extern const std::array<float, 256> kTones;

inline float toneOf(std::uint8_t component) {
    return kTones[component];
}

} // namespace complexion::finding
