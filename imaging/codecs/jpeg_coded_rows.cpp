// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_coded_rows.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/jpeg_coefficient_writer.h"
#include "imaging/codecs/jpeg_coefficients.h"
#include "imaging/codecs/jpeg_output.h"
#include "imaging/codecs/jpeg_scan.h"

#include <algorithm>
#include <atomic>

namespace complexion {

namespace {

constexpr std::size_t kMarkerSize = 2;
/// Codes are chosen by rows of so many pixels at least, spread over the picture.
constexpr std::int64_t kSampleArea = 1'000'000;
/// So many rows are coded in one go: the library's preparations cost about as much as a tenth of one.
constexpr int kRowsAtOnce = 8;

/// The height of the picture's part from row `first` of MCUs on, `count` rows of these, in pixels.
int heightOf(const JpegLayout& layout, int first, int count) {
    return std::min(count * layout.mcu.height, layout.size.height - first * layout.mcu.height);
}

/// The bytes of row `index` with the marker that comes before it.
std::shared_ptr<const Bytes> withMarker(ByteView row, int index) {
    Bytes bytes;
    bytes.reserve(kMarkerSize + row.size());
    if (index > 0)
        appendRestartMarker(bytes, static_cast<std::size_t>(index));
    bytes.insert(bytes.end(), row.begin(), row.end());
    return std::make_shared<const Bytes>(std::move(bytes));
}

Result<JpegTables> suitableCodes(const JpegCoefficients& coefficients) {
    const JpegLayout& layout = coefficients.layout();
    const std::int64_t rowArea = std::int64_t{layout.size.width} * layout.mcu.height;
    const std::int64_t wanted = (kSampleArea + rowArea - 1) / rowArea;
    const int count = static_cast<int>(std::min<std::int64_t>(wanted, layout.mcusDown));
    JpegMcuRow row = emptyMcuRow(layout);
    const auto sampled = [&](int i) {
        const std::int64_t index = std::int64_t{i} * layout.mcusDown / count;
        if (!coefficients.readRow(static_cast<int>(index), row))
            row = emptyMcuRow(layout); // and the picture is found to be out of range
        return &row;
    };
    Result<JpegTables> tables = bestCodes(
        layout, {.count = count, .height = heightOf(layout, layout.mcusDown - count, count), .row = sampled});
    if (!tables)
        return tables;
    for (std::size_t i = 0; i < 2; ++i) {
        tables->dc[i] = completed(tables->dc[i], dcSymbols());
        tables->ac[i] = completed(tables->ac[i], acSymbols());
    }
    return tables;
}

/// Codes the rows from `first` on into `jpeg.rows`.
std::optional<Error> codeRows(const JpegCoefficients& coefficients, int first, CodedJpeg& jpeg) {
    const int count = std::min(kRowsAtOnce, jpeg.layout.mcusDown - first);
    JpegMcuRow row = emptyMcuRow(jpeg.layout);
    bool isInRange = true;
    const auto read = [&](int i) {
        isInRange = coefficients.readRow(first + i, row) && isInRange;
        return &row;
    };
    const Result<Bytes> coded = codedMcuRows(
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

Result<CodedJpeg> codedExactly(ByteView file) {
    const auto coefficients = JpegCoefficients::read(file);
    if (!coefficients)
        return coefficients.error();
    const JpegLayout& layout = (*coefficients)->layout();
    const Result<JpegTables> tables = suitableCodes(**coefficients);
    if (!tables)
        return tables.error();
    Result<Bytes> header = exactJpegHeader(layout, layout.size.height, {}, *tables);
    if (!header)
        return header.error();
    CodedJpeg jpeg{.layout = layout, .tables = *tables, .header = std::move(*header), .rows = {}};
    jpeg.rows.resize(static_cast<std::size_t>(layout.mcusDown));
    const int parts = (layout.mcusDown + kRowsAtOnce - 1) / kRowsAtOnce;
    std::vector<std::optional<Error>> errors(static_cast<std::size_t>(parts));
    std::atomic<bool> hasFailed = false;
    parallelFor(parts, [&](int part) {
        auto& error = errors[static_cast<std::size_t>(part)];
        if (!hasFailed && (error = codeRows(**coefficients, part * kRowsAtOnce, jpeg)))
            hasFailed = true;
    });
    for (std::optional<Error>& error : errors)
        if (error)
            return std::move(*error);
    return jpeg;
}

Result<JpegMcuRow> mcuRowOf(const CodedJpeg& jpeg, int index) {
    const ByteView bytes = *jpeg.rows[static_cast<std::size_t>(index)];
    return decodedMcuRow(withJpegHeight(jpeg.header, heightOf(jpeg.layout, index, 1)),
                         index > 0 ? bytes.subspan(kMarkerSize) : bytes);
}

Result<Bytes> codedMcuRow(const CodedJpeg& jpeg, int index, const JpegMcuRow& row) {
    Result<Bytes> coded = codedMcuRows(
        jpeg.layout,
        {.count = 1, .height = heightOf(jpeg.layout, index, 1), .row = [&](int) { return &row; }},
        jpeg.tables);
    return coded ? Result<Bytes>(*withMarker(*coded, index)) : coded;
}

} // namespace complexion
