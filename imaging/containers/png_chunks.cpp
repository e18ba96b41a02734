// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/png_chunks.h"

#include <isa-l/crc.h>

namespace complexion {

namespace {

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
    appendPngChunk(bytes, type, std::span(&data, 1));
}

void appendPngChunk(Bytes& bytes, std::uint32_t type, std::span<const ByteView> parts) {
    std::size_t length = 0;
    for (const ByteView part : parts)
        length += part.size();
    bytes.reserve(bytes.size() + length + kPngFrameSize);
    appendBigEndian(bytes, static_cast<std::uint32_t>(length));
    const std::size_t checked = bytes.size();
    appendBigEndian(bytes, type);
    for (const ByteView part : parts)
        bytes.insert(bytes.end(), part.begin(), part.end());
    appendBigEndian(bytes, crc32_gzip_refl(0, bytes.data() + checked, bytes.size() - checked));
}

std::optional<ByteView> findPngChunk(ByteView file, std::uint32_t type) {
    std::size_t position = kPngSignature.size();
    while (position <= file.size() && file.size() - position >= kPngFrameSize) {
        const ByteView chunk = file.subspan(position);
        const std::size_t length = bigEndian(chunk);
        if (length > chunk.size() - kPngFrameSize)
            break;
        if (bigEndian(chunk.subspan(kPngTypeOffset)) == type)
            return chunk.subspan(kPngDataOffset, length);
        position += kPngFrameSize + length;
    }
    return std::nullopt;
}

} // namespace complexion
