// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/resolution.h"
#include "imaging/containers/tiff_structure.h"

namespace complexion {

/// The tags of a TIFF structure's first directory that speak of the picture and not of how its pixels are
/// coded.
struct CarriedTags {
    ByteOrder order = ByteOrder::LittleEndian;
    tiff::Directory directory;
    bool isEmpty() const { return directory.entries.empty(); }
};

/// Those of a TIFF file or an EXIF block; none for bytes that are neither.
CarriedTags carriedTags(ByteView structure);

/// Whether a tag of a first directory describes the coding of the pixels, points to other pictures in the
/// file or holds such: it is left behind.
bool isCodingTag(unsigned tag);

/// The maker note in the EXIF directory of a first directory; null when there is none.
const tiff::Entry* makerNoteOf(const tiff::Directory& directory);

/// The directory without the values whose types a classic structure cannot hold.
tiff::Directory withoutBigValues(const tiff::Directory& directory);

/// The tags as a structure of their own, the maker note where it was in the first place if that is not far.
Bytes exifBlock(const CarriedTags& tags);

/// The carried tags of an EXIF block, which may be empty, with this resolution.
Bytes exifWithResolution(ByteView exif, const Resolution& resolution);

/// The block itself when it is not longer than `limit`; otherwise one without its thumbnail and its longest
/// values, so many that it is short enough.
Bytes exifWithin(ByteView exif, std::size_t limit);

} // namespace complexion
