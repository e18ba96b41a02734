// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_encoder.h"

#include "imaging/codecs/jpeg_bands.h"
#include "imaging/codecs/jpeg_compressor.h"
#include "imaging/codecs/jpeg_decoder.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/codecs/jpeg_scan.h"

#include <cstdlib>

namespace complexion::jpeg {

namespace {

using Tables = std::shared_ptr<const PictureTables>;

/// Colour space and codes are chosen from at least this many pixels, in stripes spread over the picture. Four
/// times as many made files only 0.1 % smaller.
constexpr std::int64_t kSampleArea = 250'000;

/// Largest acceptable mean loss, in levels. Encoding decoded photos again loses 0.03 to 0.13 as YCbCr and
/// less than 0.09 as RGB.
constexpr double kMaxLoss = 0.14;

/// Restart intervals per band: one per block row.
constexpr std::size_t kIntervalsPerBand = Tile::kHeight / kBlockRowHeight;
static_assert(kIntervalsPerBand == 8, "the markers RST0 to RST7 repeat with each band");

/// Evenly spread block rows; all of a small picture.
PixelBlock sampleOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    const std::int64_t stripeArea = std::int64_t{size.width} * kBlockRowHeight;
    const std::int64_t wanted = (kSampleArea + stripeArea - 1) / stripeArea;
    const std::int64_t all = size.height / kBlockRowHeight;
    const bool whole = wanted >= all;
    PixelBlock sample = PixelBlock::uninitialized(
        {size.width, whole ? size.height : static_cast<int>(wanted) * kBlockRowHeight});
    if (whole) {
        image.read({0, 0, size.width, size.height}, sample.pixels.get(), size.width);
        return sample;
    }
    for (std::int64_t i = 0; i < wanted; ++i)
        image.read({0, static_cast<int>(i * all / wanted) * kBlockRowHeight, size.width, kBlockRowHeight},
                   sample.row(static_cast<int>(i) * kBlockRowHeight), size.width);
    return sample;
}

/// The mean absolute RGB difference, in levels, between `pixels` and what `file` decodes to.
Result<double> meanLoss(ByteView file, const PixelBlock& pixels) {
    const Result<Image> decoded = decodePixels(file);
    if (!decoded)
        return decoded.error();
    const PixelBlock back = PixelBlock::uninitialized(pixels.size);
    decoded->read({0, 0, pixels.size.width, pixels.size.height}, back.pixels.get(), pixels.size.width);
    std::int64_t sum = 0;
    for (std::int64_t i = 0; i < pixels.size.area(); ++i) {
        const RGBA32 before = pixels.pixels[static_cast<std::size_t>(i)];
        const RGBA32 after = back.pixels[static_cast<std::size_t>(i)];
        sum += std::abs(before.red() - after.red()) + std::abs(before.green() - after.green()) +
               std::abs(before.blue() - after.blue());
    }
    return static_cast<double>(sum) / static_cast<double>(3 * pixels.size.area());
}

/// Chooses the colour space and Huffman codes of a picture. Most photos are encoded as YCbCr. Pictures with
/// saturated colours, or that were never YCbCr, would lose too much and are encoded as RGB. With an effect
/// applied no pixel has to be preserved.
Result<CodingTables> chooseTables(const Image& image) {
    const PixelBlock sample = sampleOf(image);
    const auto tried = [&sample](ColorSpace colorSpace) {
        return encodeTrial(sample.size, sample.pixels.get(), colorSpace);
    };
    Result<TrialEncoding> trial = tried(ColorSpace::YCbCr);
    if (trial && !image.isTransformed()) {
        const Result<double> loss = meanLoss(trial->file, sample);
        if (!loss)
            return loss.error();
        if (*loss > kMaxLoss)
            trial = tried(ColorSpace::Rgb);
    }
    if (!trial)
        return trial.error();
    return trial->tables;
}

/// The picture's tables, chosen at its first encoding, with a code for every symbol that an edit may need.
Result<Tables> tablesFor(const Image& image) {
    const auto original = image.encoderMemory().get<OriginalFile>();
    Memo& memory = original ? original->fallbackMemory() : image.encoderMemory();
    if (Tables kept = memory.get<PictureTables>())
        return kept;
    const Result<CodingTables> suitable = chooseTables(image);
    if (!suitable)
        return suitable.error();
    auto tables = std::make_shared<PictureTables>();
    tables->codes.colorSpace = suitable->colorSpace;
    for (std::size_t i = 0; i < 2; ++i) {
        tables->codes.dc[i] = withAllSymbols(suitable->dc[i], dcSymbols());
        tables->codes.ac[i] = withAllSymbols(suitable->ac[i], acSymbols());
    }
    memory.set(tables);
    return Tables(tables);
}

/// Encodes an image from its pixels.
Result<FileContents> encodePixels(const Image& image) {
    const PixelSize size = image.pixelSize();
    if (!image.hasPixels())
        return Error{"JPEG: there are no pixels", ErrorKind::FormatCannotHold};
    if (size.width > kMaxSide || size.height > kMaxSide)
        return Error{"JPEG: the picture is too large for the format", ErrorKind::FormatCannotHold};
    const Result<Tables> tables = tablesFor(image);
    if (!tables)
        return tables.error();
    Result<Bytes> header = makeHeader(size, image.profile().icc(), (*tables)->codes);
    if (!header)
        return header.error();
    const auto bands = encodeBands(image, *tables);
    if (!bands)
        return bands.error();

    FileContents file;
    file.append(std::move(*header));
    Bytes marker;
    appendRestartMarker(marker, kIntervalsPerBand);
    const auto betweenBands = std::make_shared<const Bytes>(std::move(marker));
    for (std::size_t i = 0; i < bands->size(); ++i) {
        if (i > 0)
            file.parts.push_back(betweenBands);
        file.parts.push_back((*bands)[i]);
    }
    file.append({kEndOfImage.begin(), kEndOfImage.end()});
    return file;
}

} // namespace

Result<FileContents> encode(const Image& upright, Orientation orientation) {
    if (const auto original = upright.encoderMemory().get<OriginalFile>();
        original && original->orientation() == orientation)
        if (Result<FileContents> exact = original->encode(upright);
            exact || exact.error().kind == ErrorKind::OutOfMemory)
            return exact;
    return encodePixels(turnedForStorage(upright, orientation));
}

} // namespace complexion::jpeg
