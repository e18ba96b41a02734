// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/bmp_header.h"

#include "imaging/base/picture_limits.h"
#include "imaging/containers/byte_order.h"

#include <algorithm>
#include <cstdlib>

namespace complexion::bmp {

namespace {

using little_endian::read16;
using little_endian::read32;

// A run of 255 pixels takes two bytes, any other pixel at least one bit. Allows for truncated files.
constexpr std::int64_t kMaxPixelsPerByte = 512;

constexpr std::array<std::uint32_t, 4> kMasks16 = {0x7C00, 0x03E0, 0x001F, 0};
constexpr std::array<std::uint32_t, 4> kMasks32 = {0xFF0000, 0x00FF00, 0x0000FF, 0};

/// The picture header: `bytes` starts with it, `size` is its own size field.
struct PictureHeader {
    ByteView bytes;
    std::uint32_t size = 0;

    std::uint32_t field32(std::size_t offset) const { return offset + 4 <= size ? read32(bytes, offset) : 0; }
    bool isOs2() const { return size == kShortOs2HeaderSize || size == kOs2HeaderSize; }
};

Compression compressionOf(const PictureHeader& picture) {
    const std::uint32_t number = picture.field32(16);
    const auto compression = static_cast<Compression>(number);
    if (!picture.isOs2())
        return compression;
    if (compression == Compression::BitFields)
        return Compression::Huffman;
    return compression == Compression::Jpeg ? Compression::Rle24 : compression;
}

bool isValidDepth(int bits, Compression compression) {
    switch (compression) {
    case Compression::None:
        return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    case Compression::Rle8:
        return bits == 8;
    case Compression::Rle4:
        return bits == 4;
    case Compression::Rle24:
        return bits == 24;
    case Compression::BitFields:
    case Compression::AlphaBitFields:
        return bits == 16 || bits == 32;
    case Compression::Jpeg:
    case Compression::Png:
        return true;
    case Compression::Huffman:
        return false;
    }
    return false;
}

/// Sets the masks. Returns the offset after them, where a palette would begin.
std::size_t readMasks(ByteView file, const PictureHeader& picture, Header& header) {
    const std::size_t end = kFileHeaderSize + picture.size;
    header.masks = header.bits == 16 ? kMasks16 : kMasks32;
    const bool given =
        header.compression == Compression::BitFields || header.compression == Compression::AlphaBitFields;
    if (!given)
        return end;
    const bool inHeader = picture.size >= kInfoHeaderWithMasksSize;
    const bool alpha = inHeader ? picture.size >= kInfoHeaderWithAlphaMaskSize
                                : header.compression == Compression::AlphaBitFields;
    const std::size_t count = alpha ? 4 : 3;
    const std::size_t begin = kFileHeaderSize + kInfoHeaderSize;
    header.masks = {};
    for (std::size_t i = 0; i < count && begin + 4 * i + 4 <= file.size(); ++i)
        header.masks[i] = read32(file, begin + 4 * i);
    return inHeader ? end : begin + 4 * count;
}

/// Reads the palette entries that are used and present; the others stay black.
void readPalette(ByteView file, const PictureHeader& picture, std::size_t begin, Header& header) {
    header.palette.fill(RGBA32(0, 0, 0, 255));
    if (header.bits > 8)
        return;
    const std::size_t entrySize = picture.size == kCoreHeaderSize ? 3 : 4;
    std::size_t count = std::size_t{1} << header.bits;
    if (const std::uint32_t used = picture.field32(32); used != 0)
        count = std::min<std::size_t>(count, used);
    if (header.pixelsAt > begin)
        count = std::min(count, (header.pixelsAt - begin) / entrySize);
    for (std::size_t i = 0; i < count && begin + (i + 1) * entrySize <= file.size(); ++i) {
        const std::uint8_t* entry = file.data() + begin + i * entrySize;
        header.palette[i] = RGBA32(entry[2], entry[1], entry[0], 255);
    }
    if (header.pixelsAt == 0)
        header.pixelsAt = begin + count * entrySize;
}

ColorProfile embeddedProfile(ByteView file, const PictureHeader& picture) {
    if (picture.size < kV5HeaderSize || picture.field32(56) != kColorSpaceEmbedded)
        return {};
    const std::size_t begin = kFileHeaderSize + std::size_t{picture.field32(112)};
    const std::size_t length = picture.field32(116);
    if (begin >= file.size() || length > file.size() - begin)
        return {};
    return ColorProfile::fromIcc(file.subspan(begin, length));
}

} // namespace

Result<Header> readHeader(ByteView file) {
    if (file.size() < kFileHeaderSize + kCoreHeaderSize || file[0] != 'B' || file[1] != 'M')
        return Error{"not a BMP file", ErrorKind::NotAPicture};
    const PictureHeader picture{file.subspan(kFileHeaderSize), read32(file, kFileHeaderSize)};
    const bool core = picture.size == kCoreHeaderSize;
    if (picture.size > picture.bytes.size() ||
        (!core && picture.size < kInfoHeaderSize && picture.size != kShortOs2HeaderSize))
        return Error{"BMP header of an unknown size"};

    Header header;
    const std::int64_t width =
        core ? read16(picture.bytes, 4) : static_cast<std::int32_t>(picture.field32(4));
    const std::int64_t height =
        core ? read16(picture.bytes, 6) : static_cast<std::int32_t>(picture.field32(8));
    header.topDown = height < 0;
    if (!isPlausibleArea(width, std::abs(height), file.size(), kMaxPixelsPerByte))
        return Error{"BMP picture of an impossible size"};
    header.size = {static_cast<int>(width), static_cast<int>(std::abs(height))};
    header.bits = read16(picture.bytes, core ? 10 : 14);
    header.compression = compressionOf(picture);
    if (!isValidDepth(header.bits, header.compression))
        return Error{"BMP picture of an unknown kind"};
    header.resolution = wholeResolutionOfPixelsPerMetre(picture.field32(kPixelsPerMetreAcrossOffset),
                                                        picture.field32(kPixelsPerMetreDownOffset));
    header.pixelsAt = read32(file, 10);
    const std::size_t paletteAt = readMasks(file, picture, header);
    readPalette(file, picture, paletteAt, header);
    header.profile = embeddedProfile(file, picture);
    if (header.pixelsAt >= file.size())
        return Error{"BMP file ends before its pixels"};
    return header;
}

} // namespace complexion::bmp
