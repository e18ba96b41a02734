// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_chunks.h"

#include <isa-l/crc.h>

namespace complexion {

namespace {

constexpr std::size_t kFrameSize = 12; // length, type and CRC
constexpr std::size_t kDataOffset = 8;

std::uint32_t bigEndian(ByteView bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
           bytes[3];
}

} // namespace

void appendBigEndian(Bytes& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

void appendPngChunk(Bytes& bytes, std::uint32_t type, ByteView data) {
    bytes.reserve(bytes.size() + data.size() + kFrameSize);
    appendBigEndian(bytes, static_cast<std::uint32_t>(data.size()));
    const auto checked = static_cast<std::ptrdiff_t>(bytes.size());
    appendBigEndian(bytes, type);
    bytes.insert(bytes.end(), data.begin(), data.end());
    appendBigEndian(bytes, crc32_gzip_refl(0, bytes.data() + checked, data.size() + sizeof type));
}

std::optional<ByteView> findPngChunk(ByteView file, std::uint32_t type) {
    std::size_t position = kPngSignature.size();
    while (position <= file.size() && file.size() - position >= kFrameSize) {
        const ByteView chunk = file.subspan(position);
        const std::size_t length = bigEndian(chunk);
        if (length > chunk.size() - kFrameSize)
            break;
        if (bigEndian(chunk.subspan(4)) == type)
            return chunk.subspan(kDataOffset, length);
        position += kFrameSize + length;
    }
    return std::nullopt;
}

} // namespace complexion
