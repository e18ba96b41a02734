// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/tiff_metadata.h"

#include "imaging/containers/tiff_resolution.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/metadata/photoshop_resources.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace complexion {

namespace {

// The largest gap before a maker note that keeps its offset.
constexpr std::uint64_t kMaxHole = 65'536;

constexpr std::array<std::pair<std::string_view, unsigned>, 5> kNoteTags = {{
    {"Description", tiff::tag::kImageDescription},
    {kCommentKeyword, tiff::tag::kImageDescription},
    {"Author", tiff::tag::kArtist},
    {"Copyright", tiff::tag::kCopyright},
    {"Software", tiff::tag::kSoftware},
}};

void remove(tiff::Directory& directory, unsigned unwanted) {
    std::erase_if(directory.entries, [unwanted](const tiff::Entry& entry) { return entry.tag == unwanted; });
}

/// Removes the entry from the directory and returns it.
Bytes taken(tiff::Directory& directory, unsigned wanted) {
    const tiff::Entry* entry = directory.find(wanted);
    Bytes value = entry ? entry->value : Bytes();
    remove(directory, wanted);
    return value;
}

void replaceValue(tiff::Directory& directory, unsigned wanted, Bytes (*carried)(ByteView)) {
    for (tiff::Entry& entry : directory.entries) {
        if (entry.tag != wanted)
            continue;
        Bytes value = carried(entry.value);
        if (value != entry.value)
            entry = tiff::entryOfBytes(wanted, tiff::type::kByte, value);
    }
}

/// The entry with its numbers byte-swapped.
tiff::Entry turned(tiff::Entry entry) {
    const bool isRational = entry.type == tiff::type::kRational || entry.type == tiff::type::kSignedRational;
    const std::size_t unit = isRational ? 4 : tiff::typeLength(entry.type);
    for (std::size_t i = 0; i + unit <= entry.value.size(); i += unit)
        std::reverse(entry.value.begin() + static_cast<std::ptrdiff_t>(i),
                     entry.value.begin() + static_cast<std::ptrdiff_t>(i + unit));
    return entry;
}

/// Whether samples have more than one byte and thus the file's byte order.
bool hasWideSamples(const tiff::Directory& directory, ByteOrder order) {
    const tiff::Entry* bits = directory.find(tiff::tag::kBitsPerSample);
    const std::vector<std::uint64_t> numbers =
        bits ? tiff::allNumbers(*bits, order) : std::vector<std::uint64_t>();
    return std::ranges::any_of(numbers, [](std::uint64_t count) { return count > 8; });
}

/// The strips or tiles of a file. Of a file's start they follow it and have no bytes here.
struct Strips {
    unsigned offsetTag = 0;
    std::vector<std::uint64_t> offsets; // from where the first one begins
    std::vector<ByteView> bytes;
};

/// Nothing if they are damaged.
std::optional<Strips> stripsOf(const tiff::Directory& directory, ByteView written, const tiff::Header& header,
                               unsigned offsetTag, unsigned lengthTag) {
    const tiff::Entry* offsets = directory.find(offsetTag);
    const tiff::Entry* lengths = directory.find(lengthTag);
    if (!offsets || !lengths)
        return std::nullopt;
    const std::vector<std::uint64_t> begins = tiff::allNumbers(*offsets, header.order);
    const std::vector<std::uint64_t> counts = tiff::allNumbers(*lengths, header.order);
    if (begins.empty() || begins.size() != counts.size())
        return std::nullopt;
    const bool isStart =
        std::ranges::all_of(begins, [&](std::uint64_t begin) { return begin >= written.size(); });
    Strips strips{.offsetTag = offsetTag, .offsets = {}, .bytes = {}};
    std::uint64_t total = 0;
    for (std::size_t i = 0; i < begins.size(); ++i) {
        strips.offsets.push_back(isStart ? begins[i] - written.size() : total);
        if (isStart)
            continue;
        strips.bytes.push_back(slice(written, begins[i], counts[i]));
        total += counts[i];
        if (strips.bytes.back().size() < counts[i] || total > written.size())
            return std::nullopt;
    }
    return strips;
}

/// The coding tags of `written` combined with the descriptive tags in `tags`.
tiff::Directory merged(const tiff::Directory& written, const tiff::Directory& tags) {
    tiff::Directory result = tags;
    const bool hasResolution = tags.find(tiff::tag::kXResolution) || tags.find(tiff::tag::kYResolution);
    for (const tiff::Entry& entry : written.entries) {
        const bool isResolution = entry.tag == tiff::tag::kXResolution ||
                                  entry.tag == tiff::tag::kYResolution ||
                                  entry.tag == tiff::tag::kResolutionUnit;
        if (!(isResolution && hasResolution) && !tags.find(entry.tag))
            result.entries.push_back(entry);
    }
    return result;
}

bool hasDistantNote(const tiff::Directory& tags) {
    const tiff::Entry* const note = makerNoteOf(tags);
    return note && note->valueOffset > kMaxHole;
}

bool areStripsFirst(const CarriedTags& tags, const Strips& strips) {
    return !strips.bytes.empty() && hasDistantNote(tags.directory);
}

/// The file up to its strips, which begin at `stripsAt`: a number that takes as much room as any other. The
/// whole file, with the strips first, where they fill the room before a distant maker note.
Bytes startOf(const CarriedTags& tags, const tiff::Directory& coding, const tiff::Header& header,
              std::size_t writtenLength, const Strips& strips, std::uint64_t stripsAt) {
    // The maker note and private values are only meaningful in the source's byte order.
    tiff::Layout layout(tags.order, header.isBig);
    if (const tiff::Entry* note = makerNoteOf(tags.directory);
        note && note->valueOffset <= writtenLength + kMaxHole && note->value.size() > header.offsetLength())
        layout.placeAt(note->valueOffset, note->value);
    std::vector<std::uint64_t> places = strips.offsets;
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = areStripsFirst(tags, strips) ? layout.place(strips.bytes[i]) : places[i] + stripsAt;
    tiff::Directory directory = coding;
    remove(directory, strips.offsetTag);
    directory.entries.push_back(tiff::entryOfNumbers(
        strips.offsetTag, header.isBig ? tiff::type::kLong8 : tiff::type::kLong, places, header.order));
    if (tags.order != header.order)
        std::ranges::transform(directory.entries, directory.entries.begin(), turned);
    const tiff::Directory all =
        merged(directory, header.isBig ? tags.directory : withoutBigValues(tags.directory));
    Bytes bytes = layout.finish(layout.placeDirectory(all));
    bytes.resize((bytes.size() + 1) / 2 * 2); // what follows begins at an even offset
    return bytes;
}

Result<FileContents> withTags(const CarriedTags& tags, ByteView written) {
    const auto header = tiff::readHeader(written);
    if (!header)
        return Error{"not a TIFF file"};
    const tiff::Directory directory = tiff::readDirectory(written, *header, header->firstDirectory);
    if (tags.order != header->order && hasWideSamples(directory, header->order))
        return Error{"the samples' byte order is not the metadata's"};
    std::optional<Strips> strips =
        stripsOf(directory, written, *header, tiff::tag::kStripOffsets, tiff::tag::kStripByteCounts);
    if (!strips)
        strips = stripsOf(directory, written, *header, tiff::tag::kTileOffsets, tiff::tag::kTileByteCounts);
    if (!strips)
        return Error{"the TIFF file to give metadata to is damaged"};
    const auto start = [&](std::uint64_t stripsAt) {
        return startOf(tags, directory, *header, written.size(), *strips, stripsAt);
    };
    const bool isWhole = areStripsFirst(tags, *strips);
    Bytes bytes = isWhole ? start(0) : start(start(0).size());
    for (std::size_t i = 0; i < strips->bytes.size() && !isWhole; ++i)
        append(bytes, strips->bytes[i]);
    FileContents contents;
    contents.append(std::move(bytes));
    return contents;
}

/// Stores texts in TIFF tags with the same meaning that are not set yet.
void addNotes(CarriedTags& tags, const std::vector<TextNote>& notes) {
    for (const auto& [keyword, noteTag] : kNoteTags)
        for (const TextNote& note : notes)
            if (note.keyword == keyword && !tags.directory.find(noteTag)) {
                Bytes text(note.text.begin(), note.text.end());
                text.push_back(0);
                tags.directory.entries.push_back(tiff::entryOfBytes(noteTag, tiff::type::kAscii, text));
            }
}

} // namespace

