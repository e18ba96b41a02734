// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion {

// The thumbnail of an EXIF block lies in the block's second directory. Both operations work in place:
// nothing else moves, because maker notes hold offsets of their own into the block.

/// Takes the thumbnail out: its directory is unlinked, its bytes become zeros. Pictures in further
/// directories go too.
void removeThumbnail(Bytes& exif);

/// Replaces the thumbnail by one of the same size that `maker` makes, in the place of the old one or, when it
/// is longer, at the block's end, if the block stays within `lengthLimit`. Takes it out where that cannot be
/// done.
void renewThumbnail(Bytes& exif, ThumbnailMaker& maker, std::size_t lengthLimit);

} // namespace complexion
