// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/indexed_image.h"

#include <memory>

namespace complexion {

/// As `indexedImage`, but the colours that were chosen for a picture of too many are kept beside it: for one
/// made from it by edits, the pixels that these changed are dithered in the same colours, and all others keep
/// theirs. The colours are chosen anew when they fit the changed pixels clearly worse than they fitted the
/// picture, when an edit brought the first transparent pixel or took the last away, or when much has changed.
Result<std::shared_ptr<const IndexedImage>> rememberedIndexedImage(const Image& image);

} // namespace complexion
