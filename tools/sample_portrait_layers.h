// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/sample_portrait_painter.h"

namespace complexion {

inline constexpr int kPortraitWidth = 1200;
inline constexpr int kPortraitHeight = 1500;
/// The face's axis of symmetry, as an x coordinate.
inline constexpr double kFaceAxis = 600;

// The layers of the portrait, from back to front.

void paintBackdrop(QImage& picture);
void paintHairBehind(QImage& picture);
/// Paints neck and face with pores, lit from the upper left.
void paintSkin(QImage& picture);
void paintBlemishes(QImage& picture, const std::vector<Blemish>& blemishes);
void paintEyes(QImage& picture);
void paintMouthAndNostrils(QImage& picture);
void paintSweater(QImage& picture);
void paintHairInFront(QImage& picture);
/// Adds sensor noise.
void paintGrain(QImage& picture);

} // namespace complexion
