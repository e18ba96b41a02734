// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_encoder.h"

#include "imaging/codecs/codec.h"
#include "imaging/codecs/deflate.h"
#include "imaging/codecs/png_bands.h"
#include "imaging/containers/byte_order.h"
#include "imaging/containers/png_chunks.h"
#include "imaging/containers/resolution.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include <zlib.h>

namespace complexion {

namespace {

constexpr std::int64_t kMaxChunk = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kRoomForPixel = 5; // bytes, with what incompressible data costs more

void appendProfile(Bytes& file, ByteView icc) {
    if (icc.empty()) {
        constexpr std::array<std::uint8_t, 1> kPerceptual = {0};
        png::appendChunk(file, "sRGB", kPerceptual);
        return;
    }
    constexpr std::string_view kName = "ICC profile";
    Bytes data(kName.begin(), kName.end());
    data.insert(data.end(), {0, 0}); // the name's end; the compression method
    const std::size_t start = data.size();
    uLongf length = compressBound(static_cast<uLong>(icc.size()));
    data.resize(start + length);
    compress(data.data() + start, &length, icc.data(), static_cast<uLong>(icc.size()));
    data.resize(start + length);
    png::appendChunk(file, "iCCP", data);
}

/// Everything before the bands' chunks.
Bytes fileStart(const Image& image, bool withAlpha) {
    Bytes file(png::kSignature.begin(), png::kSignature.end());
    Bytes header;
    big_endian::append32(header, static_cast<std::uint32_t>(image.pixelSize().width));
    big_endian::append32(header, static_cast<std::uint32_t>(image.pixelSize().height));
    const std::uint8_t colorType = withAlpha ? 6 : 2;
    header.insert(header.end(), {8, colorType, 0, 0, 0}); // 8 bits; deflate, usual filters, not interlaced
    png::appendChunk(file, "IHDR", header);
    appendProfile(file, image.profile().icc());
    Bytes density;
    big_endian::append32(density, kUsualPixelsPerMetre);
    big_endian::append32(density, kUsualPixelsPerMetre);
    density.push_back(1); // per metre
    png::appendChunk(file, "pHYs", density);
    png::appendChunk(file, "IDAT", kZlibHeader);
    return file;
}

/// Everything after the bands' chunks.
Bytes fileEnd(std::uint32_t adler) {
    Bytes end(kZlibFinalBlock.begin(), kZlibFinalBlock.end());
    big_endian::append32(end, adler);
    Bytes file;
    png::appendChunk(file, "IDAT", end);
    png::appendChunk(file, "IEND", ByteView());
    return file;
}

} // namespace

Result<FileContents> encodePng(const Image& image) {
    if (!image.hasPixels())
        return Error{"PNG: there are no pixels", ErrorKind::FormatCannotHold};
    // A band that does not compress takes a little more than its pixels' bytes.
    if (std::int64_t{image.pixelSize().width} * Tile::kHeight * kRoomForPixel > kMaxChunk)
        return Error{"PNG: the picture is too wide", ErrorKind::FormatCannotHold};
    CodedPngBands bands = codedPngBands(image);
    FileContents file;
    file.append(fileStart(image, bands.withAlpha));
    std::ranges::move(bands.chunks, std::back_inserter(file.parts));
    file.append(fileEnd(bands.adler));
    return file;
}

} // namespace complexion
