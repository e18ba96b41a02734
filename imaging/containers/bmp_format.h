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

// Sizes in bytes of BITMAPFILEHEADER and of the picture headers. A picture header's size identifies its
// version.
inline constexpr std::size_t kFileHeaderSize = 14;
inline constexpr std::uint32_t kCoreHeaderSize = 12;
inline constexpr std::uint32_t kShortOs2HeaderSize = 16;
inline constexpr std::uint32_t kInfoHeaderSize = 40;
inline constexpr std::uint32_t kInfoHeaderWithMasksSize = 52;
inline constexpr std::uint32_t kInfoHeaderWithAlphaMaskSize = 56;
inline constexpr std::uint32_t kOs2HeaderSize = 64;
inline constexpr std::uint32_t kV5HeaderSize = 124;

// Offsets of biXPelsPerMeter and biYPelsPerMeter in a picture header.
inline constexpr std::size_t kPixelsPerMetreAcrossOffset = 24;
inline constexpr std::size_t kPixelsPerMetreDownOffset = 28;

inline constexpr std::uint32_t kColorSpaceSrgb = 0x73524742;     // "sRGB"
inline constexpr std::uint32_t kColorSpaceEmbedded = 0x4D424544; // "MBED"

/// Values of the biCompression field. In OS/2 2.x headers 3 and 4 mean Huffman and RLE24 instead, which have
/// values of their own here.
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

/// A file's headers.
struct Header {
    PixelSize size;
    bool topDown = false;
    int bits = 0;
    Compression compression = Compression::None;
    std::array<std::uint32_t, 4> masks = {}; // red, green, blue, alpha
    std::array<RGBA32, 256> palette = {};
    std::size_t pixelsAt = 0;
    Resolution resolution; // 0 if the file has none
    ColorProfile profile;

    /// The stride of uncompressed rows in bytes: whole 32-bit words.
    std::size_t rowBytes() const {
        return (static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
    }
};

} // namespace complexion::bmp
