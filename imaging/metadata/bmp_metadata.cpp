// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/bmp_metadata.h"

#include "imaging/containers/bmp_format.h"
#include "imaging/containers/byte_order.h"

namespace complexion::bmp {

namespace {

constexpr std::size_t kAcrossOffset = kFileHeaderSize + kPixelsPerMetreAcrossOffset;
constexpr std::size_t kDownOffset = kFileHeaderSize + kPixelsPerMetreDownOffset;

/// Whether the picture header is a BITMAPINFOHEADER or a successor, which have resolution fields.
bool hasResolutionFields(ByteView file) {
    return file.size() >= kFileHeaderSize + kInfoHeaderSize &&
           little_endian::read32(file, kFileHeaderSize) >= kInfoHeaderSize;
}

} // namespace

PictureMetadata readMetadata(ByteView file) {
    PictureMetadata metadata;
    if (!hasResolutionFields(file))
        return metadata;
    const auto number = [file](std::size_t offset) {
        return static_cast<std::int32_t>(numberAt(file, offset, 4, ByteOrder::LittleEndian));
    };
    const std::int32_t across = number(kAcrossOffset);
    const std::int32_t down = number(kDownOffset);
    if (across > 0 && down > 0)
        metadata.resolution =
            resolutionOfPixelsPerMetre(static_cast<std::uint32_t>(across), static_cast<std::uint32_t>(down));
    return metadata;
}

Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written) {
    if (!hasResolutionFields(written))
        return Error{"the BMP file to give metadata to is damaged"};
    Bytes file(written.begin(), written.end());
    if (const auto& resolution = metadata.resolution;
        resolution && resolution->unit != Resolution::Unit::None) {
        const auto set = [&](std::size_t offset, double value) {
            setNumberAt(file, offset, 4, ByteOrder::LittleEndian, pixelsPerMetre(value, resolution->unit));
        };
        set(kAcrossOffset, resolution->across);
        set(kDownOffset, resolution->down);
    }
    FileContents contents;
    contents.append(std::move(file));
    return contents;
}

} // namespace complexion::bmp
