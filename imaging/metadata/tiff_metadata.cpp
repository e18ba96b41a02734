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

namespace complexion::tiff {

namespace {

// The largest gap before a maker note that keeps its offset.
constexpr std::uint64_t kMaxHole = 65'536;

constexpr std::array<std::pair<std::string_view, unsigned>, 5> kNoteTags = {{
    {"Description", tag::kImageDescription},
    {kCommentKeyword, tag::kImageDescription},
    {"Author", tag::kArtist},
    {"Copyright", tag::kCopyright},
    {"Software", tag::kSoftware},
}};

void remove(Directory& directory, unsigned unwanted) {
    std::erase_if(directory.entries, [unwanted](const Entry& entry) { return entry.tag == unwanted; });
}

/// Removes the entry from the directory and returns it.
Bytes taken(Directory& directory, unsigned wanted) {
    const Entry* entry = directory.find(wanted);
    Bytes value = entry ? entry->value : Bytes();
    remove(directory, wanted);
    return value;
}

void replaceValue(Directory& directory, unsigned wanted, Bytes (*carried)(ByteView)) {
    for (Entry& entry : directory.entries) {
        if (entry.tag != wanted)
            continue;
        Bytes value = carried(entry.value);
        if (value != entry.value)
            entry = entryOfBytes(wanted, type::kByte, value);
    }
}

/// The entry with its numbers byte-swapped.
Entry turned(Entry entry) {
    const bool isRational = entry.type == type::kRational || entry.type == type::kSignedRational;
    const std::size_t unit = isRational ? 4 : typeLength(entry.type);
    for (std::size_t i = 0; i + unit <= entry.value.size(); i += unit)
        std::reverse(entry.value.begin() + static_cast<std::ptrdiff_t>(i),
                     entry.value.begin() + static_cast<std::ptrdiff_t>(i + unit));
    return entry;
}

/// Whether samples have more than one byte and thus the file's byte order.
bool hasWideSamples(const Directory& directory, ByteOrder order) {
    const Entry* bits = directory.find(tag::kBitsPerSample);
    const std::vector<std::uint64_t> numbers = bits ? allNumbers(*bits, order) : std::vector<std::uint64_t>();
    return std::ranges::any_of(numbers, [](std::uint64_t count) { return count > 8; });
}

/// The strips or tiles of a file. Of a file's start they follow it and have no bytes here.
struct Strips {
    unsigned offsetTag = 0;
    std::vector<std::uint64_t> offsets; // from where the first one begins
    std::vector<ByteView> bytes;
};

/// Nothing if they are damaged.
std::optional<Strips> stripsOf(const Directory& directory, ByteView written, const Header& header,
                               unsigned offsetTag, unsigned lengthTag) {
    const Entry* offsets = directory.find(offsetTag);
    const Entry* lengths = directory.find(lengthTag);
    if (!offsets || !lengths)
        return std::nullopt;
    const std::vector<std::uint64_t> begins = allNumbers(*offsets, header.order);
    const std::vector<std::uint64_t> counts = allNumbers(*lengths, header.order);
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
Directory merged(const Directory& written, const Directory& tags) {
    Directory result = tags;
    const bool hasResolution = tags.find(tag::kXResolution) || tags.find(tag::kYResolution);
    for (const Entry& entry : written.entries) {
        const bool isResolution = entry.tag == tag::kXResolution || entry.tag == tag::kYResolution ||
                                  entry.tag == tag::kResolutionUnit;
        if (!(isResolution && hasResolution) && !tags.find(entry.tag))
            result.entries.push_back(entry);
    }
    return result;
}

bool hasDistantNote(const Directory& tags) {
    const Entry* const note = exif::makerNoteOf(tags);
    return note && note->valueOffset > kMaxHole;
}

bool areStripsFirst(const exif::CarriedTags& tags, const Strips& strips) {
    return !strips.bytes.empty() && hasDistantNote(tags.directory);
}

/// The file up to its strips, which begin at `stripsAt`: a number that takes as much room as any other. The
/// whole file, with the strips first, where they fill the room before a distant maker note.
Bytes startOf(const exif::CarriedTags& tags, const Directory& coding, const Header& header,
              std::size_t writtenLength, const Strips& strips, std::uint64_t stripsAt) {
    // The maker note and private values are only meaningful in the source's byte order.
    Layout layout(tags.order, header.isBig);
    if (const Entry* note = exif::makerNoteOf(tags.directory);
        note && note->valueOffset <= writtenLength + kMaxHole && note->value.size() > header.offsetLength())
        layout.placeAt(note->valueOffset, note->value);
    std::vector<std::uint64_t> places = strips.offsets;
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = areStripsFirst(tags, strips) ? layout.place(strips.bytes[i]) : places[i] + stripsAt;
    Directory directory = coding;
    remove(directory, strips.offsetTag);
    directory.entries.push_back(
        entryOfNumbers(strips.offsetTag, header.isBig ? type::kLong8 : type::kLong, places, header.order));
    if (tags.order != header.order)
        std::ranges::transform(directory.entries, directory.entries.begin(), turned);
    const Directory all =
        merged(directory, header.isBig ? tags.directory : exif::withoutBigValues(tags.directory));
    Bytes bytes = layout.finish(layout.placeDirectory(all));
    bytes.resize((bytes.size() + 1) / 2 * 2); // what follows begins at an even offset
    return bytes;
}

Result<FileContents> withTags(const exif::CarriedTags& tags, ByteView written) {
    const auto header = readHeader(written);
    if (!header)
        return Error{"not a TIFF file"};
    const Directory directory = readDirectory(written, *header, header->firstDirectory);
    if (tags.order != header->order && hasWideSamples(directory, header->order))
        return Error{"the samples' byte order is not the metadata's"};
    std::optional<Strips> strips =
        stripsOf(directory, written, *header, tag::kStripOffsets, tag::kStripByteCounts);
    if (!strips)
        strips = stripsOf(directory, written, *header, tag::kTileOffsets, tag::kTileByteCounts);
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
void addNotes(exif::CarriedTags& tags, const std::vector<TextNote>& notes) {
    for (const auto& [keyword, noteTag] : kNoteTags)
        for (const TextNote& note : notes)
            if (note.keyword == keyword && !tags.directory.find(noteTag)) {
                Bytes text(note.text.begin(), note.text.end());
                text.push_back(0);
                tags.directory.entries.push_back(entryOfBytes(noteTag, type::kAscii, text));
            }
}

} // namespace

bool needsStripsForMakerNote(ByteView source) {
    return hasDistantNote(exif::carriedTags(source).directory);
}

PictureMetadata readMetadata(ByteView file) {
    PictureMetadata metadata;
    exif::CarriedTags tags = exif::carriedTags(file);
    metadata.resolution = resolutionOf(tags.directory, tags.order);
    metadata.xmp = xmp::inUtf8(taken(tags.directory, tag::kXmp));
    const Bytes resources = taken(tags.directory, tag::kPhotoshop);
    metadata.photoshop = photoshop::withoutIptc(resources);
    metadata.iptc = taken(tags.directory, tag::kIptc);
    if (metadata.iptc.empty())
        metadata.iptc = photoshop::iptcOf(resources);
    metadata.exif = exif::blockOf(tags);
    return metadata;
}

Bytes exifFor(const PictureMetadata& metadata) {
    return exif::blockOf(exif::carriedTags(metadata.exif));
}

Result<FileContents> withTagsOf(ByteView source, ByteView written) {
    exif::CarriedTags tags = exif::carriedTags(source);
    replaceValue(tags.directory, tag::kXmp, xmp::toCarry);
    replaceValue(tags.directory, tag::kPhotoshop, photoshop::resourcesToCarry);
    replaceValue(tags.directory, tag::kIptc, photoshop::iptcToCarry);
    return withTags(tags, written);
}

Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written) {
    exif::CarriedTags tags = exif::carriedTags(metadata.exif);
    if (metadata.exif.empty())
        if (const auto header = readHeader(written))
            tags.order = header->order;
    const auto add = [&tags](unsigned number, unsigned valueType, const Bytes& value) {
        remove(tags.directory, number);
        if (!value.empty())
            tags.directory.entries.push_back(entryOfBytes(number, valueType, value));
    };
    add(tag::kXmp, type::kByte, xmp::toCarry(metadata.xmp));
    add(tag::kIptc, type::kByte, photoshop::iptcToCarry(metadata.iptc));
    add(tag::kPhotoshop, type::kByte, photoshop::resourcesToCarry(metadata.photoshop));
    if (metadata.resolution)
        setResolution(tags.directory, tags.order, *metadata.resolution);
    addNotes(tags, metadata.notes);
    return withTags(tags, written);
}

} // namespace complexion::tiff
