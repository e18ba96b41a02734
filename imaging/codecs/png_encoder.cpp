// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_encoder.h"

#include "imaging/codecs/deflate.h"
#include "imaging/codecs/png_chunks.h"
#include "imaging/codecs/png_filter.h"
#include "imaging/parallel.h"

#include <atomic>
#include <limits>

#include <zlib.h>

namespace complexion {

namespace {

constexpr std::uint32_t kPixelsPerMetre = 2835; // 72 per inch
constexpr std::int64_t kLargestChunk = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kRoomForPixel = 5; // bytes, with what incompressible data costs more

/// A band's image data chunk, and what the whole file needs to know of it.
struct PngBand : Memo::Value {
    bool opaque = false;
    bool withAlpha = false;   // whether it is coded as RGBA
    std::uint32_t adler = 0;  // of the data before compression
    std::uint64_t length = 0; // of the data before compression
    std::shared_ptr<const Bytes> chunk;
};
using PngBandPointer = std::shared_ptr<const PngBand>;

/// Codes band `index`: as RGBA where it needs to be or `withAlpha` says so.
PngBandPointer codedBand(const Image& image, int index, bool withAlpha) {
    const PixelRect rect = image.bandRect(index);
    const PixelBlock rows = PixelBlock::uninitialized({rect.width, rect.height});
    image.read(rect, rows.pixels.get(), rect.width);

    auto coded = std::make_shared<PngBand>();
    coded->opaque = isOpaque({rows.row(0), rows.row(rect.height)});
    coded->withAlpha = withAlpha || !coded->opaque;
    const Bytes filtered = filteredRows(rows.size, rows.pixels.get(), coded->withAlpha);
    coded->adler = adlerOf(filtered);
    coded->length = filtered.size();
    Bytes deflated;
    appendDeflated(deflated, filtered);
    Bytes chunk;
    appendPngChunk(chunk, pngChunkType("IDAT"), deflated);
    coded->chunk = std::make_shared<const Bytes>(std::move(chunk));
    if (const std::shared_ptr<const Band> band = image.storedBand(index))
        band->encoded().set(coded);
    return coded;
}

/// All bands, coded alike. What is kept of stored bands is used.
std::vector<PngBandPointer> codedBands(const Image& image) {
    std::vector<PngBandPointer> coded(static_cast<std::size_t>(image.bandCount()));
    std::atomic<bool> withAlpha = false;
    for (int index = 0; index < image.bandCount(); ++index)
        if (const std::shared_ptr<const Band> band = image.storedBand(index))
            if (PngBandPointer kept = band->encoded().get<PngBand>()) {
                withAlpha = withAlpha || !kept->opaque;
                coded[static_cast<std::size_t>(index)] = std::move(kept);
            }

    const auto codeThose = [&](const auto& isWanted) {
        std::vector<int> wanted;
        for (int index = 0; index < image.bandCount(); ++index)
            if (isWanted(coded[static_cast<std::size_t>(index)]))
                wanted.push_back(index);
        parallelFor(static_cast<int>(wanted.size()), [&](int i) {
            const int index = wanted[static_cast<std::size_t>(i)];
            PngBandPointer band = codedBand(image, index, withAlpha);
            if (!band->opaque)
                withAlpha = true;
            coded[static_cast<std::size_t>(index)] = std::move(band);
        });
    };
    // Whether the picture is opaque is known when all bands have been looked at. Those that were coded on
    // another guess are coded again: rarely any.
    codeThose([](const PngBandPointer& band) { return band == nullptr; });
    codeThose([&](const PngBandPointer& band) { return band->withAlpha != withAlpha; });
    return coded;
}

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
    appendBigEndian(density, kPixelsPerMetre);
    appendBigEndian(density, kPixelsPerMetre);
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
    appendPngChunk(file, pngChunkType("IEND"), {});
    return file;
}

} // namespace

Result<FileContents> encodePng(const Image& image) {
    if (!image.hasPixels())
        return Error{"PNG: there are no pixels"};
    // A band that does not compress takes a little more than its pixels' bytes.
    if (std::int64_t{image.pixelSize().width} * Tile::kHeight * kRoomForPixel > kLargestChunk)
        return Error{"PNG: the picture is too wide"};
    const std::vector<PngBandPointer> bands = codedBands(image);
    FileContents file;
    file.append(fileStart(image, bands.front()->withAlpha));
    std::uint32_t adler = kAdlerOfNothing;
    for (const PngBandPointer& band : bands) {
        file.parts.push_back(band->chunk);
        adler = combinedAdler(adler, band->adler, band->length);
    }
    file.append(fileEnd(adler));
    return file;
}

} // namespace complexion
