// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace complexion {

/// A picture with a palette of at most 256 colours.
struct IndexedImage {
    PixelSize size;
    std::vector<RGBA32> palette; // opaque colours; if `hasTransparency`, entry 0 is transparent
    bool hasTransparency = false;
    std::vector<std::uint8_t> indices; // packed rows, top row first
};

/// Thresholds alpha at 128: returns the pixel's opaque colour, or the clear pixel.
RGBA32 withoutHalfTransparency(RGBA32 pixel);

/// The result of one pass over all pixels.
struct ColorSurvey {
    bool hasTransparency = false;
    std::optional<IndexedImage> exact; // if there are at most 256 colours
};
ColorSurvey surveyedColors(const Image& image);

/// Reduces the picture to a palette chosen for it, dithered. Fails if the library does.
Result<IndexedImage> quantized(const Image& image, bool hasTransparency);

/// The picture with at most 256 colours and every pixel opaque or fully transparent (alpha below 128). Keeps
/// the picture's own colours if they are few enough; otherwise chooses a palette and dithers.
Result<IndexedImage> indexedImage(const Image& image);

} // namespace complexion
