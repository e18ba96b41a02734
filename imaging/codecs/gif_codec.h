// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"

#include <cstdint>
#include <limits>

namespace complexion::gif {

/// The logical screen's sides are 16-bit numbers (GIF89a section 18).
inline constexpr int kMaxSide = std::numeric_limits<std::uint16_t>::max();

// The operations of kGifCodec. They may throw std::bad_alloc.

Result<std::vector<PixelSize>> measure(ByteView file);
Result<DecodedPicture> decode(ByteView file);
Result<FileContents> encode(const Image& image);

} // namespace complexion::gif
