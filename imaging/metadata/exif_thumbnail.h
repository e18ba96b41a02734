// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion::exif {

// The thumbnail belongs to the EXIF block's second directory. The operations that change it work in place and
// move nothing else, because maker notes contain offsets into the block.

/// The longest side of a thumbnail. EXIF recommends 160 by 120 pixels; real ones do not exceed this.
inline constexpr int kMaxThumbnailSide = 1024;

/// The JPEG file of the thumbnail, inside `exif`. Empty if there is none, or one longer than
/// kMaxThumbnailSide.
ByteView jpegThumbnail(ByteView exif);

/// Removes the thumbnail: unlinks its directory and zeroes its bytes. Pictures in further directories are
/// removed as well.
void removeThumbnail(Bytes& exif);

/// Replaces the thumbnail by one of the same size from `maker`: in place, or at the block's end if it is
/// longer and the block stays within `lengthLimit` bytes. Removes the thumbnail if neither is possible.
void renewThumbnail(Bytes& exif, ThumbnailMaker& maker, std::size_t lengthLimit);

} // namespace complexion::exif
