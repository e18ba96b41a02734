// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/tiff_pixels.h"

namespace complexion::tiff {

/// Decodes the page's strips or tiles into `builder`. Returns the number of rows that were at least partly
/// decoded; the others stay unset. Fails if the blocks are too large.
Result<int> readBlocks(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder);

/// The same with libtiff's own conversion to RGBA, for pixels that PixelConverter does not support:
/// subsampled YCbCr, old-style JPEG, LogLuv.
Result<int> readByLibrary(const File& file, const Page& page, ImageBuilder& builder);

} // namespace complexion::tiff
