// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <array>
#include <cstdint>

namespace complexion {

// A zlib stream (RFC 1950) assembled from pieces that are compressed independently: the header, deflated
// pieces (RFC 1951) that end on a byte boundary and do not refer back to one another, and the trailer with
// the Adler-32 checksum of the uncompressed data.

/// The stream header: 32 KiB window, fastest compression level (RFC 1950 section 2.2).
inline constexpr std::array<std::uint8_t, 2> kZlibHeader = {0x78, 0x01};
/// An empty final block with fixed Huffman codes (RFC 1951 section 3.2.6). The checksum follows, big-endian.
inline constexpr std::array<std::uint8_t, 2> kZlibFinalBlock = {0x03, 0x00};
/// The Adler-32 checksum of an empty stream (RFC 1950 section 2.2).
inline constexpr std::uint32_t kInitialAdler32 = 1;

/// Compresses `bytes` (at most 2^32 - 1) and appends them to `out` as one piece: non-final blocks, then a
/// full flush.
void appendDeflated(Bytes& out, ByteView bytes);

std::uint32_t adler32Of(ByteView bytes);
/// The checksum of data with checksum `first`, followed by `length` bytes with checksum `second`.
std::uint32_t combinedAdler32(std::uint32_t first, std::uint32_t second, std::uint64_t length);

} // namespace complexion
