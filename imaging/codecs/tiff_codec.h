// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"

namespace complexion {

// The operations of kTiffCodec, which may throw when memory is lacking.

Result<std::vector<PixelSize>> measureTiff(ByteView file);
Result<DecodedPicture> decodeTiff(ByteView file);
Result<FileContents> encodeTiff(const Image& image);

} // namespace complexion
