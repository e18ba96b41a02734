// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba64.h"
#include "imaging/base/tile.h"

#include <memory>
#include <mutex>
#include <vector>

namespace complexion {

/// The blocks of band `band` of a picture of this size, whose pixels are not set yet.
std::vector<PixelBlock> newBand(PixelSize picture, int band);

/// Makes the bands of one picture. A tile with the same pixels as the one to its left, or as the one in its
/// column of the band made last, is that tile: large areas of one colour take almost no memory. Comparing
/// costs nothing in a photo, whose tiles differ in their first pixels.
class BandMaker {
public:
    /// The band of these blocks, with `deepRows`, which may be empty, as the deep pixels of all of them side
    /// by side. Safe to call from any thread.
    std::shared_ptr<const Band> make(std::vector<PixelBlock> blocks,
                                     const std::vector<RGBA64>& deepRows = {});

private:
    std::mutex m_mutex;
    std::shared_ptr<const Band> m_latest;
};

} // namespace complexion
