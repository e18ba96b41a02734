// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish.h"

#include <optional>

namespace complexion::healing {

/// A patch of clean skin to take detail from: where it lies, in cells from the blemish, and how much its
/// detail is to be strengthened.
struct DetailSource {
    int dx = 0;
    int dy = 0;
    float gain = 1;
};

/// The patch around the blemish whose detail fits best: of the skin's colour, evenly clean, its detail as
/// strong and as directed as the skin's around the blemish. `smooth` and `detail` are the picture without
/// detail and the brightness of what was taken away; `strength` is the mean square of the latter around the
/// blemish. `present` is the detail in the blemish's place: a patch that repeats it is never taken, so that a
/// second repair of one place does not bring the same pattern. Nothing when no patch is clean.
std::optional<DetailSource> findDetailSource(const SkinWindow& window, const Blemish& blemish,
                                             const CellGrid<Cell>& smooth, const CellGrid<float>& detail,
                                             const CellGrid<float>& present, float strength);

} // namespace complexion::healing
