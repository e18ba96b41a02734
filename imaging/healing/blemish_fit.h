// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/trial.h"

namespace complexion::healing {

/// Finds the blemish at the disc's centre whatever the disc's radius is: discs of growing size are tried, and
/// the smallest thing that stands out as much as anything around it is taken. What covers no more than a
/// circle of radius `largerThan` is passed over.
std::variant<BlemishPlace, Refusal> fitBlemish(const Image& image, const RepairDisc& disc,
                                               std::int64_t threshold, double largerThan);

/// As above, with discs of about the disc's size alone.
std::variant<BlemishPlace, Refusal> fitNear(const Image& image, const RepairDisc& disc,
                                            std::int64_t threshold, double largest);

} // namespace complexion::healing
