// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image.h"
#include "imaging/result.h"

#include <cstdint>
#include <vector>

namespace complexion {

/// A picture of at most 256 colours.
struct IndexedImage {
    PixelSize size;
    std::vector<RGBA32> palette; // opaque colours; with transparency, the first one is transparent
    bool hasTransparency = false;
    std::vector<std::uint8_t> indices; // packed rows, top row first
};

/// The picture with every pixel either opaque or wholly transparent (alpha below 128), in at most 256
/// colours: in its own ones when they are no more, otherwise in the best chosen ones, dithered.
Result<IndexedImage> indexedImage(const Image& image);

} // namespace complexion
