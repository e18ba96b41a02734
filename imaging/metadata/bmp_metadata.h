// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/picture_metadata.h"

namespace complexion::bmp {

/// The metadata of a BMP file, which can only hold a resolution.
PictureMetadata readMetadata(ByteView file);

/// Returns `written`, a BMP file, with the resolution of `metadata`.
Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written);

} // namespace complexion::bmp
