// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/tiff_structure.h"

namespace complexion {

/// The tags of a TIFF structure's first directory that speak of the picture and not of how its pixels are
/// coded.
struct CarriedTags {
    ByteOrder order = ByteOrder::LittleEndian;
    TiffDirectory directory;
    bool isEmpty() const { return directory.entries.empty(); }
};

/// Those of a TIFF file or an EXIF block; none for bytes that are neither.
CarriedTags carriedTags(ByteView structure);

/// Whether a tag of a first directory describes the coding of the pixels, points to other pictures in the
/// file or holds such: it is left behind.
bool isCodingTag(unsigned tag);

/// The maker note in the EXIF directory of a first directory; null when there is none.
const TiffEntry* makerNoteOf(const TiffDirectory& directory);

/// The directory without the values whose types a classic structure cannot hold.
TiffDirectory withoutBigValues(const TiffDirectory& directory);

/// The tags as a structure of their own, the maker note where it was in the first place if that is not far.
Bytes exifBlock(const CarriedTags& tags);

/// The block itself when it is not longer than `limit`; otherwise one without its thumbnail and its longest
/// values, so many that it is short enough.
Bytes exifWithin(ByteView exif, std::size_t limit);

} // namespace complexion
