// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <cstdint>

namespace complexion::little_endian {

/// The number at `offset`; the bytes lie within `bytes`.
inline std::uint16_t read16(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

inline std::uint32_t read32(ByteView bytes, std::size_t offset) {
    return read16(bytes, offset) | static_cast<std::uint32_t>(read16(bytes, offset + 2)) << 16;
}

inline void append16(Bytes& bytes, std::uint32_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value & 255));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8 & 255));
}

inline void append32(Bytes& bytes, std::uint32_t value) {
    append16(bytes, value & 0xFFFF);
    append16(bytes, value >> 16);
}

} // namespace complexion::little_endian
