// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <array>
#include <cstdint>
#include <optional>

namespace complexion {

// The frame of a PNG file (ISO/IEC 15948, clause 5): a signature, then chunks of a big-endian length, a type
// of four letters, data and a CRC over type and data.

inline constexpr std::array<std::uint8_t, 8> kPngSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

/// A chunk's type as the number that its four letters make.
constexpr std::uint32_t pngChunkType(const char (&letters)[5]) {
    std::uint32_t type = 0;
    for (int i = 0; i < 4; ++i)
        type = type << 8 | static_cast<std::uint8_t>(letters[i]);
    return type;
}

void appendBigEndian(Bytes& bytes, std::uint32_t number);

/// Appends a whole chunk; `data` is at most 2^31 - 1 bytes.
void appendPngChunk(Bytes& bytes, std::uint32_t type, ByteView data);
/// The same of data in parts.
void appendPngChunk(Bytes& bytes, std::uint32_t type, std::span<const ByteView> parts);

/// What a chunk has around its data: length, type and CRC.
inline constexpr std::size_t kPngFrameSize = 12;
/// Where a chunk's type begins, and where its data do.
inline constexpr std::size_t kPngTypeOffset = 4;
inline constexpr std::size_t kPngDataOffset = 8;

/// The data of the file's first chunk of a type, wherever it stands; its CRC is not checked.
std::optional<ByteView> findPngChunk(ByteView file, std::uint32_t type);

} // namespace complexion
