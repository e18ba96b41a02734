// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"
#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/rgba32.h"
#include "imaging/containers/resolution.h"

#include <array>
#include <cstdint>
#include <vector>

namespace complexion::bmp {

// Sizes in bytes of the file header and of the picture headers, which tell their versions.
inline constexpr std::size_t kFileHeaderSize = 14;
inline constexpr std::uint32_t kCoreHeaderSize = 12;
inline constexpr std::uint32_t kShortOs2HeaderSize = 16;
inline constexpr std::uint32_t kInfoHeaderSize = 40;
inline constexpr std::uint32_t kInfoHeaderWithMasksSize = 52;
inline constexpr std::uint32_t kInfoHeaderWithAlphaMaskSize = 56;
inline constexpr std::uint32_t kOs2HeaderSize = 64;
inline constexpr std::uint32_t kV5HeaderSize = 124;

// Where a picture header has the pixels per metre, across and down.
inline constexpr std::size_t kPixelsPerMetreAcrossOffset = 24;
inline constexpr std::size_t kPixelsPerMetreDownOffset = 28;

inline constexpr std::uint32_t kColorSpaceSrgb = 0x73524742;     // "sRGB"
inline constexpr std::uint32_t kColorSpaceEmbedded = 0x4D424544; // "MBED"

/// The numbers of the compression field; 3 and 4 mean Huffman codes and runs of 24-bit pixels in OS/2
/// headers.
enum class Compression : std::uint32_t {
    None = 0,
    Rle8 = 1,
    Rle4 = 2,
    BitFields = 3,
    Jpeg = 4,
    Png = 5,
    AlphaBitFields = 6,
    Huffman = 1003,
    Rle24 = 1004,
};

/// What the headers of a file say.
struct Header {
    PixelSize size;
    bool topDown = false;
    int bits = 0;
    Compression compression = Compression::None;
    std::array<std::uint32_t, 4> masks = {}; // red, green, blue, alpha
    std::array<RGBA32, 256> palette = {};
    std::size_t pixelsAt = 0;
    Resolution resolution; // 0 where it is not stated
    ColorProfile profile;

    /// Bytes from one row to the next in uncompressed pixels: whole 32-bit words.
    std::size_t rowBytes() const {
        return (static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
    }
};

} // namespace complexion::bmp
