// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>
#include <string_view>
#include <vector>

namespace complexion::png {

// The chunks of a PNG file (ISO/IEC 15948 clause 5): after the signature, each chunk has a big-endian length,
// a type of four letters, data, and a CRC over type and data.

inline constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";

/// The size in bytes of what surrounds a chunk's data: length, type and CRC.
inline constexpr std::size_t kChunkOverhead = 12;
/// The offset of a chunk's data.
inline constexpr std::size_t kDataOffset = 8;

struct Chunk {
    /// The chunk type, four letters.
    std::string_view name;
    ByteView data;
    /// Length, name, data and CRC.
    ByteView whole;
};

/// The chunk at `position`; nothing if there is no complete chunk.
std::optional<Chunk> chunkAt(ByteView file, std::size_t position);

/// Splits a file into its chunks up to IEND or the first damage. Skips ancillary chunks with a wrong CRC.
std::vector<Chunk> split(ByteView file);

/// The data of the file's first chunk of a type. Its CRC is not checked.
std::optional<ByteView> findChunk(ByteView file, std::string_view name);

/// Appends a chunk; `data` has at most 2^31 - 1 bytes.
void appendChunk(Bytes& bytes, std::string_view name, ByteView data);
/// The same with data in parts.
void appendChunk(Bytes& bytes, std::string_view name, std::span<const ByteView> parts);

/// Builds a chunk.
Bytes chunk(std::string_view name, ByteView data);

} // namespace complexion::png
