// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/resolution.h"
#include "imaging/containers/tiff_structure.h"

namespace complexion::exif {

/// The tags of a TIFF structure's first directory that describe the picture rather than the coding of its
/// pixels.
struct CarriedTags {
    ByteOrder order = ByteOrder::LittleEndian;
    tiff::Directory directory;
    bool isEmpty() const { return directory.entries.empty(); }
};

/// Reads them from a TIFF file or an EXIF block; empty for any other bytes.
CarriedTags carriedTags(ByteView structure);

/// Whether a tag of a first directory describes the coding of the pixels, or contains or points to other
/// pictures. Such tags are not carried.
bool isCodingTag(unsigned tag);

/// The maker note in the EXIF directory of a first directory; null when there is none.
const tiff::Entry* makerNoteOf(const tiff::Directory& directory);

/// The directory without values of BigTIFF-only types.
tiff::Directory withoutBigValues(const tiff::Directory& directory);

/// Serialises the tags. The maker note keeps its original offset if that is small enough, because its own
/// offsets may be relative to the block.
Bytes blockOf(const CarriedTags& tags);

/// The carried tags of an EXIF block, which may be empty, with this resolution.
Bytes withResolution(ByteView exif, const Resolution& resolution);

/// The block itself if it has at most `limit` bytes; otherwise one without its thumbnail and without as many
/// of the longest values as needed.
Bytes within(ByteView exif, std::size_t limit);

} // namespace complexion::exif
