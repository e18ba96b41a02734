// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_encoder.h"

#include "imaging/codecs/jpeg_compressor.h"
#include "imaging/parallel.h"

#include <optional>

namespace complexion {

namespace {

/// A picture's code tables, kept beside it.
struct JpegPictureTables : Memo::Value {
    JpegTables codes;
};
using Tables = std::shared_ptr<const JpegPictureTables>;

constexpr int kBlockRows = 8;
/// The tables are trained on this many pixels at least, in stripes spread over the picture.
constexpr std::int64_t kSampleArea = 1'000'000;

/// A band's restart interval, and the tables that it was coded with.
struct JpegBand : Memo::Value {
    JpegBand(Tables codedWith, Bytes bytes)
        : tables(std::move(codedWith)), interval(std::make_shared<const Bytes>(std::move(bytes))) {}

    Tables tables;
    std::shared_ptr<const Bytes> interval;
};

/// Stripes of block rows, spread evenly; a small picture whole.
PixelBlock sampleOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    const std::int64_t stripeArea = std::int64_t{size.width} * kBlockRows;
    const std::int64_t wanted = (kSampleArea + stripeArea - 1) / stripeArea;
    const std::int64_t all = size.height / kBlockRows;
    const bool whole = wanted >= all;
    PixelBlock sample =
        PixelBlock::uninitialized({size.width, whole ? size.height : static_cast<int>(wanted) * kBlockRows});
    if (whole) {
        image.read({0, 0, size.width, size.height}, sample.pixels.get(), size.width);
        return sample;
    }
    for (std::int64_t i = 0; i < wanted; ++i)
        image.read({0, static_cast<int>(i * all / wanted) * kBlockRows, size.width, kBlockRows},
                   sample.row(static_cast<int>(i) * kBlockRows), size.width);
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

using JpegBandPointer = std::shared_ptr<const JpegBand>;

Result<JpegBandPointer> codedBand(const Image& image, int index, const Tables& tables) {
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const PixelRect rect = image.bandRect(index);
    const PixelBlock rows = PixelBlock::uninitialized({rect.width, rect.height});
    image.read(rect, rows.pixels.get(), rect.width);
    Result<Bytes> interval = jpegInterval(rows.size, rows.pixels.get(), tables->codes);
    if (!interval)
        return interval.error();
    auto coded = std::make_shared<const JpegBand>(tables, std::move(*interval));
    if (band)
        band->encoded().set(coded);
    return JpegBandPointer(coded);
}

/// What is kept beside the band; null when that is nothing or was coded with other tables.
JpegBandPointer keptBand(const Image& image, int index, const Tables& tables) {
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const JpegBandPointer kept = band ? band->encoded().get<JpegBand>() : nullptr;
    return kept && kept->tables == tables ? kept : nullptr;
}

/// All intervals in order; nothing but an error when one could not be coded.
Result<std::vector<std::shared_ptr<const Bytes>>> intervals(const Image& image, const Tables& tables) {
    std::vector<std::shared_ptr<const Bytes>> result(static_cast<std::size_t>(image.bandCount()));
    std::vector<int> missing;
    for (int index = 0; index < image.bandCount(); ++index) {
        if (const JpegBandPointer kept = keptBand(image, index, tables))
            result[static_cast<std::size_t>(index)] = kept->interval;
        else
            missing.push_back(index);
    }
    std::vector<std::optional<Error>> errors(missing.size());
    parallelFor(static_cast<int>(missing.size()), [&](int i) {
        const int index = missing[static_cast<std::size_t>(i)];
        const Result<JpegBandPointer> coded = codedBand(image, index, tables);
        if (coded)
            result[static_cast<std::size_t>(index)] = (*coded)->interval;
        else
            errors[static_cast<std::size_t>(i)] = coded.error();
    });
    for (const std::optional<Error>& error : errors)
        if (error)
            return *error;
    return result;
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
    const auto scan = intervals(image, *tables);
    if (!scan)
        return scan.error();

    constexpr std::uint8_t kFirstRestartMarker = 0xD0; // RST0 .. RST7, in turn
    constexpr std::uint8_t kEndOfImage = 0xD9;
    FileContents file;
    file.append(std::move(*header));
    for (std::size_t i = 0; i < scan->size(); ++i) {
        if (i > 0)
            file.append({0xFF, static_cast<std::uint8_t>(kFirstRestartMarker + (i - 1) % 8)});
        file.parts.push_back((*scan)[i]);
    }
    file.append({0xFF, kEndOfImage});
    return file;
}

} // namespace complexion
