// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/spot_detector.h"

#include <array>

namespace complexion::finding {

struct Direction {
    float x;
    float y;
};

/// Unit vectors at equal angles. The opposite of direction i is i + 8.
inline constexpr float kCos22 = 0.92388F;
inline constexpr float kCos45 = 0.70711F;
inline constexpr float kCos67 = 0.38268F;
inline constexpr std::array<Direction, 16> kDirections = {{{1, 0},
                                                           {kCos22, kCos67},
                                                           {kCos45, kCos45},
                                                           {kCos67, kCos22},
                                                           {0, 1},
                                                           {-kCos67, kCos22},
                                                           {-kCos45, kCos45},
                                                           {-kCos22, kCos67},
                                                           {-1, 0},
                                                           {-kCos22, -kCos67},
                                                           {-kCos45, -kCos45},
                                                           {-kCos67, -kCos22},
                                                           {0, -1},
                                                           {kCos67, -kCos22},
                                                           {kCos45, -kCos45},
                                                           {kCos22, -kCos67}}};

/// A colour in tones: of the green component, red minus green, green minus blue.
using ToneColor = std::array<float, 3>;

/// The pixels around a spot, at its mipmap level.
class Neighborhood {
public:
    /// `reach` is the greatest distance from the spot's centre, in pixels of the level.
    Neighborhood(const Image& image, const Spot& spot, float reach);

    /// The mean of 3 by 3 pixels around the one nearest to a position, clipped to the picture.
    ToneColor at(float x, float y) const;

    /// Whether a position is in the picture, and on skin.
    bool isSkin(const SkinMap& map, float x, float y) const;

private:
    int m_level;
    PixelSize m_size; // of the level
    PixelRect m_rect;
    std::vector<RGBA32> m_pixels;
};

} // namespace complexion::finding
