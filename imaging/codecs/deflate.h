// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <array>
#include <cstdint>

namespace complexion {

// A zlib stream (RFC 1950) in pieces that are made apart: the header, deflated pieces (RFC 1951) that end at
// a byte and do not look back into one another, and the end with the sum of all that they stand for.

/// The header: a window of 32 KiB, the fastest algorithm.
inline constexpr std::array<std::uint8_t, 2> kZlibHeader = {0x78, 0x01};
/// The end but for the sum, which follows in big-endian order: an empty final block.
inline constexpr std::array<std::uint8_t, 2> kZlibFinalBlock = {0x03, 0x00};
/// The Adler-32 sum of no bytes.
inline constexpr std::uint32_t kAdlerOfNothing = 1;

/// Appends `bytes`, at most 2^32 - 1, as one piece: blocks that are not final, then a full flush.
void appendDeflated(Bytes& out, ByteView bytes);

std::uint32_t adlerOf(ByteView bytes);
/// The sum of a stream of sum `first` followed by `length` bytes of sum `second`.
std::uint32_t combinedAdler(std::uint32_t first, std::uint32_t second, std::uint64_t length);

} // namespace complexion
