// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_encoder.h"

#include "imaging/codecs/codec.h"
#include "imaging/codecs/deflate.h"
#include "imaging/codecs/png_bands.h"
#include "imaging/containers/png_chunks.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include <zlib.h>

namespace complexion {

namespace {

constexpr std::int64_t kLargestChunk = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kRoomForPixel = 5; // bytes, with what incompressible data costs more

void appendProfile(Bytes& file, ByteView icc) {
    if (icc.empty()) {
        constexpr std::array<std::uint8_t, 1> kPerceptual = {0};
        appendPngChunk(file, pngChunkType("sRGB"), kPerceptual);
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
    appendPngChunk(file, pngChunkType("iCCP"), data);
}

/// Everything before the bands' chunks.
Bytes fileStart(const Image& image, bool withAlpha) {
    Bytes file(kPngSignature.begin(), kPngSignature.end());
    Bytes header;
    appendBigEndian(header, static_cast<std::uint32_t>(image.pixelSize().width));
    appendBigEndian(header, static_cast<std::uint32_t>(image.pixelSize().height));
    const std::uint8_t colorType = withAlpha ? 6 : 2;
    header.insert(header.end(), {8, colorType, 0, 0, 0}); // 8 bits; deflate, usual filters, not interlaced
    appendPngChunk(file, pngChunkType("IHDR"), header);
    appendProfile(file, image.profile().icc());
    Bytes density;
    appendBigEndian(density, kUsualPixelsPerMetre);
    appendBigEndian(density, kUsualPixelsPerMetre);
    density.push_back(1); // per metre
    appendPngChunk(file, pngChunkType("pHYs"), density);
    appendPngChunk(file, pngChunkType("IDAT"), kZlibHeader);
    return file;
}

/// Everything after the bands' chunks.
Bytes fileEnd(std::uint32_t adler) {
    Bytes end(kZlibFinalBlock.begin(), kZlibFinalBlock.end());
    appendBigEndian(end, adler);
    Bytes file;
    appendPngChunk(file, pngChunkType("IDAT"), end);
    appendPngChunk(file, pngChunkType("IEND"), ByteView());
    return file;
}

} // namespace

Result<FileContents> encodePng(const Image& image) {
    if (!image.hasPixels())
        return Error{"PNG: there are no pixels", ErrorKind::FormatCannotHold};
    // A band that does not compress takes a little more than its pixels' bytes.
    if (std::int64_t{image.pixelSize().width} * Tile::kHeight * kRoomForPixel > kLargestChunk)
        return Error{"PNG: the picture is too wide", ErrorKind::FormatCannotHold};
    CodedPngBands bands = codedPngBands(image);
    FileContents file;
    file.append(fileStart(image, bands.withAlpha));
    std::ranges::move(bands.chunks, std::back_inserter(file.parts));
    file.append(fileEnd(bands.adler));
    return file;
}

} // namespace complexion