bool needsStripsForMakerNote(ByteView source) {
    return hasDistantNote(carriedTags(source).directory);
}

PictureMetadata readTiffMetadata(ByteView file) {
    PictureMetadata metadata;
    CarriedTags tags = carriedTags(file);
    metadata.resolution = tiff::resolutionOf(tags.directory, tags.order);
    metadata.xmp = xmpInUtf8(taken(tags.directory, tiff::tag::kXmp));
    const Bytes resources = taken(tags.directory, tiff::tag::kPhotoshop);
    metadata.photoshop = resourcesWithoutIptc(resources);
    metadata.iptc = taken(tags.directory, tiff::tag::kIptc);
    if (metadata.iptc.empty())
        metadata.iptc = iptcOfResources(resources);
    metadata.exif = exifBlock(tags);
    return metadata;
}

Bytes exifForTiff(const PictureMetadata& metadata) {
    return exifBlock(carriedTags(metadata.exif));
}

Result<FileContents> withTiffTagsOf(ByteView source, ByteView written) {
    CarriedTags tags = carriedTags(source);
    replaceValue(tags.directory, tiff::tag::kXmp, xmpToCarry);
    replaceValue(tags.directory, tiff::tag::kPhotoshop, resourcesToCarry);
    replaceValue(tags.directory, tiff::tag::kIptc, iptcToCarry);
    return withTags(tags, written);
}

Result<FileContents> withTiffMetadata(const PictureMetadata& metadata, ByteView written) {
    CarriedTags tags = carriedTags(metadata.exif);
    if (metadata.exif.empty())
        if (const auto header = tiff::readHeader(written))
            tags.order = header->order;
    const auto add = [&tags](unsigned number, unsigned valueType, const Bytes& value) {
        remove(tags.directory, number);
        if (!value.empty())
            tags.directory.entries.push_back(tiff::entryOfBytes(number, valueType, value));
    };
    add(tiff::tag::kXmp, tiff::type::kByte, xmpToCarry(metadata.xmp));
    add(tiff::tag::kIptc, tiff::type::kByte, iptcToCarry(metadata.iptc));
    add(tiff::tag::kPhotoshop, tiff::type::kByte, resourcesToCarry(metadata.photoshop));
    if (metadata.resolution)
        tiff::setResolution(tags.directory, tags.order, *metadata.resolution);
    addNotes(tags, metadata.notes);
    return withTags(tags, written);
}

} // namespace complexion
