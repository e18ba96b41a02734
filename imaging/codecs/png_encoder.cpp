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

namespace complexion::png {

namespace {

constexpr std::int64_t kMaxChunk = std::numeric_limits<std::int32_t>::max(); // PNG 1.2 section 3.2
constexpr std::int64_t kMaxBytesPerPixel = 5; // with deflate's overhead for incompressible data

void appendProfile(Bytes& file, ByteView icc) {
    if (icc.empty()) {
        constexpr std::array<std::uint8_t, 1> kPerceptual = {0};
        appendChunk(file, "sRGB", kPerceptual);
        return;
    }
    constexpr std::string_view kName = "ICC profile";
    Bytes data(kName.begin(), kName.end());
    data.insert(data.end(), {0, 0}); // null terminator, compression method (PNG 1.2 section 4.2.2.4)
    const std::size_t start = data.size();
    uLongf length = compressBound(static_cast<uLong>(icc.size()));
    data.resize(start + length);
    compress(data.data() + start, &length, icc.data(), static_cast<uLong>(icc.size()));
    data.resize(start + length);
    appendChunk(file, "iCCP", data);
}

/// Everything before the bands' chunks.
Bytes fileStart(const Image& image, bool withAlpha) {
    Bytes file(kSignature.begin(), kSignature.end());
    Bytes header;
    big_endian::append32(header, static_cast<std::uint32_t>(image.pixelSize().width));
    big_endian::append32(header, static_cast<std::uint32_t>(image.pixelSize().height));
    const std::uint8_t colorType = withAlpha ? 6 : 2;
    header.insert(header.end(), {8, colorType, 0, 0, 0}); // PNG 1.2 section 4.1.1
    appendChunk(file, "IHDR", header);
    appendProfile(file, image.profile().icc());
    Bytes density;
    big_endian::append32(density, kUsualPixelsPerMetre);
    big_endian::append32(density, kUsualPixelsPerMetre);
    density.push_back(1); // per metre
    appendChunk(file, "pHYs", density);
    appendChunk(file, "IDAT", kZlibHeader);
    return file;
}

/// Everything after the bands' chunks.
Bytes fileEnd(std::uint32_t adler) {
    Bytes end(kZlibFinalBlock.begin(), kZlibFinalBlock.end());
    big_endian::append32(end, adler);
    Bytes file;
    appendChunk(file, "IDAT", end);
    appendChunk(file, "IEND", ByteView());
    return file;
}

} // namespace

Result<FileContents> encode(const Image& image) {
    if (!image.hasPixels())
        return Error{"PNG: there are no pixels", ErrorKind::FormatCannotHold};
    // An incompressible band becomes slightly larger than its pixels.
    if (std::int64_t{image.pixelSize().width} * Tile::kHeight * kMaxBytesPerPixel > kMaxChunk)
        return Error{"PNG: the picture is too wide", ErrorKind::FormatCannotHold};
    EncodedBands bands = encodeBands(image);
    FileContents file;
    file.append(fileStart(image, bands.withAlpha));
    std::ranges::move(bands.chunks, std::back_inserter(file.parts));
    file.append(fileEnd(bands.adler));
    return file;
}

} // namespace complexion::png
