// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/picture_metadata.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion::png {

/// The metadata of a PNG file.
PictureMetadata readMetadata(ByteView file);

/// Returns `written`, a PNG file, with the metadata chunks of another PNG file, byte for byte and in order,
/// before its first IDAT chunk.
Result<FileContents> withChunksOf(ByteView source, ByteView written, ThumbnailMaker& maker);

/// Returns `written`, a PNG file, with metadata from another format.
Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written, ThumbnailMaker& maker);

/// The EXIF block that a PNG file gets from `metadata`, before its thumbnail is renewed.
Bytes exifFor(const PictureMetadata& metadata);

} // namespace complexion::png
