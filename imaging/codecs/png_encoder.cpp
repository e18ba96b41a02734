// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_encoder.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/deflate.h"
#include "imaging/codecs/png_bands.h"
#include "imaging/codecs/png_filter.h"
#include "imaging/codecs/sample_rows.h"
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

/// The sample format in the IHDR chunk.
struct SampleKind {
    std::uint8_t bits = 8;
    bool isGrey = false;
    bool hasAlpha = false;

    std::uint8_t colorType() const { // ISO/IEC 15948 clause 11.2.2: flags for colour and alpha
        return static_cast<std::uint8_t>((isGrey ? 0 : 2) | (hasAlpha ? 4 : 0));
    }
};

/// Everything before the bands' chunks.
Bytes fileStart(const Image& image, SampleKind kind) {
    Bytes file(kSignature.begin(), kSignature.end());
    Bytes header;
    big_endian::append32(header, static_cast<std::uint32_t>(image.pixelSize().width));
    big_endian::append32(header, static_cast<std::uint32_t>(image.pixelSize().height));
    header.insert(header.end(), {kind.bits, kind.colorType(), 0, 0, 0}); // PNG 1.2 section 4.1.1
    appendChunk(file, "IHDR", header);
    appendProfile(file, image.profile().icc());
    Bytes density;
    big_endian::append32(density, kDefaultPixelsPerMetre);
    big_endian::append32(density, kDefaultPixelsPerMetre);
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

/// `bytesPerPixel` is the most that a pixel can take.
Result<Done> checkSize(const Image& image, std::int64_t bytesPerPixel) {
    if (!image.hasPixels())
        return Error{"PNG: there are no pixels", ErrorKind::FormatCannotHold};
    // An incompressible band becomes slightly larger than its pixels.
    if (std::int64_t{image.pixelSize().width} * Tile::kHeight * bytesPerPixel > kMaxChunk)
        return Error{"PNG: the picture is too wide", ErrorKind::FormatCannotHold};
    return Done();
}

/// The image data chunk of a band of 16-bit samples.
struct DeepBand {
    Bytes chunk;
    std::uint32_t adler = 0;  // of the data before compression
    std::uint64_t length = 0; // of the data before compression
};

DeepBand codedDeepBand(const Image& deep, int index, DeepSamples samples) {
    const PixelRect rect = deep.bandRect(index);
    const std::size_t pixelBytes = samples.perPixel() * sizeof(std::uint16_t);
    const Bytes filtered =
        filteredSamples(packedSamples(deep, rect, samples, DeepAlpha::Straight, ByteOrder::BigEndian),
                        static_cast<std::size_t>(rect.width) * pixelBytes, pixelBytes);
    DeepBand band{.chunk = {}, .adler = adler32Of(filtered), .length = filtered.size()};
    Bytes deflated;
    appendDeflated(deflated, filtered);
    appendChunk(band.chunk, "IDAT", deflated);
    return band;
}

} // namespace

Result<FileContents> encode(const Image& image) {
    if (const Result<Done> fits = checkSize(image, kMaxBytesPerPixel); !fits)
        return fits.error();
    EncodedBands bands = encodeBands(image);
    FileContents file;
    file.append(fileStart(image, {.hasAlpha = bands.withAlpha}));
    std::ranges::move(bands.chunks, std::back_inserter(file.parts));
    file.append(fileEnd(bands.adler));
    return file;
}

Result<FileContents> encodeDeep(const Image& deep) {
    if (const Result<Done> fits = checkSize(deep, 2 * kMaxBytesPerPixel); !fits)
        return fits.error();
    const DeepSamples samples = samplesFor(deep);
    std::vector<DeepBand> bands(static_cast<std::size_t>(deep.bandCount()));
    parallelFor(deep.bandCount(), [&](int index) {
        bands[static_cast<std::size_t>(index)] = codedDeepBand(deep, index, samples);
    });
    FileContents file;
    file.append(fileStart(deep, {.bits = 16, .isGrey = samples.isGrey, .hasAlpha = samples.hasAlpha}));
    std::uint32_t adler = kInitialAdler32;
    for (DeepBand& band : bands) {
        adler = combinedAdler32(adler, band.adler, band.length);
        file.append(std::move(band.chunk));
    }
    file.append(fileEnd(adler));
    return file;
}

} // namespace complexion::png
