// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/png_chunks.h"

#include "imaging/containers/byte_order.h"

#include <isa-l/crc.h>

namespace complexion::png {

namespace {

constexpr std::size_t kNameOffset = 4;
constexpr std::size_t kNameLength = 4;

std::uint32_t crcOf(ByteView nameAndData) {
    return crc32_gzip_refl(0, nameAndData.data(), nameAndData.size());
}

/// Whether decoding needs the chunk: its type then begins with a capital letter (ISO/IEC 15948 clause 5.4).
bool isCritical(const Chunk& chunk) {
    return chunk.name[0] >= 'A' && chunk.name[0] <= 'Z';
}

bool hasValidCrc(const Chunk& chunk) {
    return big_endian::read32(chunk.whole, kDataOffset + chunk.data.size()) ==
           crcOf(chunk.whole.subspan(kNameOffset, kNameLength + chunk.data.size()));
}

} // namespace

std::optional<Chunk> chunkAt(ByteView file, std::size_t position) {
    const ByteView rest = slice(file, position);
    if (rest.size() < kChunkOverhead)
        return std::nullopt;
    const std::size_t length = big_endian::read32(rest, 0);
    if (length > rest.size() - kChunkOverhead)
        return std::nullopt;
    return Chunk{textOf(rest.subspan(kNameOffset, kNameLength)), rest.subspan(kDataOffset, length),
                 rest.first(kChunkOverhead + length)};
}

std::vector<Chunk> split(ByteView file) {
    std::vector<Chunk> chunks;
    std::size_t position = kSignature.size();
    while (const auto chunk = chunkAt(file, position)) {
        position += chunk->whole.size();
        if (isCritical(*chunk) || hasValidCrc(*chunk))
            chunks.push_back(*chunk);
        if (chunk->name == "IEND")
            break;
    }
    return chunks;
}

std::optional<ByteView> findChunk(ByteView file, std::string_view name) {
    std::size_t position = kSignature.size();
    while (const auto chunk = chunkAt(file, position)) {
        if (chunk->name == name)
            return chunk->data;
        position += chunk->whole.size();
    }
    return std::nullopt;
}

void appendChunk(Bytes& bytes, std::string_view name, ByteView data) {
    appendChunk(bytes, name, std::span(&data, 1));
}

void appendChunk(Bytes& bytes, std::string_view name, std::span<const ByteView> parts) {
    std::size_t length = 0;
    for (const ByteView part : parts)
        length += part.size();
    bytes.reserve(bytes.size() + length + kChunkOverhead);
    big_endian::append32(bytes, static_cast<std::uint32_t>(length));
    const std::size_t crcStart = bytes.size();
    append(bytes, bytesOf(name));
    for (const ByteView part : parts)
        append(bytes, part);
    big_endian::append32(bytes, crcOf(ByteView(bytes).subspan(crcStart)));
}

Bytes chunk(std::string_view name, ByteView data) {
    Bytes bytes;
    appendChunk(bytes, name, data);
    return bytes;
}

} // namespace complexion::png
