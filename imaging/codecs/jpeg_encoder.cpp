// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_encoder.h"

#include "imaging/codecs/jpeg_bands.h"
#include "imaging/codecs/jpeg_compressor.h"
#include "imaging/codecs/jpeg_scan.h"

namespace complexion {

namespace {

using Tables = std::shared_ptr<const JpegPictureTables>;

/// The tables are trained on this many pixels at least, in stripes spread over the picture.
constexpr std::int64_t kSampleArea = 1'000'000;

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

Result<Tables> trainedTables(const Image& image) {
    const PixelBlock sample = sampleOf(image);
    const Result<JpegTables> best = bestJpegTables(sample.size, sample.pixels.get());
    if (!best)
        return best.error();
    auto tables = std::make_shared<JpegPictureTables>();
    for (std::size_t i = 0; i < 2; ++i) {
        tables->codes.dc[i] = completed(best->dc[i], dcSymbols());
        tables->codes.ac[i] = completed(best->ac[i], acSymbols());
    }
    return Tables(tables);
}

/// The picture's tables: trained at its first encoding. Computed pixels are another picture than the one that
/// they are computed from, and get their own.
Result<Tables> tablesFor(const Image& image) {
    if (!image.storedBand(0))
        return trainedTables(image);
    if (Tables kept = image.encoderMemory().get<JpegPictureTables>())
        return kept;
    Result<Tables> tables = trainedTables(image);
    if (tables)
        image.encoderMemory().set(*tables);
    return tables;
}

} // namespace

Result<FileContents> encodeJpeg(const Image& image) {
    const PixelSize size = image.pixelSize();
    if (!image.hasPixels())
        return Error{"JPEG: there are no pixels"};
    if (size.width > kLongestJpegSide || size.height > kLongestJpegSide)
        return Error{"JPEG: the picture is too large for the format"};
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

} // namespace complexion
