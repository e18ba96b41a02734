// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/imaging/natural_repair_skin.h"

#include <utility>

namespace complexion {

inline constexpr PixelPosition kFirst{300, 250};
inline constexpr PixelPosition kSecond{420, 420};
inline constexpr PixelPosition kThird{500, 300};

/// A face with three spots, the first the darkest.
inline Image face() {
    return painted({700, 800}, [](int row, int column) {
        const double dx = (column - 350) / 250.0;
        const double dy = (row - 380) / 330.0;
        const double light = 1 - 0.15 * dx + 0.02 * grainAt(row, column);
        double t = 0;
        for (const auto& [place, strength] :
             {std::pair(kFirst, 0.5), std::pair(kSecond, 0.25), std::pair(kThird, 0.15)})
            t += strength * stainAt(row, column, place, 5);
        if (dx * dx + dy * dy >= 1)
            return RGBA32(120, 120, 120, 255);
        return RGBA32(byteOf(215 * light * (1 - 0.8 * t)), byteOf(170 * light * (1 - t)),
                      byteOf(150 * light * (1 - t)), 255);
    });
}

} // namespace complexion
