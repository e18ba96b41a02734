// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/metadata/jpeg_attachments.h"

#include <optional>

namespace complexion {

/// What follows the picture in a JPEG file that is saved of `image`, an edit of the JPEG file `photo`: a gain
/// map, repaired where the photo was, and what shows nothing of the photo. Previews and movies are left out,
/// and so is the gain map of an image that is another picture than the photo (under an effect, say).
jpeg::KeptAttachments keptAttachments(ByteView photo, const Image& image);

/// The JPEG file `map`, with a natural repair at each place that corresponds to one where `before` and
/// `after`, of one size, differ. `orientation` is the one that the map's photo is stored with. All MCUs that
/// no repair touches keep their pixels. The map itself if there is nothing to repair; nothing if it cannot be
/// decoded or not coded that way.
std::optional<Bytes> repairedGainMap(ByteView map, const Image& before, const Image& after,
                                     Orientation orientation);

} // namespace complexion
