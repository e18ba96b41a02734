// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"

namespace complexion::tiff {

// The operations of kTiffCodec. They may throw std::bad_alloc.

Result<std::vector<PixelSize>> measure(ByteView file);
Result<DecodedPicture> decode(ByteView file);
Result<FileContents> encode(const Image& image);
Result<FileContents> encodeResult(const Image& image, const ResultForm& form);

} // namespace complexion::tiff
