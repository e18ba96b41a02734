// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace complexion {

enum class ByteOrder { LittleEndian, BigEndian };

/// Reads the unsigned number of `length` bytes (at most 8) at `offset`; 0 if it exceeds the end of `bytes`.
inline std::uint64_t numberAt(ByteView bytes, std::uint64_t offset, std::size_t length, ByteOrder order) {
    if (offset > bytes.size() || bytes.size() - offset < length)
        return 0;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < length; ++i)
        value = value << 8 | bytes[offset + (order == ByteOrder::BigEndian ? i : length - 1 - i)];
    return value;
}

/// Writes the low `length` bytes of `value` at `offset`. They must be inside `bytes`.
inline void setNumberAt(Bytes& bytes, std::size_t offset, std::size_t length, ByteOrder order,
                        std::uint64_t value) {
    for (std::size_t i = 0; i < length; ++i) {
        const std::size_t position = order == ByteOrder::BigEndian ? length - 1 - i : i;
        bytes[offset + position] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

inline void appendNumber(Bytes& bytes, std::size_t length, ByteOrder order, std::uint64_t value) {
    bytes.resize(bytes.size() + length);
    setNumberAt(bytes, bytes.size() - length, length, order, value);
}

inline void append(Bytes& bytes, ByteView more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

/// The bytes of a text, without a null terminator.
inline ByteView bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline std::string_view textOf(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline bool startsWith(ByteView bytes, std::string_view start) {
    return textOf(bytes).substr(0, start.size()) == start;
}

/// The bytes from `offset` on, at most `length` of them; clamped to the end of `bytes`.
inline ByteView slice(ByteView bytes, std::uint64_t offset, std::uint64_t length = UINT64_MAX) {
    if (offset >= bytes.size())
        return {};
    const ByteView rest = bytes.subspan(static_cast<std::size_t>(offset));
    return rest.first(static_cast<std::size_t>(length < rest.size() ? length : rest.size()));
}

namespace little_endian {

/// Reads the number at `offset`, which must be inside `bytes`.
inline std::uint16_t read16(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

inline std::uint32_t read32(ByteView bytes, std::size_t offset) {
    return read16(bytes, offset) | static_cast<std::uint32_t>(read16(bytes, offset + 2)) << 16;
}

inline void append16(Bytes& bytes, std::uint32_t value) {
    appendNumber(bytes, 2, ByteOrder::LittleEndian, value);
}

inline void append32(Bytes& bytes, std::uint32_t value) {
    appendNumber(bytes, 4, ByteOrder::LittleEndian, value);
}

} // namespace little_endian

namespace big_endian {

/// Reads the number at `offset`, which must be inside `bytes`.
inline std::uint16_t read16(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

inline std::uint32_t read32(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(read16(bytes, offset)) << 16 | read16(bytes, offset + 2);
}

inline void append32(Bytes& bytes, std::uint32_t value) {
    appendNumber(bytes, 4, ByteOrder::BigEndian, value);
}

} // namespace big_endian

} // namespace complexion
