// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/blemish.h"

#include <optional>

namespace complexion::healing {

/// A patch of clean skin from which detail is copied: its offset from the blemish, in cells, and the factor
/// for its detail.
struct DetailSource {
    int dx = 0;
    int dy = 0;
    float gain = 1;
};

/// Finds the patch near the blemish whose detail fits best: it has the skin's colour throughout, and detail
/// of the same strength and direction as the skin around the blemish. `smooth` is the window without detail,
/// `detail` the brightness of that detail, and `strength` its mean square around the blemish. `present` is
/// the detail that the blemish has now: a patch that correlates with it is never used, so that repairing the
/// same place again does not copy the same pattern again. Nothing if no patch is clean.
std::optional<DetailSource> findDetailSource(const SkinWindow& window, const Blemish& blemish,
                                             const CellGrid<Cell>& smooth, const CellGrid<float>& detail,
                                             const CellGrid<float>& present, float strength);

} // namespace complexion::healing
