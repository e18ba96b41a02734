// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/transcoding_answer.h"

#include "imaging/codecs/jpeg_coefficient_writer.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/reading/flat_error.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr int kMaxFactor = 4; // ITU-T T.81 B.2.2

void writeCode(FlatWriter& writer, const jpeg::HuffmanCode& code) {
    writer.bytes(code.lengthCounts);
    writer.bytes(code.symbols);
}

/// The encoder checks codes before it uses them: false only when there are not enough bytes for one.
bool readCode(FlatReader& reader, jpeg::HuffmanCode& code) {
    const ByteView counts = reader.bytes();
    const ByteView symbols = reader.bytes();
    if (counts.size() != code.lengthCounts.size() || symbols.size() != code.symbols.size())
        return false;
    std::ranges::copy(counts, code.lengthCounts.begin());
    std::ranges::copy(symbols, code.symbols.begin());
    return true;
}

Result<jpeg::Layout> readLayout(FlatReader& reader, PixelSize stored) {
    const auto colorSpace = reader.number<std::uint8_t>();
    const auto count = reader.number<std::uint8_t>();
    const bool isGrey = colorSpace == static_cast<std::uint8_t>(jpeg::ColorSpace::Grey);
    if (colorSpace > static_cast<std::uint8_t>(jpeg::ColorSpace::Grey) || count != (isGrey ? 1 : 3))
        return answerIsNonsense();
    std::vector<jpeg::SamplingFactors> factors(count);
    for (jpeg::SamplingFactors& factor : factors) {
        factor.across = reader.number<std::uint8_t>();
        factor.down = reader.number<std::uint8_t>();
        if (factor.across < 1 || factor.across > kMaxFactor || factor.down < 1 || factor.down > kMaxFactor)
            return answerIsNonsense();
    }
    return jpeg::makeLayout(stored, static_cast<jpeg::ColorSpace>(colorSpace), factors);
}

/// Whether the bytes are what the encoder makes of MCU row `index`: its restart marker, and no other.
bool isRow(ByteView row, int index) {
    if (index > 0) {
        Bytes marker;
        jpeg::appendRestartMarker(marker, static_cast<std::size_t>(index));
        if (row.size() < marker.size() || !std::ranges::equal(row.first(marker.size()), marker))
            return false;
        row = row.subspan(marker.size());
    }
    constexpr std::uint8_t kMarker = 0xFF;
    for (auto at = std::ranges::find(row, kMarker); at != row.end();
         at = std::find(at + 2, row.end(), kMarker))
        if (at + 1 == row.end() || at[1] != 0)
            return false;
    return true;
}

} // namespace

Bytes flattened(const Result<jpeg::TranscodedFile>& answer) {
    FlatWriter writer;
    writer.number(static_cast<std::uint8_t>(answer ? 1 : 0));
    if (!answer) {
        writeError(writer, answer.error());
        return writer.written();
    }
    writer.number(static_cast<std::uint8_t>(answer->layout.colorSpace));
    writer.number(static_cast<std::uint8_t>(answer->layout.components.size()));
    for (const jpeg::Component& component : answer->layout.components) {
        writer.number(static_cast<std::uint8_t>(component.blocksAcross));
        writer.number(static_cast<std::uint8_t>(component.blocksDown));
    }
    for (const auto* const codes : {&answer->tables.dc, &answer->tables.ac})
        for (const jpeg::HuffmanCode& code : *codes)
            writeCode(writer, code);
    for (const auto& row : answer->rows)
        writer.bytes(*row);
    return writer.written();
}

Result<jpeg::TranscodedFile> parsedTranscoding(ByteView bytes, PixelSize stored) {
    FlatReader reader(bytes);
    if (reader.number<std::uint8_t>() == 0)
        return readLastError(reader);
    jpeg::TranscodedFile jpeg;
    COMPLEXION_TRY(jpeg.layout, readLayout(reader, stored));
    jpeg.tables.colorSpace = jpeg.layout.colorSpace;
    for (auto* const codes : {&jpeg.tables.dc, &jpeg.tables.ac})
        for (jpeg::HuffmanCode& code : *codes)
            if (!readCode(reader, code))
                return answerIsNonsense();
    for (int index = 0; index < jpeg.layout.mcusDown; ++index) {
        const ByteView row = reader.bytes();
        if (!isRow(row, index))
            return answerIsNonsense();
        jpeg.rows.push_back(std::make_shared<const Bytes>(row.begin(), row.end()));
    }
    if (!reader.isWhole())
        return answerIsNonsense();
    COMPLEXION_TRY(jpeg.header, jpeg::makeTranscodedHeader(jpeg.layout, stored.height, {}, jpeg.tables));
    return jpeg;
}

} // namespace complexion
