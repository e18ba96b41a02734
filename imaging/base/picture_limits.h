// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace complexion {

/// Pictures of more pixels than this (1 GiB of memory), or longer ones, are refused before memory is taken
/// for them.
inline constexpr std::int64_t kMaxArea = std::int64_t{1} << 28;
inline constexpr std::int64_t kMaxPictureSide = 1'000'000;

/// Whether a picture of this size can be decoded: both sides positive, sides and area within bounds.
inline bool isDecodableSize(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= kMaxPictureSide && height <= kMaxPictureSide &&
           width * height <= kMaxArea;
}

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
