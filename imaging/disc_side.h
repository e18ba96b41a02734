// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/healing/repair_disc.h"

#include <array>

namespace complexion {

/// The sides of a disc, clockwise.
enum class DiscSide { Top, TopRight, Right, BottomRight, Bottom, BottomLeft, Left, TopLeft };

/// The colours at a disc's sides, in the order of DiscSide.
using RimColors = std::array<RGBA32, 8>;

/// The mean colours of small squares on the rim of a disc, of which at least the centre is in the image.
RimColors rimColors(const Image& image, const RepairDisc& disc);

/// The side towards which the colours differ from the median of all.
DiscSide differingSide(const RimColors& rim);

} // namespace complexion
