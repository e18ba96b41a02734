// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/tiff_pixels.h"

namespace complexion::tiff {

/// Decodes the page's strips or tiles into `builder`. Gives the number of rows that something of could be
/// decoded; the others stay unset. An error when the blocks are too large to be held.
Result<int> readBlocks(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder);

/// The same by the library's own conversion to RGBA, for pixels that PixelConverter does not know: subsampled
/// YCbCr, old JPEG, LogLuv.
Result<int> readByLibrary(const File& file, const Page& page, ImageBuilder& builder);

} // namespace complexion::tiff
