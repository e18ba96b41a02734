// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace complexion {

/// A picture of at most 256 colours.
struct IndexedImage {
    PixelSize size;
    std::vector<RGBA32> palette; // opaque colours; with transparency, the first one is transparent
    bool hasTransparency = false;
    std::vector<std::uint8_t> indices; // packed rows, top row first
};

/// The pixel as an opaque colour; the clear pixel when it is nearer to transparent (alpha below 128).
RGBA32 withoutHalfTransparency(RGBA32 pixel);

/// What reading all pixels once finds out.
struct ColorSurvey {
    bool hasTransparency = false;
    std::optional<IndexedImage> exact; // when the colours are few enough
};
ColorSurvey surveyedColors(const Image& image);

/// The picture in the best chosen colours, dithered.
Result<IndexedImage> quantized(const Image& image, bool hasTransparency);

/// The picture with every pixel either opaque or wholly transparent (alpha below 128), in at most 256
/// colours: in its own ones when they are no more, otherwise in the best chosen ones, dithered.
Result<IndexedImage> indexedImage(const Image& image);

} // namespace complexion
