// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/trial.h"

namespace complexion::healing {

using FittedFinding = std::variant<Trial, Refusal>;

/// The largest disc that is tried, in radii of the edit disc.
inline constexpr float kMaxGrowth = 2.8F;

/// Finds the blemish that was clicked with an edit disc that lies inside `image`, at its own scale: where the
/// edit disc is filled by it or holds only a part of it, larger discs are tried, up to kMaxGrowth times the
/// edit disc's radius; where it is much larger than the blemish, the disc is drawn in. What a higher
/// threshold finds is found where `threshold` itself makes too much of it a blemish.
FittedFinding findFittedBlemish(const Image& image, const RepairDisc& clicked, std::int64_t threshold);

} // namespace complexion::healing
