// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/fatal.h"
#include "imaging/codecs/codec.h"

#include <algorithm>

namespace complexion::fuzz {

/// Larger pictures slow the fuzzer down and reach no new code.
inline constexpr std::int64_t kMaxArea = 1 << 18;

/// Whether all pictures that the file declares are small enough to be decoded many times a second.
inline bool isSmall(const Codec& codec, ByteView file) {
    const Result<std::vector<PixelSize>> sizes = codec.measure(file);
    return sizes && std::ranges::all_of(*sizes, [](PixelSize size) {
               return size.width >= 0 && size.height >= 0 &&
                      std::int64_t{size.width} * size.height <= kMaxArea;
           });
}

inline void require(bool condition, const char* failure) {
    if (!condition)
        fatal(failure);
}

inline std::vector<RGBA32> pixelsOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    image.read({0, 0, size.width, size.height}, pixels.data(), size.width);
    return pixels;
}

} // namespace complexion::fuzz
