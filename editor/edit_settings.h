// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"

#include <cstdint>

namespace complexion {

/// The two kinds of repair. The values are indices into the repair pop-up.
enum class RepairStyle : std::int8_t {
    FlatColor = 0, // paints pixels that differ from the disc in one colour
    Natural = 1,   // paints the blemish with shading and texture of the skin around it
};

/// The settings of a repair, with the values of the controls.
struct EditSettings {
    std::int64_t radius = 0;                    // pixels
    std::int64_t colorType = 0;                 // 1: detect the colour, 0: use customColor
    RgbColor customColor;                       // in sRGB
    float threshold = 0;                        // grey levels
    RepairStyle style = RepairStyle::FlatColor; // Natural ignores colorType and customColor
};

} // namespace complexion
