// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/trial.h"

namespace complexion::healing {

using FittedFinding = std::variant<Trial, Refusal>;

/// The radius of the largest disc that is tried, in radii of the edit disc.
inline constexpr float kMaxGrowth = 2.8F;

/// Finds the clicked blemish at its own scale; the edit disc is inside `image`. If the blemish fills the edit
/// disc or extends beyond it, tries larger discs, up to kMaxGrowth times its radius; if the disc is much
/// larger than the blemish, shrinks it. A lower `threshold` finds all that a higher one does.
FittedFinding findFittedBlemish(const Image& image, const RepairDisc& clicked, std::int64_t threshold);

} // namespace complexion::healing
