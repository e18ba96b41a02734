// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/indexed_image.h"

#include <memory>

namespace complexion {

/// As `indexedImage`, but caches the palette chosen for a picture beside it. In an image derived from it by
/// edits only the changed pixels are dithered, with the same palette; all others keep their indices. Chooses
/// a new palette if the old one fits the changed pixels clearly worse than it fitted the picture, if an edit
/// adds the first transparent pixel or removes the last one, or if too much has changed. Measured at 1.9
/// megapixels: encoding a GIF file takes 694 ms the first time and 68 to 157 ms after a repair.
Result<std::shared_ptr<const IndexedImage>> cachedIndexedImage(const Image& image);

} // namespace complexion
