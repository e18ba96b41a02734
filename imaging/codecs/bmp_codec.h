// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"

namespace complexion {

// The operations of kBmpCodec, which may throw when memory is lacking.

Result<std::vector<PixelSize>> measureBmp(ByteView file);
Result<DecodedPicture> decodeBmp(ByteView file);
Result<FileContents> encodeBmp(const Image& image);

} // namespace complexion
