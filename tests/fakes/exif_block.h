// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/files.h"

#include <optional>

namespace complexion {

/// A little-endian EXIF block with an orientation and, if given, a resolution in dots per inch.
inline Bytes exifBlock(int orientation, std::optional<int> dotsPerInch = std::nullopt) {
    Bytes block = {'I', 'I', 42, 0, 8, 0, 0, 0};
    const auto number = [&](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            block.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    };
    const auto entry = [&](std::uint32_t tag, std::uint32_t type, std::uint32_t value) {
        number(tag, 2);
        number(type, 2);
        number(1, 4);
        number(value, 4);
    };
    constexpr std::uint32_t kShort = 3;
    constexpr std::uint32_t kRational = 5;
    const int entries = dotsPerInch ? 3 : 1;
    const auto end = static_cast<std::uint32_t>(8 + 2 + entries * 12 + 4);
    number(static_cast<std::uint32_t>(entries), 2);
    entry(274, kShort, static_cast<std::uint32_t>(orientation));
    if (dotsPerInch) {
        entry(282, kRational, end);
        entry(283, kRational, end);
    }
    number(0, 4);
    if (dotsPerInch) {
        number(static_cast<std::uint32_t>(*dotsPerInch), 4);
        number(1, 4);
    }
    return block;
}

} // namespace complexion
