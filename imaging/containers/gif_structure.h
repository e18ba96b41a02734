// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>

namespace complexion {

// The frame of a GIF file (GIF89a): a header, a colour table, then extensions and pictures, whose data stand
// in sub-blocks that each begin with their length.

/// Signature, version and the logical screen's descriptor.
inline constexpr std::size_t kGifHeaderLength = 13;
/// Where the header announces the colour table behind it.
inline constexpr std::size_t kGifScreenFlagsOffset = 10;

/// What an extension begins with, and what the descriptor of a picture does.
inline constexpr std::uint8_t kGifExtension = 0x21;
inline constexpr std::uint8_t kGifPicture = 0x2C;

/// The bytes of a colour table, from the flags that announce it.
constexpr std::size_t gifColorTableLength(std::uint8_t flags) {
    constexpr std::uint8_t kHasColorTable = 0x80;
    return (flags & kHasColorTable) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

/// The place behind the sub-blocks that begin at `position` and the zero that closes them; nothing when the
/// file's end cuts them off.
inline std::optional<std::size_t> gifSubBlocksEnd(ByteView file, std::size_t position) {
    while (position < file.size() && file[position] != 0)
        position += std::size_t{1} + file[position];
    return position < file.size() ? std::optional(position + 1) : std::nullopt;
}

} // namespace complexion
