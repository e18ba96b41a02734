// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/jpeg_attachments.h"
#include "imaging/metadata/picture_metadata.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion::jpeg {

/// The metadata of a JPEG file.
PictureMetadata readMetadata(ByteView file);

/// Returns `written`, a JPEG file, with the metadata segments of `source`, another one, byte for byte and in
/// order, except those that describe the coding or show the unretouched photo. They declare
/// only the attachments in `kept`. The caller must set the offsets in the multi-picture index when the file's
/// length is known.
Result<FileContents> withSegmentsOf(ByteView source, ByteView written, ThumbnailMaker& maker,
                                    const KeptAttachments& kept = {});

/// Returns `written`, a JPEG file, with metadata from another format.
Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written, ThumbnailMaker& maker);

/// The EXIF block that a JPEG file gets from `metadata`, before its thumbnail is renewed.
Bytes exifFor(const PictureMetadata& metadata);

} // namespace complexion::jpeg
