// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_coded_rows.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/jpeg_coefficient_writer.h"
#include "imaging/codecs/jpeg_coefficients.h"
#include "imaging/codecs/jpeg_output.h"
#include "imaging/codecs/jpeg_scan.h"

#include <algorithm>
#include <atomic>

namespace complexion::jpeg {

namespace {

constexpr std::size_t kMarkerSize = 2;
/// Huffman codes are chosen from MCU rows spread over the picture, with at least this many pixels.
constexpr std::int64_t kSampleArea = 1'000'000;
/// MCU rows encoded per call: setting up the library costs about a tenth of encoding one row.
constexpr int kRowsPerCall = 8;

/// The height in pixels of `count` MCU rows from row `first` on. The last row may be cut off by the picture.
int heightOf(const Layout& layout, int first, int count) {
    return std::min(count * layout.mcu.height, layout.size.height - first * layout.mcu.height);
}

/// The bytes of MCU row `index`, preceded by its restart marker.
std::shared_ptr<const Bytes> withMarker(ByteView row, int index) {
    Bytes bytes;
    bytes.reserve(kMarkerSize + row.size());
    if (index > 0)
        appendRestartMarker(bytes, static_cast<std::size_t>(index));
    bytes.insert(bytes.end(), row.begin(), row.end());
    return std::make_shared<const Bytes>(std::move(bytes));
}

Result<CodingTables> chooseTables(const Coefficients& coefficients) {
    const Layout& layout = coefficients.layout();
    const std::int64_t rowArea = std::int64_t{layout.size.width} * layout.mcu.height;
    const std::int64_t wanted = (kSampleArea + rowArea - 1) / rowArea;
    const int count = static_cast<int>(std::min<std::int64_t>(wanted, layout.mcusDown));
    McuRow row = emptyMcuRow(layout);
    const auto sampled = [&](int i) {
        const std::int64_t index = std::int64_t{i} * layout.mcusDown / count;
        if (!coefficients.readRow(static_cast<int>(index), row))
            row = emptyMcuRow(layout); // encoding reports the error
        return &row;
    };
    Result<CodingTables> tables = optimalTables(
        layout, {.count = count, .height = heightOf(layout, layout.mcusDown - count, count), .row = sampled});
    if (!tables)
        return tables;
    for (std::size_t i = 0; i < 2; ++i) {
        tables->dc[i] = withAllSymbols(tables->dc[i], dcSymbols());
        tables->ac[i] = withAllSymbols(tables->ac[i], acSymbols());
    }
    return tables;
}

/// Encodes up to `kRowsPerCall` MCU rows from `first` on into `jpeg.rows`.
std::optional<Error> encodeRows(const Coefficients& coefficients, int first, TranscodedFile& jpeg) {
    const int count = std::min(kRowsPerCall, jpeg.layout.mcusDown - first);
    McuRow row = emptyMcuRow(jpeg.layout);
    bool isInRange = true;
    const auto read = [&](int i) {
        isInRange = coefficients.readRow(first + i, row) && isInRange;
        return &row;
    };
    const Result<Bytes> coded = encodeMcuRows(
        jpeg.layout, {.count = count, .height = heightOf(jpeg.layout, first, count), .row = read},
        jpeg.tables);
    if (!isInRange)
        return Error{"JPEG: a coefficient is out of range"};
    if (!coded)
        return coded.error();
    const std::vector<ByteView> rows = splitAtRestartMarkers(*coded).intervals;
    for (int i = 0; i < count; ++i)
        jpeg.rows[static_cast<std::size_t>(first + i)] =
            withMarker(rows[static_cast<std::size_t>(i)], first + i);
    return std::nullopt;
}

} // namespace

Result<TranscodedFile> transcode(ByteView file, TranscodingListener* listener) {
    const auto coefficients = Coefficients::read(file);
    if (!coefficients)
        return coefficients.error();
    const Layout& layout = (*coefficients)->layout();
    const Result<CodingTables> tables = chooseTables(**coefficients);
    if (!tables)
        return tables.error();
    Result<Bytes> header = makeTranscodedHeader(layout, layout.size.height, {}, *tables);
    if (!header)
        return header.error();
    TranscodedFile jpeg{.layout = layout, .tables = *tables, .header = std::move(*header), .rows = {}};
    jpeg.rows.resize(static_cast<std::size_t>(layout.mcusDown));
    if (listener)
        listener->began(jpeg);
    const int parts = (layout.mcusDown + kRowsPerCall - 1) / kRowsPerCall;
    std::vector<std::optional<Error>> errors(static_cast<std::size_t>(parts));
    std::atomic<bool> hasFailed = false;
    parallelFor(parts, [&](int part) {
        if (hasFailed)
            return;
        const int first = part * kRowsPerCall;
        auto& error = errors[static_cast<std::size_t>(part)];
        if ((error = encodeRows(**coefficients, first, jpeg)))
            hasFailed = true;
        else if (listener)
            listener->rowsDone(std::span(jpeg.rows).subspan(
                                   static_cast<std::size_t>(first),
                                   static_cast<std::size_t>(std::min(kRowsPerCall, layout.mcusDown - first))),
                               static_cast<std::size_t>(first));
    });
    for (std::optional<Error>& error : errors)
        if (error)
            return std::move(*error);
    return jpeg;
}

Result<McuRow> decodeMcuRow(const TranscodedFile& jpeg, int index) {
    const ByteView bytes = *jpeg.rows[static_cast<std::size_t>(index)];
    return decodeMcuRow(withHeight(jpeg.header, heightOf(jpeg.layout, index, 1)),
                        index > 0 ? bytes.subspan(kMarkerSize) : bytes);
}

Result<Bytes> encodeMcuRow(const TranscodedFile& jpeg, int index, const McuRow& row) {
    Result<Bytes> coded = encodeMcuRows(
        jpeg.layout,
        {.count = 1, .height = heightOf(jpeg.layout, index, 1), .row = [&](int) { return &row; }},
        jpeg.tables);
    return coded ? Result<Bytes>(*withMarker(*coded, index)) : coded;
}

} // namespace complexion::jpeg
