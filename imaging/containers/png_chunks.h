// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>
#include <string_view>
#include <vector>

namespace complexion::png {

// The chunks of a PNG file (ISO/IEC 15948, clause 5): after a signature, each chunk has a big-endian length,
// a type of four letters, data, and a CRC over type and data.

inline constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";

/// What a chunk has around its data: length, type and CRC, in bytes.
inline constexpr std::size_t kFrameSize = 12;
/// Where a chunk's data begin.
inline constexpr std::size_t kDataOffset = 8;

struct Chunk {
    /// Its type, four letters.
    std::string_view name;
    ByteView data;
    /// Length, name, data and CRC.
    ByteView whole;
};

/// The chunk at `position` in a file; nothing where no whole chunk is.
std::optional<Chunk> chunkAt(ByteView file, std::size_t position);

/// A PNG file's chunks up to IEND, or to where the file is damaged. Ancillary chunks with a wrong CRC are
/// left out.
std::vector<Chunk> split(ByteView file);

/// The data of the file's first chunk of a type, wherever it is; its CRC is not checked.
std::optional<ByteView> findChunk(ByteView file, std::string_view name);

/// Appends a whole chunk; `data` is at most 2^31 - 1 bytes.
void appendChunk(Bytes& bytes, std::string_view name, ByteView data);
/// The same of data in parts.
void appendChunk(Bytes& bytes, std::string_view name, std::span<const ByteView> parts);

/// A chunk's bytes.
Bytes chunk(std::string_view name, ByteView data);

} // namespace complexion::png
