// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/trial.h"

namespace complexion::healing {

/// Finds the blemish at the disc's centre independently of the disc's radius: tries discs of growing size and
/// returns the smallest region that differs from the skin as much as anything around it. Skips regions no
/// larger than a circle of radius `largerThan`, in pixels.
std::variant<BlemishPlace, Refusal> fitBlemish(const Image& image, const RepairDisc& disc,
                                               std::int64_t threshold, double largerThan);

/// As above, but tries only discs of at most `largest` times the disc's radius.
std::variant<BlemishPlace, Refusal> fitNear(const Image& image, const RepairDisc& disc,
                                            std::int64_t threshold, double largest);

} // namespace complexion::healing
