// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"

#include <cstdint>

namespace complexion {

/// The two ways to repair; their values are the places of their titles in the repair pop-up.
enum class RepairStyle : std::int8_t {
    FlatColor = 0, // one colour over what is darker or lighter than the disc
    Natural = 1,   // the skin's own shading and detail over what differs from the skin around
};

/// What a repair is steered by, as it stands in the controls.
struct EditSettings {
    std::int64_t radius = 0;                    // pixels
    std::int64_t colorType = 0;                 // 1: detect the colour, 0: use customColor
    RgbColor customColor;                       // of sRGB
    float threshold = 0;                        // grey levels
    RepairStyle style = RepairStyle::FlatColor; // with Natural, colorType and customColor have no part
};

} // namespace complexion
