// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/transcoding_answer.h"

#include "imaging/codecs/jpeg_coefficient_writer.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/reading/flat_error.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace complexion {

namespace {

constexpr int kMaxFactor = 4; // ITU-T T.81 B.2.2
/// In place of a row's length.
constexpr std::uint64_t kFailure = UINT64_MAX;
/// An error, or the layout and the codes.
constexpr std::uint64_t kMaxHead = 64 << 10;
/// A coefficient takes a code of 16 bits and up to 16 more; each byte may be stuffed.
constexpr std::size_t kMaxBlockBytes = std::size_t{2} * 4 * jpeg::kBlockArea;
constexpr std::size_t kMarkerBytes = 8; // a restart marker, and the fill bits

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
    while (!row.empty()) {
        const auto* const found =
            static_cast<const std::uint8_t*>(std::memchr(row.data(), kMarker, row.size()));
        if (found == nullptr)
            return true;
        row = row.subspan(static_cast<std::size_t>(found - row.data()) + 1);
        if (row.empty() || row.front() != 0)
            return false;
    }
    return true;
}

std::size_t maxRowBytes(const jpeg::Layout& layout) {
    std::size_t blocks = 0;
    for (const jpeg::Component& component : layout.components)
        blocks += component.blocksPerMcu();
    return kMarkerBytes + static_cast<std::size_t>(layout.mcusAcross) * blocks * kMaxBlockBytes;
}

void writeLength(ByteSink& sink, std::uint64_t length) {
    sink.append({reinterpret_cast<const std::uint8_t*>(&length), sizeof length});
}

/// A length; kFailure too where the bytes are cut.
std::uint64_t readLength(ByteSource& source) {
    std::uint64_t length = kFailure;
    Bytes bytes;
    if (source.read(sizeof length, bytes))
        std::memcpy(&length, bytes.data(), sizeof length);
    return length;
}

/// The next bytes; nothing if they are more than `max`, or cut.
std::optional<Bytes> readBytes(ByteSource& source, std::uint64_t length, std::uint64_t max) {
    if (length > max)
        return std::nullopt;
    Bytes bytes;
    bytes.reserve(static_cast<std::size_t>(length));
    return source.read(static_cast<std::size_t>(length), bytes) ? std::optional(std::move(bytes))
                                                                : std::nullopt;
}

/// What comes before the rows.
Bytes headOf(const Result<const jpeg::TranscodedFile*>& answer) {
    FlatWriter writer;
    writer.number(static_cast<std::uint8_t>(answer ? 1 : 0));
    if (!answer) {
        writeError(writer, answer.error());
        return writer.written();
    }
    const jpeg::TranscodedFile& file = **answer;
    writer.number(static_cast<std::uint8_t>(file.layout.colorSpace));
    writer.number(static_cast<std::uint8_t>(file.layout.components.size()));
    for (const jpeg::Component& component : file.layout.components) {
        writer.number(static_cast<std::uint8_t>(component.blocksAcross));
        writer.number(static_cast<std::uint8_t>(component.blocksDown));
    }
    for (const auto* const codes : {&file.tables.dc, &file.tables.ac})
        for (const jpeg::HuffmanCode& code : *codes)
            writeCode(writer, code);
    return writer.written();
}

Result<jpeg::TranscodedFile> parsedHead(ByteView head, PixelSize stored) {
    FlatReader reader(head);
    if (reader.number<std::uint8_t>() == 0)
        return readLastError(reader);
    jpeg::TranscodedFile jpeg;
    COMPLEXION_TRY(jpeg.layout, readLayout(reader, stored));
    jpeg.tables.colorSpace = jpeg.layout.colorSpace;
    for (auto* const codes : {&jpeg.tables.dc, &jpeg.tables.ac})
        for (jpeg::HuffmanCode& code : *codes)
            if (!readCode(reader, code))
                return answerIsNonsense();
    if (!reader.isWhole())
        return answerIsNonsense();
    COMPLEXION_TRY(jpeg.header, jpeg::makeTranscodedHeader(jpeg.layout, stored.height, {}, jpeg.tables));
    return jpeg;
}

} // namespace

void writeHead(const Result<const jpeg::TranscodedFile*>& answer, ByteSink& sink) {
    const Bytes head = headOf(answer);
    writeLength(sink, head.size());
    sink.append(head);
}

void writeRow(ByteView row, ByteSink& sink) {
    writeLength(sink, row.size());
    sink.append(row);
}

void writeFailure(const Error& error, ByteSink& sink) {
    writeLength(sink, kFailure);
    writeHead(error, sink);
}

Result<jpeg::TranscodedFile> readTranscoding(ByteSource& source, PixelSize stored) {
    const auto readHead = [&]() -> Result<jpeg::TranscodedFile> {
        const std::optional<Bytes> head = readBytes(source, readLength(source), kMaxHead);
        return head ? parsedHead(*head, stored) : answerIsNonsense();
    };
    COMPLEXION_TRY(jpeg::TranscodedFile jpeg, readHead());
    const std::size_t max = maxRowBytes(jpeg.layout);
    for (int index = 0; index < jpeg.layout.mcusDown; ++index) {
        const std::uint64_t length = readLength(source);
        if (length == kFailure) {
            const Result<jpeg::TranscodedFile> failure = readHead();
            return failure ? answerIsNonsense() : failure.error();
        }
        std::optional<Bytes> row = readBytes(source, length, max);
        if (!row || !isRow(*row, index))
            return answerIsNonsense();
        jpeg.rows.push_back(std::make_shared<const Bytes>(*std::move(row)));
    }
    if (!source.isAtEnd())
        return answerIsNonsense();
    return jpeg;
}

} // namespace complexion
