// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/metadata/jpeg_attachments.h"

#include <optional>

namespace complexion {

/// The attachments of the JPEG file `photo` to keep when `image`, an edit of it, is saved as JPEG: the gain
/// map, repaired where the photo was, and attachments that do not show the photo. Previews and movies are
/// dropped, and so is the gain map if `image` is not an edit of the photo's pixels (if it has an effect, for
/// example).
jpeg::KeptAttachments keptAttachments(ByteView photo, const Image& image);

/// Repairs the gain map `map`, a JPEG file, wherever `before` and `after` differ, which have the same size.
/// `orientation` is the stored orientation of the photo. MCUs that no repair touches keep their pixels.
/// Returns the same bytes if there is nothing to repair; nothing if the map cannot be decoded or coded
/// without loss.
std::optional<Bytes> repairedGainMap(ByteView map, const Image& before, const Image& after,
                                     Orientation orientation);

} // namespace complexion
