// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/sample_portrait_painter.h"

namespace complexion {

inline constexpr int kPortraitWidth = 1200;
inline constexpr int kPortraitHeight = 1500;
/// The column that the face is symmetric about.
inline constexpr double kFaceAxis = 600;

/// The layers of the portrait, from back to front; each paints over those before it.

void paintBackdrop(QImage& picture);
void paintHairBehind(QImage& picture);
/// Neck and face, lit from the upper left, with pores.
void paintSkin(QImage& picture);
void paintBlemishes(QImage& picture, const std::vector<Blemish>& blemishes);
void paintEyes(QImage& picture);
void paintMouthAndNostrils(QImage& picture);
void paintSweater(QImage& picture);
void paintHairInFront(QImage& picture);
/// What a sensor adds.
void paintGrain(QImage& picture);

} // namespace complexion
