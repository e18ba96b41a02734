// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_encoder.h"

#include "imaging/codecs/jpeg_bands.h"
#include "imaging/codecs/jpeg_compressor.h"
#include "imaging/codecs/jpeg_decoder.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/codecs/jpeg_scan.h"

#include <cstdlib>

namespace complexion {

namespace {

using Tables = std::shared_ptr<const JpegPictureTables>;

/// How a picture is coded is decided by so many of its pixels at least, in stripes spread over it. Codes
/// trained on four times as many made files a thousandth smaller.
constexpr std::int64_t kSampleArea = 250'000;

/// The most that may be lost of a picture, in levels in the mean: of a photo's file, coded again, it is 0.03
/// to 0.13, of red, green and blue below 0.09.
constexpr double kMaxLoss = 0.14;

/// A band's intervals, of one block row each.
constexpr std::size_t kIntervalsOfBand = Tile::kHeight / kJpegBlockRows;
static_assert(kIntervalsOfBand == 8, "the markers RST0 to RST7 come round with each band");

/// Stripes of block rows, spread evenly; a small picture whole.
PixelBlock sampleOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    const std::int64_t stripeArea = std::int64_t{size.width} * kJpegBlockRows;
    const std::int64_t wanted = (kSampleArea + stripeArea - 1) / stripeArea;
    const std::int64_t all = size.height / kJpegBlockRows;
    const bool whole = wanted >= all;
    PixelBlock sample = PixelBlock::uninitialized(
        {size.width, whole ? size.height : static_cast<int>(wanted) * kJpegBlockRows});
    if (whole) {
        image.read({0, 0, size.width, size.height}, sample.pixels.get(), size.width);
        return sample;
    }
    for (std::int64_t i = 0; i < wanted; ++i)
        image.read({0, static_cast<int>(i * all / wanted) * kJpegBlockRows, size.width, kJpegBlockRows},
                   sample.row(static_cast<int>(i) * kJpegBlockRows), size.width);
    return sample;
}

/// The mean difference of red, green and blue, in levels, between pixels and what is decoded of their file.
Result<double> lossIn(ByteView file, const PixelBlock& pixels) {
    const Result<Image> decoded = decodeJpegPixels(file);
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

/// The colours and codes that suit a picture. The components of most photos are YCbCr; pictures of strong
/// colours, or that were never stored as YCbCr, would lose too much. Where an effect is on it, nothing has to
/// come back as it was.
Result<JpegTables> suitableTables(const Image& image) {
    const PixelBlock sample = sampleOf(image);
    const auto tried = [&sample](JpegColors colors) {
        return tryJpeg(sample.size, sample.pixels.get(), colors);
    };
    Result<JpegTrial> trial = tried(JpegColors::YCbCr);
    if (trial && !image.isTransformed()) {
        const Result<double> loss = lossIn(trial->file, sample);
        if (!loss)
            return loss.error();
        if (*loss > kMaxLoss)
            trial = tried(JpegColors::Rgb);
    }
    if (!trial)
        return trial.error();
    return trial->tables;
}

/// The picture's tables: chosen at its first encoding, with codes for whatever an edit may bring.
Result<Tables> tablesFor(const Image& image) {
    const auto original = image.encoderMemory().get<JpegOriginal>();
    Memo& memory = original ? original->plainMemory() : image.encoderMemory();
    if (Tables kept = memory.get<JpegPictureTables>())
        return kept;
    const Result<JpegTables> suitable = suitableTables(image);
    if (!suitable)
        return suitable.error();
    auto tables = std::make_shared<JpegPictureTables>();
    tables->codes.colors = suitable->colors;
    for (std::size_t i = 0; i < 2; ++i) {
        tables->codes.dc[i] = completed(suitable->dc[i], dcSymbols());
        tables->codes.ac[i] = completed(suitable->ac[i], acSymbols());
    }
    memory.set(tables);
    return Tables(tables);
}

/// The file of an image's pixels.
Result<FileContents> encodePixels(const Image& image) {
    const PixelSize size = image.pixelSize();
    if (!image.hasPixels())
        return Error{"JPEG: there are no pixels", ErrorKind::FormatCannotHold};
    if (size.width > kMaxJpegSide || size.height > kMaxJpegSide)
        return Error{"JPEG: the picture is too large for the format", ErrorKind::FormatCannotHold};
    const Result<Tables> tables = tablesFor(image);
    if (!tables)
        return tables.error();
    Result<Bytes> header = jpegHeader(size, image.profile().icc(), (*tables)->codes);
    if (!header)
        return header.error();
    const auto bands = codedJpegBands(image, *tables);
    if (!bands)
        return bands.error();

    FileContents file;
    file.append(std::move(*header));
    Bytes marker;
    appendRestartMarker(marker, kIntervalsOfBand);
    const auto betweenBands = std::make_shared<const Bytes>(std::move(marker));
    for (std::size_t i = 0; i < bands->size(); ++i) {
        if (i > 0)
            file.parts.push_back(betweenBands);
        file.parts.push_back((*bands)[i]);
    }
    file.append({kJpegEndOfImage.begin(), kJpegEndOfImage.end()});
    return file;
}

} // namespace

Result<FileContents> encodeJpeg(const Image& upright, Orientation orientation) {
    if (const auto original = upright.encoderMemory().get<JpegOriginal>();
        original && original->orientation() == orientation)
        if (Result<FileContents> exact = original->encode(upright);
            exact || exact.error().kind == ErrorKind::OutOfMemory)
            return exact;
    return encodePixels(turnedForStorage(upright, orientation));
}

} // namespace complexion
