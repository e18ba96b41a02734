// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"

#include <cstddef>

namespace complexion {

/// Pictures up to this many pixels (64 MiB of memory) are decoded whatever the size of their file.
inline constexpr std::int64_t kHarmlessArea = std::int64_t{16} << 20;

/// Whether a picture of this size can be decoded and its file of `fileSize` bytes is long enough to hold it,
/// when a byte codes no more than `pixelsPerByte` pixels. A file of a few bytes shall not take gigabytes of
/// memory.
inline bool isPlausibleArea(std::int64_t width, std::int64_t height, std::size_t fileSize,
                            std::int64_t pixelsPerByte) {
    return isDecodableSize(width, height) &&
           (width * height <= kHarmlessArea ||
            width * height / pixelsPerByte <= static_cast<std::int64_t>(fileSize));
}

} // namespace complexion
