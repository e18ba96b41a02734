// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion::exif {

// The thumbnail belongs to the EXIF block's second directory. Both operations work in place and move nothing
// else, because maker notes contain offsets into the block.

/// Removes the thumbnail: unlinks its directory and zeroes its bytes. Pictures in further directories are
/// removed as well.
void removeThumbnail(Bytes& exif);

/// Replaces the thumbnail by one of the same size from `maker`: in place, or at the block's end if it is
/// longer and the block stays within `lengthLimit` bytes. Removes the thumbnail if neither is possible.
void renewThumbnail(Bytes& exif, ThumbnailMaker& maker, std::size_t lengthLimit);

} // namespace complexion::exif
