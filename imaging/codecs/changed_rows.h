// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/tile.h"

#include <vector>

namespace complexion {

/// For each group of `rowsPerGroup` rows of `band` (the last may be shorter): whether it has a pixel that
/// differs from the tiles `before`. All groups count as changed if the tile sizes differ. Compares only tiles
/// that are not shared.
std::vector<bool> changedRows(const Band& band, const TileList& before, int rowsPerGroup);

} // namespace complexion
