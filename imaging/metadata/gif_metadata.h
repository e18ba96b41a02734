// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/picture_metadata.h"

namespace complexion {

/// The metadata of a GIF file.
PictureMetadata readGifMetadata(ByteView file);

/// `written`, a GIF file, with the comments and the application blocks of `source`, another one, byte for
/// byte, and its pixels' shape.
Result<FileContents> withGifBlocksOf(ByteView source, ByteView written);

/// `written`, a GIF file, with what GIF can hold of metadata that comes from another format: comments, XMP,
/// IPTC.
Result<FileContents> withGifMetadata(const PictureMetadata& metadata, ByteView written);

} // namespace complexion
