// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/picture_metadata.h"

namespace complexion::tiff {

/// Whether `source`, a TIFF file, has a maker note so far from its start that the strips have to fill the
/// space before it. A maker note must keep its offset, because its own offsets may be relative to the file.
bool needsStripsForMakerNote(ByteView source);

/// The metadata of a TIFF file's first picture.
PictureMetadata readMetadata(ByteView file);

/// Returns `written`, a TIFF file of one picture, with the tags of the first picture of another TIFF file,
/// except those that describe its coding. The strips keep their bytes but may move.
/// `written` may be the start of a file, up to its strips; then so is the result, and the same strips follow
/// it.
Result<FileContents> withTagsOf(ByteView source, ByteView written);

/// `written`, a TIFF file of one picture or its start, as above, with metadata from another format.
Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written);

/// The tags that a TIFF file gets from the EXIF block of `metadata`, as an EXIF block.
Bytes exifFor(const PictureMetadata& metadata);

} // namespace complexion::tiff
