// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish.h"

namespace complexion::healing {

/// Cells around the mask that a restoration covers, for feathering and interpolation.
inline constexpr int kMargin = 4;

inline LogColor difference(const Cell& a, const Cell& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

/// Mean squares of the brightness and the hue of detail.
struct Strength {
    float brightness = 0;
    float hue = 0;
    int cells = 0;

    static float hueOf(const LogColor& detail) {
        const float redGreen = detail[0] - detail[1];
        const float greenBlue = detail[1] - detail[2];
        return redGreen * redGreen + greenBlue * greenBlue;
    }
    void add(const LogColor& detail) {
        const float sum = detail[0] + detail[1] + detail[2];
        brightness += sum * sum;
        hue += hueOf(detail);
        ++cells;
    }
    Strength mean() const {
        const auto count = static_cast<float>(std::max(cells, 1));
        return {brightness / count, hue / count, cells};
    }
};

/// A blemish separated into its stain and the detail that remains without it.
struct Separated {
    CellGrid<Cell> stain;   // to be subtracted from the picture; extends a little beyond the mask
    CellGrid<float> detail; // brightness, inside the mask
    Strength strength;
    float strongestHue = 0; // of the detail's spots
};

/// Separates a blemish. Detail is what a Gaussian blur of `scale` cells removes.
Separated separate(const SkinWindow& window, const Blemish& blemish, float scale);

} // namespace complexion::healing
