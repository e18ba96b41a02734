// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/jpeg_attachments.h"
#include "imaging/metadata/picture_metadata.h"
#include "imaging/metadata/thumbnail_maker.h"

namespace complexion {

/// The metadata of a JPEG file.
PictureMetadata readJpegMetadata(ByteView file);

/// `written`, a JPEG file, with the metadata segments of `source`, another one, byte for byte and in their
/// order, except what describes the coding or shows the picture before. Of what is behind the source's
/// picture they tell what is `kept`; the places in the multi-picture index have to be set when the file's
/// length is known.
Result<FileContents> withJpegSegmentsOf(ByteView source, ByteView written, ThumbnailMaker& maker,
                                        const KeptAttachments& kept = {});

/// `written`, a JPEG file, with metadata that comes from another format.
Result<FileContents> withJpegMetadata(const PictureMetadata& metadata, ByteView written,
                                      ThumbnailMaker& maker);

/// The EXIF block that a JPEG file gets from `metadata`, but for its thumbnail.
Bytes exifForJpeg(const PictureMetadata& metadata);

} // namespace complexion
