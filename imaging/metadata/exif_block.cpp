// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/exif_block.h"

#include "imaging/containers/tiff_resolution.h"

#include <algorithm>
#include <array>
#include <utility>

namespace complexion::exif {

namespace {

/// Ranges (first and last) of tags that are not carried. Sources: TIFF 6.0 and its technical notes, TIFF/EP,
/// TIFF/IT, DNG 1.6 and the registered private tags.
constexpr std::array<std::pair<unsigned, unsigned>, 29> kCodingTags = {{
    {254, 266},     // kind of picture, size, depth, compression, colour model, thresholds, bit order
    {273, 273},     // strip offsets
    {277, 281},     // samples, rows per strip, strip byte counts, minimum and maximum value
    {284, 284},     // planar configuration
    {288, 293},     // free space, grey response, fax coding
    {297, 297},     // page number
    {300, 301},     // colour response, transfer function
    {317, 328},     // predictor, white point, primaries, colour map, halftones, tiles, fax errors
    {330, 330},     // subdirectories
    {332, 334},     // inks
    {336, 347},     // dot range, extra samples, sample format and range, clip path, JPEG tables
    {351, 351},     // linked versions of the picture
    {400, 405},     // fax profiles
    {433, 435},     // colour decoding
    {512, 532},     // JPEG coding of TIFF 6.0, YCbCr
    {559, 559},     // variable strip rows
    {32781, 32781}, // the full version of the picture, in another file
    {32995, 32998}, // matte, sample type, depth, tile depth
    {33421, 33422}, // colour filter array
    {34016, 34032}, // TIFF/IT coding
    {34232, 34232}, // frame sequence
    {34675, 34675}, // colour profile
    {34732, 34732}, // image layers
    {37398, 37399}, // raw pixels
    {37439, 37439}, // HDR scale
    {37724, 37724}, // an editor's layers, which show the unretouched photo
    {50706, 50781}, // DNG: raw conversion
    {50827, 50837}, // DNG, continued
    {50840, 51125}, // DNG, continued
}};

// A maker note keeps its offset if it ends before this one, which bounds the gap that may remain before it.
constexpr std::uint64_t kMaxMakerNoteOffset = 60'000;

bool isBigType(unsigned wanted) {
    return wanted >= tiff::type::kLong8 && wanted <= tiff::type::kDirectory8;
}

void addValueLengths(const tiff::Directory& directory, std::vector<std::size_t>& lengths) {
    for (const tiff::Entry& entry : directory.entries) {
        if (entry.child)
            addValueLengths(*entry.child, lengths);
        else
            lengths.push_back(entry.value.size());
    }
}

/// The largest value length such that all values up to it, with their tables, fit into `limit` bytes.
std::size_t longestThatFits(const tiff::Directory& directory, std::size_t limit) {
    constexpr std::size_t kEntryLength = 12;
    // Header, entry counts and links; each value adds one byte for alignment to an even offset.
    constexpr std::size_t kFrame = 64;
    std::vector<std::size_t> lengths;
    addValueLengths(directory, lengths);
    std::ranges::sort(lengths);
    std::size_t total = kFrame;
    for (const std::size_t length : lengths) {
        total += kEntryLength + length + 1;
        if (total > limit)
            return length - std::min<std::size_t>(length, 1);
    }
    return limit;
}

tiff::Directory withoutLongValues(const tiff::Directory& directory, std::size_t longest) {
    tiff::Directory result = directory;
    std::erase_if(result.entries, [longest](const tiff::Entry& entry) {
        return !entry.child && entry.value.size() > longest;
    });
    for (tiff::Entry& entry : result.entries)
        if (entry.child)
            entry.child = std::make_shared<const tiff::Directory>(withoutLongValues(*entry.child, longest));
    return result;
}

/// Whether image decoders and tag readers may disagree about this orientation entry.
bool isDoubtfulOrientation(const tiff::Entry& entry) {
    return entry.tag == tiff::tag::kOrientation &&
           (entry.count != 1 || (entry.type != tiff::type::kShort && entry.type != tiff::type::kLong));
}

} // namespace

bool isCodingTag(unsigned wanted) {
    return std::ranges::any_of(
        kCodingTags, [wanted](const auto& range) { return range.first <= wanted && wanted <= range.second; });
}

CarriedTags carriedTags(ByteView structure) {
    CarriedTags tags;
    const auto header = tiff::readHeader(structure);
    if (!header)
        return tags;
    tags.order = header->order;
    tags.directory = tiff::readDirectory(structure, *header, header->firstDirectory);
    std::erase_if(tags.directory.entries, [](const tiff::Entry& entry) {
        return isCodingTag(entry.tag) || isDoubtfulOrientation(entry) ||
               entry.type == tiff::type::kDirectory8 ||
               (entry.type == tiff::type::kDirectory && !entry.child);
    });
    return tags;
}

const tiff::Entry* makerNoteOf(const tiff::Directory& directory) {
    const tiff::Entry* exif = directory.find(tiff::tag::kExifDirectory);
    return exif && exif->child ? exif->child->find(tiff::tag::kMakerNote) : nullptr;
}

tiff::Directory withoutBigValues(const tiff::Directory& directory) {
    tiff::Directory result = directory;
    std::erase_if(result.entries,
                  [](const tiff::Entry& entry) { return !entry.child && isBigType(entry.type); });
    for (tiff::Entry& entry : result.entries)
        if (entry.child)
            entry.child = std::make_shared<const tiff::Directory>(withoutBigValues(*entry.child));
    return result;
}

Bytes blockOf(const CarriedTags& tags) {
    if (tags.isEmpty())
        return {};
    const tiff::Directory directory = withoutBigValues(tags.directory);
    tiff::Layout layout(tags.order, false);
    if (const tiff::Entry* note = makerNoteOf(directory);
        note && note->valueOffset + note->value.size() <= kMaxMakerNoteOffset)
        layout.placeAt(note->valueOffset, note->value);
    return layout.finish(layout.placeDirectory(directory));
}

Bytes withResolution(ByteView exif, const Resolution& resolution) {
    CarriedTags tags = carriedTags(exif);
    tiff::setResolution(tags.directory, tags.order, resolution);
    return blockOf(tags);
}

Bytes within(ByteView exif, std::size_t limit) {
    if (exif.size() <= limit)
        return {exif.begin(), exif.end()};
    CarriedTags tags;
    const auto header = tiff::readHeader(exif);
    if (!header)
        return {};
    tags.order = header->order;
    tags.directory = tiff::readDirectory(exif, *header, header->firstDirectory);
    tags.directory = withoutLongValues(tags.directory, longestThatFits(tags.directory, limit));
    Bytes block = blockOf(tags);
    if (block.size() > limit)
        block.clear();
    return block;
}

} // namespace complexion::exif
