// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/samsung_trailer.h"

#include "imaging/containers/byte_order.h"
#include "imaging/metadata/trailer_blocks.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace complexion::jpeg {

namespace {

using namespace std::string_view_literals;

// The directory is "SEFH", a version, the number of entries, and these; then its length and "SEFT". All
// numbers are little-endian.
constexpr std::string_view kDirectoryStart = "SEFH"sv;
constexpr std::string_view kTrailerEnd = "SEFT"sv;
constexpr std::size_t kEndLength = 8; // with the directory's length
constexpr std::size_t kCountAt = 8;
constexpr std::size_t kEntriesAt = 12;
constexpr std::size_t kEntryLength = 12;
constexpr std::size_t kBackAt = 4; // in an entry, behind the block's kind: distance from block to directory
constexpr std::size_t kLengthAt = 8;
/// More than any camera writes.
constexpr std::uint64_t kMaxBlocks = 256;

std::uint64_t number(ByteView bytes, std::uint64_t at) {
    return numberAt(bytes, at, 4, ByteOrder::LittleEndian);
}

struct Block {
    ByteView entry;
    ByteView bytes;
};

struct Trailer {
    ByteView directory; // without what follows its entries
    std::vector<Block> blocks;
};

std::optional<Trailer> readTrailer(ByteView file) {
    if (file.size() < kEndLength || !textOf(file).ends_with(kTrailerEnd))
        return std::nullopt;
    const std::size_t end = file.size() - kEndLength;
    const std::uint64_t length = number(file, end);
    if (length < kEntriesAt || length > end)
        return std::nullopt;
    const auto begin = static_cast<std::size_t>(end - length);
    const ByteView directory = file.subspan(begin, static_cast<std::size_t>(length));
    const std::uint64_t count = number(directory, kCountAt);
    if (!startsWith(directory, kDirectoryStart) || count > kMaxBlocks ||
        directory.size() < kEntriesAt + count * kEntryLength)
        return std::nullopt;
    Trailer trailer{.directory = directory, .blocks = {}};
    for (std::size_t i = 0; i < count; ++i) {
        const ByteView entry = directory.subspan(kEntriesAt + i * kEntryLength, kEntryLength);
        const std::uint64_t back = number(entry, kBackAt);
        const std::uint64_t size = number(entry, kLengthAt);
        if (back > begin || size > back)
            return std::nullopt;
        trailer.blocks.push_back({entry, slice(file, begin - back, size)});
    }
    return trailer;
}

} // namespace

ByteView samsungTrailer(ByteView file) {
    const std::optional<Trailer> trailer = readTrailer(file);
    if (!trailer || trailer->blocks.empty())
        return {};
    const std::uint8_t* begin = trailer->directory.data();
    for (const Block& block : trailer->blocks)
        begin = std::min(begin, block.bytes.data());
    return {begin, file.data() + file.size()};
}

Bytes withoutPictures(ByteView trailer) {
    const std::optional<Trailer> read = readTrailer(trailer);
    if (!read)
        return {};
    std::vector<Block> kept;
    std::size_t length = 0;
    for (const Block& block : read->blocks)
        if (!hasPicture(block.bytes)) {
            kept.push_back(block);
            length += block.bytes.size();
        }
    if (kept.empty())
        return {};
    Bytes bytes;
    Bytes directory(read->directory.begin(), read->directory.begin() + kCountAt);
    const auto append32 = [](Bytes& to, std::uint64_t value) {
        appendNumber(to, 4, ByteOrder::LittleEndian, value);
    };
    append32(directory, kept.size());
    for (const Block& block : kept) {
        append(directory, block.entry.first(kBackAt));
        append32(directory, length - bytes.size());
        append32(directory, block.bytes.size());
        append(bytes, block.bytes);
    }
    append(bytes, directory);
    append32(bytes, directory.size());
    append(bytes, bytesOf(kTrailerEnd));
    return bytes;
}

} // namespace complexion::jpeg
