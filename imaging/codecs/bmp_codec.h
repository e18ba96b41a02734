// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"

namespace complexion::bmp {

// The operations of kBmpCodec. They may throw std::bad_alloc.

Result<std::vector<PixelSize>> measure(ByteView file);
Result<DecodedPicture> decode(ByteView file);
Result<FileContents> encode(const Image& image);

} // namespace complexion::bmp
