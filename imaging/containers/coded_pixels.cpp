// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/coded_pixels.h"

#include "imaging/containers/container.h"
#include "imaging/containers/png_chunks.h"
#include "imaging/containers/tiff_structure.h"

#include <algorithm>

namespace complexion {

namespace {

bool overlap(ByteView part, std::uint64_t begin, std::uint64_t length, ByteView file) {
    const auto partBegin = static_cast<std::uint64_t>(part.data() - file.data());
    return begin < partBegin + part.size() && partBegin < begin + length;
}

/// Whether the directory, a directory in it, or one of their values is within one of the parts.
bool overlapsOneOf(const std::vector<ByteView>& parts, const tiff::Directory& directory, ByteView file) {
    const auto isHit = [&](std::uint64_t begin, std::uint64_t length) {
        return std::ranges::any_of(parts, [&](ByteView part) { return overlap(part, begin, length, file); });
    };
    return isHit(directory.offset, directory.length) ||
           std::ranges::any_of(directory.entries, [&](const tiff::Entry& entry) {
               return isHit(entry.valueOffset, entry.value.size()) ||
                      (entry.child && overlapsOneOf(parts, *entry.child, file));
           });
}

std::vector<ByteView> codedTiffPixels(ByteView file) {
    const std::optional<tiff::Header> header = tiff::readHeader(file);
    if (!header)
        return {};
    const tiff::Directory directory = tiff::readDirectory(file, *header, header->firstDirectory);
    const auto numbers = [&](unsigned ofStrips, unsigned ofTiles) {
        const tiff::Entry* const strips = directory.find(ofStrips);
        const tiff::Entry* const found = strips ? strips : directory.find(ofTiles);
        return found ? tiff::allNumbers(*found, header->order) : std::vector<std::uint64_t>();
    };
    const std::vector<std::uint64_t> begins = numbers(tiff::tag::kStripOffsets, tiff::tag::kTileOffsets);
    const std::vector<std::uint64_t> lengths =
        numbers(tiff::tag::kStripByteCounts, tiff::tag::kTileByteCounts);
    std::vector<ByteView> parts;
    for (std::size_t i = 0; i < std::min(begins.size(), lengths.size()); ++i)
        if (const ByteView part = slice(file, begins[i], lengths[i]); !part.empty())
            parts.push_back(part);
    return overlapsOneOf(parts, directory, file) ? std::vector<ByteView>() : parts;
}

} // namespace

std::vector<ByteView> codedPixels(ByteView file) {
    const std::optional<Container> container = containerOf(file);
    if (container == Container::Tiff)
        return codedTiffPixels(file);
    std::vector<ByteView> parts;
    if (container == Container::Png)
        for (const png::Chunk& chunk : png::split(file))
            if (chunk.name == "IDAT")
                parts.push_back(chunk.data);
    return parts;
}

} // namespace complexion
