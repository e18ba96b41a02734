// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba64.h"
#include "imaging/base/tile.h"

#include <memory>
#include <vector>

namespace complexion {

/// The blocks of band `band` of a picture of this size, whose pixels are not set yet.
std::vector<PixelBlock> newBand(PixelSize picture, int band);

/// The band of these blocks, with `deepRows`, which may be empty, as the deep pixels of all of them side by
/// side.
std::shared_ptr<const Band> bandOf(std::vector<PixelBlock> blocks, const std::vector<RGBA64>& deepRows = {});

} // namespace complexion
