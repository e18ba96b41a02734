// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/metadata/picture_metadata.h"

namespace complexion {

/// The metadata of a BMP file, which can only hold a resolution.
PictureMetadata readBmpMetadata(ByteView file);

/// Returns `written`, a BMP file, with the resolution of `metadata`.
Result<FileContents> withBmpMetadata(const PictureMetadata& metadata, ByteView written);

} // namespace complexion
