// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/picture_metadata.h"

namespace complexion::gif {

/// The metadata of a GIF file.
PictureMetadata readMetadata(ByteView file);

/// Returns `written`, a GIF file, with the comments and application blocks of another GIF file, byte for
/// byte, and its pixel aspect ratio.
Result<FileContents> withBlocksOf(ByteView source, ByteView written);

/// Returns `written`, a GIF file, with metadata from another format as far as GIF can hold it: comments, XMP
/// and IPTC.
Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written);

} // namespace complexion::gif
