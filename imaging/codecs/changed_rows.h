// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/tile.h"

#include <vector>

namespace complexion {

/// For each group of `rowsOfGroup` rows of `band` (the last may have fewer): whether a pixel in it differs
/// from the band of the tiles `before`. All do when the two are not of one size. Costs what the tiles that
/// they do not share hold.
std::vector<bool> changedRows(const Band& band, const TileList& before, int rowsOfGroup);

} // namespace complexion
