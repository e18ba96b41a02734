// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/pixel_buffer.h"
#include "imaging/healing/cell_grid.h"
#include "imaging/healing/stroke_band.h"

#include <vector>

namespace complexion::healing {

/// The colours of a band's pixels.
struct StrokePixels {
    std::vector<LogColor> colors;
    std::vector<unsigned char> isKnown; // 0 if transparent
};

StrokePixels readStroke(const Image& image, const StrokeBand& band);

/// Paints colours over the band's pixels in `buffer`, which contains the pixels of `image`, with these
/// opacities; 8-bit pixels are dithered. Throws std::bad_alloc if memory is insufficient.
void paintStroke(const Image& image, const StrokeBand& band, const std::vector<LogColor>& colors,
                 const std::vector<float>& opacities, PixelBuffer& buffer);

} // namespace complexion::healing
