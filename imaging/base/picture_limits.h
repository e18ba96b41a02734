// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace complexion {

/// Maximum area (1 GiB of memory) and side of a picture, in pixels. Larger pictures are rejected before
/// memory is allocated.
inline constexpr std::int64_t kMaxArea = std::int64_t{1} << 28;
inline constexpr std::int64_t kMaxPictureSide = 1'000'000;

/// Whether a picture of this size can be decoded: both sides positive, sides and area within bounds.
inline bool isDecodableSize(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= kMaxPictureSide && height <= kMaxPictureSide &&
           width * height <= kMaxArea;
}

/// Pictures of up to this many pixels (64 MiB of memory) are decoded whatever the size of their file.
inline constexpr std::int64_t kAlwaysAllowedArea = std::int64_t{16} << 20;

/// Whether a picture of this size can be decoded and its file of `fileSize` bytes is long enough for it, if a
/// byte codes at most `pixelsPerByte` pixels. Keeps a file of a few bytes from allocating gigabytes.
inline bool isPlausibleArea(std::int64_t width, std::int64_t height, std::size_t fileSize,
                            std::int64_t pixelsPerByte) {
    return isDecodableSize(width, height) &&
           (width * height <= kAlwaysAllowedArea ||
            width * height / pixelsPerByte <= static_cast<std::int64_t>(fileSize));
}

} // namespace complexion
