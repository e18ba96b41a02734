// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"

namespace complexion {

// The operations of kGifCodec, which may throw when memory is lacking.

Result<std::vector<PixelSize>> measureGif(ByteView file);
Result<DecodedPicture> decodeGif(ByteView file);
Result<FileContents> encodeGif(const Image& image);

} // namespace complexion
