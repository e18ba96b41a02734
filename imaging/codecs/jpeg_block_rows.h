// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/decoded_picture.h"
#include "imaging/codecs/jpeg_decompressor.h"

#include <optional>

namespace complexion {

/// Decodes the pixels of `file`, whose header `header` has read, on all cores, where each row of blocks can
/// be decoded without the others: files of our own encoder. Nothing when the file is not of that kind, or not
/// wholly in order; otherwise the pixels that the library decodes from first to last.
std::optional<DecodedPicture> decodeBlockRowsApart(const JpegDecompressor& header, ByteView file);

} // namespace complexion
