// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

namespace complexion::finding {

/// The scale on which spots are compared, of components 0 to 255: the repair's logarithmic scale with more
/// room above black, where the eye sees less than a logarithm does.
extern const std::array<float, 256> kTones;

inline float toneOf(std::uint8_t component) {
    return kTones[component];
}

} // namespace complexion::finding
