// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/afcp_trailer.h"

#include "imaging/containers/byte_order.h"
#include "imaging/metadata/trailer_blocks.h"

#include <optional>
#include <string_view>
#include <vector>

namespace complexion::jpeg {

namespace {

using namespace std::string_view_literals;

// Both the start and the end have 12 bytes: "AXS!" (big-endian) or "AXS*" (little-endian), then version and
// number of entries (16 bits each) or the offset of the start; the rest is reserved.
constexpr std::string_view kSignature = "AXS"sv;
constexpr std::uint8_t kBigEndian = '!';
constexpr std::uint8_t kLittleEndian = '*';
constexpr std::size_t kFrameLength = 12;
constexpr std::size_t kCountAt = 6;
constexpr std::size_t kPlaceAt = 4; // in the end
// An entry: a name of four letters, length and offset of the block.
constexpr std::size_t kEntryLength = 12;
constexpr std::size_t kLengthAt = 4;
constexpr std::size_t kOffsetAt = 8;

struct Block {
    ByteView entry;
    ByteView bytes;
};

struct Trailer {
    ByteOrder order = ByteOrder::BigEndian;
    std::uint64_t place = 0; // of its start, as it says itself
    std::vector<Block> blocks;
};

std::optional<ByteOrder> orderOf(ByteView frame) {
    if (!startsWith(frame, kSignature) || frame.size() < kFrameLength)
        return std::nullopt;
    const std::uint8_t order = frame[kSignature.size()];
    if (order == kBigEndian)
        return ByteOrder::BigEndian;
    return order == kLittleEndian ? std::optional(ByteOrder::LittleEndian) : std::nullopt;
}

ByteView endOf(ByteView bytes) {
    return bytes.size() < kFrameLength ? ByteView() : bytes.last(kFrameLength);
}

/// Reads a trailer from its start to its end.
std::optional<Trailer> readTrailer(ByteView bytes) {
    const std::optional<ByteOrder> order = orderOf(endOf(bytes));
    if (!order || orderOf(bytes) != order || bytes.size() < 2 * kFrameLength)
        return std::nullopt;
    Trailer trailer{.order = *order, .place = numberAt(endOf(bytes), kPlaceAt, 4, *order), .blocks = {}};
    const std::uint64_t count = numberAt(bytes, kCountAt, 2, *order);
    const std::uint64_t blocksAt = kFrameLength + count * kEntryLength;
    for (std::size_t i = 0; i < count; ++i) {
        const ByteView entry = slice(bytes, kFrameLength + i * kEntryLength, kEntryLength);
        if (entry.size() < kEntryLength)
            return std::nullopt;
        const std::uint64_t length = numberAt(entry, kLengthAt, 4, *order);
        const std::uint64_t offset = numberAt(entry, kOffsetAt, 4, *order);
        if (offset < trailer.place + blocksAt ||
            offset + length > trailer.place + bytes.size() - kFrameLength)
            return std::nullopt;
        trailer.blocks.push_back({entry, slice(bytes, offset - trailer.place, length)});
    }
    return trailer;
}

} // namespace

ByteView afcpTrailer(ByteView file, std::size_t pictureEnd) {
    const ByteView end = endOf(file);
    const std::optional<ByteOrder> order = orderOf(end);
    if (!order)
        return {};
    const std::uint64_t place = numberAt(end, kPlaceAt, 4, *order);
    if (place < pictureEnd || place >= file.size())
        return {};
    const ByteView trailer = file.subspan(static_cast<std::size_t>(place));
    return readTrailer(trailer) ? trailer : ByteView();
}

bool isAfcp(ByteView trailer) {
    return orderOf(endOf(trailer)).has_value();
}

Bytes afcpWithoutPictures(ByteView trailer) {
    const std::optional<Trailer> read = readTrailer(trailer);
    if (!read)
        return {};
    std::vector<Block> kept;
    for (const Block& block : read->blocks)
        if (!hasPicture(block.bytes))
            kept.push_back(block);
    if (kept.empty())
        return {};
    Bytes bytes(trailer.begin(), trailer.begin() + kFrameLength);
    setNumberAt(bytes, kCountAt, 2, read->order, kept.size());
    std::size_t offset = kFrameLength + kept.size() * kEntryLength;
    for (const Block& block : kept) {
        append(bytes, block.entry.first(kOffsetAt));
        appendNumber(bytes, 4, read->order, offset);
        offset += block.bytes.size();
    }
    for (const Block& block : kept)
        append(bytes, block.bytes);
    append(bytes, endOf(trailer));
    setNumberAt(bytes, bytes.size() - kFrameLength + kPlaceAt, 4, read->order, 0);
    return bytes;
}

void setAfcpPlace(Bytes& trailer, std::uint64_t begin) {
    const std::optional<Trailer> read = readTrailer(trailer);
    if (!read)
        return;
    for (std::size_t i = 0; i < read->blocks.size(); ++i) {
        const std::size_t at = kFrameLength + i * kEntryLength + kOffsetAt;
        setNumberAt(trailer, at, 4, read->order, numberAt(trailer, at, 4, read->order) - read->place + begin);
    }
    setNumberAt(trailer, trailer.size() - kFrameLength + kPlaceAt, 4, read->order, begin);
}

} // namespace complexion::jpeg
