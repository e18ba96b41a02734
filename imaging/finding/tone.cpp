// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/tone.h"

#include "imaging/healing/log_scale.h"

namespace complexion::finding {

const std::array<float, 256> kTones = [] {
    constexpr float kLift = 8; // on top of the logarithmic scale's own offset
    std::array<float, 256> tones{};
    for (std::size_t component = 0; component < tones.size(); ++component)
        tones[component] = healing::logOf(kLift + static_cast<float>(component) * ((255 - kLift) / 255));
    return tones;
}();

} // namespace complexion::finding
