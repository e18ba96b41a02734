// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/exif_thumbnail.h"

#include "imaging/containers/jpeg_segments.h"
#include "imaging/containers/tiff_structure.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace complexion::exif {

namespace {

// A thumbnail's directory is the second; some cameras add one or two.
constexpr std::size_t kMaxDirectories = 8;

struct Range {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::uint64_t length() const { return end - begin; }
};

/// The linked directories of an EXIF block: the main one, the thumbnail's, rarely more.
struct Chain {
    tiff::Header header;
    std::vector<tiff::Directory> directories;
};

/// Adds the byte ranges of the directory's table, its values and, recursively, its subdirectories.
void addRanges(const tiff::Directory& directory, const tiff::Header& header, std::vector<Range>& ranges) {
    ranges.push_back({directory.offset, directory.offset + directory.length});
    for (const tiff::Entry& entry : directory.entries) {
        if (entry.child)
            addRanges(*entry.child, header, ranges);
        else if (entry.value.size() > header.offsetLength())
            ranges.push_back({entry.valueOffset, entry.valueOffset + entry.value.size()});
    }
}

bool overlaps(const Range& range, const std::vector<Range>& others) {
    return std::ranges::any_of(
        others, [&range](const Range& other) { return range.begin < other.end && other.begin < range.end; });
}

/// Whether the directory has a link to the next one. Some software omits it, so that a value occupies its
/// bytes.
bool hasLink(const tiff::Directory& directory, const tiff::Header& header) {
    std::vector<Range> values;
    addRanges(directory, header, values);
    values.erase(values.begin()); // its own table
    return !overlaps({directory.linkOffset, directory.linkOffset + header.offsetLength()}, values);
}

std::optional<Chain> readChain(ByteView exif) {
    const auto header = tiff::readHeader(exif);
    if (!header || header->isBig)
        return std::nullopt;
    Chain chain{*header, {}};
    std::uint64_t offset = header->firstDirectory;
    while (offset != 0 && chain.directories.size() < kMaxDirectories) {
        const bool isKnown = std::ranges::any_of(
            chain.directories, [offset](const tiff::Directory& known) { return known.offset == offset; });
        if (isKnown)
            break;
        chain.directories.push_back(tiff::readDirectory(exif, *header, offset));
        const tiff::Directory& last = chain.directories.back();
        offset = hasLink(last, *header) ? last.next : 0;
    }
    return chain;
}

/// The byte ranges of the pictures that a directory points to, clipped to the block.
std::vector<Range> pictureRanges(const tiff::Directory& directory, ByteView exif, ByteOrder order) {
    std::vector<Range> ranges;
    const auto add = [&](unsigned offsetTag, unsigned lengthTag) {
        const tiff::Entry* offsets = directory.find(offsetTag);
        const tiff::Entry* lengths = directory.find(lengthTag);
        if (!offsets || !lengths)
            return;
        const std::vector<std::uint64_t> begins = tiff::allNumbers(*offsets, order);
        const std::vector<std::uint64_t> counts = tiff::allNumbers(*lengths, order);
        for (std::size_t i = 0; i < begins.size() && i < counts.size(); ++i)
            if (begins[i] < exif.size())
                ranges.push_back({begins[i], begins[i] + std::min(counts[i], exif.size() - begins[i])});
    };
    add(tiff::tag::kJpegOffset, tiff::tag::kJpegLength);
    add(tiff::tag::kStripOffsets, tiff::tag::kStripByteCounts);
    return ranges;
}

/// Sorts ranges and joins those that overlap or touch.
std::vector<Range> merged(std::vector<Range> ranges) {
    std::ranges::sort(ranges, [](const Range& a, const Range& b) { return a.begin < b.begin; });
    std::vector<Range> result;
    for (const Range& range : ranges) {
        if (!result.empty() && range.begin <= result.back().end)
            result.back().end = std::max(result.back().end, range.end);
        else
            result.push_back(range);
    }
    return result;
}

/// The byte ranges of the header and the first `count` directories.
std::vector<Range> keptRanges(const Chain& chain, std::size_t count) {
    std::vector<Range> ranges = {{0, chain.header.headerLength()}};
    for (std::size_t i = 0; i < count; ++i)
        addRanges(chain.directories[i], chain.header, ranges);
    return merged(std::move(ranges));
}

/// Zeroes the bytes of `pictures` that are not in `kept`, which is merged.
void blank(Bytes& exif, std::vector<Range> pictures, const std::vector<Range>& kept) {
    const auto zero = [&exif](std::uint64_t begin, std::uint64_t end) {
        if (begin < end)
            std::fill(exif.begin() + static_cast<std::ptrdiff_t>(begin),
                      exif.begin() + static_cast<std::ptrdiff_t>(end), std::uint8_t{0});
    };
    for (const Range& picture : merged(std::move(pictures))) {
        std::uint64_t position = picture.begin;
        auto other = std::ranges::partition_point(
            kept, [position](const Range& range) { return range.end <= position; });
        for (; other != kept.end() && other->begin < picture.end; ++other) {
            zero(position, other->begin);
            position = std::max(position, other->end);
        }
        zero(position, picture.end);
    }
}

void blankPictures(Bytes& exif, const Chain& chain, std::size_t firstDirectory,
                   const std::vector<Range>& kept) {
    for (std::size_t i = firstDirectory; i < chain.directories.size(); ++i)
        blank(exif, pictureRanges(chain.directories[i], exif, chain.header.order), kept);
}

/// Ends the chain after `directory`.
void unlinkNext(Bytes& exif, const Chain& chain, const tiff::Directory& directory) {
    const std::size_t length = chain.header.offsetLength();
    if (directory.linkOffset != 0 && directory.linkOffset + length <= exif.size() &&
        hasLink(directory, chain.header))
        setNumberAt(exif, directory.linkOffset, length, chain.header.order, 0);
}

/// Overwrites a single number stored inline in its entry.
void setNumber(Bytes& exif, const tiff::Entry& entry, ByteOrder order, std::uint64_t number) {
    setNumberAt(exif, entry.valueOffset, tiff::typeLength(entry.type), order, number);
}

bool isSingleNumber(const tiff::Entry* entry, std::uint64_t largest) {
    if (!entry || entry->count != 1)
        return false;
    return entry->type == tiff::type::kLong || (entry->type == tiff::type::kShort && largest <= UINT16_MAX);
}

/// Removes the picture that the main directory points to, which shows the unretouched photo too.
void removeMainPicture(Bytes& exif, const Chain& chain, const std::vector<Range>& kept) {
    const tiff::Directory& main = chain.directories.front();
    const std::vector<Range> pictures = pictureRanges(main, exif, chain.header.order);
    if (pictures.empty())
        return;
    blank(exif, pictures, kept);
    if (const tiff::Entry* length = main.find(tiff::tag::kJpegLength); isSingleNumber(length, 0))
        setNumber(exif, *length, chain.header.order, 0);
}

bool isThumbnailSize(PixelSize size) {
    return size.area() > 0 && std::max(size.width, size.height) <= kMaxThumbnailSide;
}

/// A JPEG file that a directory refers to.
struct JpegThumbnail {
    const tiff::Entry* offset;
    const tiff::Entry* length;
    Range place; // may end beyond the block
    PixelSize size;
};

/// The thumbnail in the second directory. Its entries can hold numbers up to `largest`.
std::optional<JpegThumbnail> findJpegThumbnail(ByteView exif, const Chain& chain, std::uint64_t largest) {
    if (chain.directories.size() < 2)
        return std::nullopt;
    const tiff::Directory& directory = chain.directories[1];
    JpegThumbnail found{.offset = directory.find(tiff::tag::kJpegOffset),
                        .length = directory.find(tiff::tag::kJpegLength),
                        .place = {},
                        .size = {}};
    if (!isSingleNumber(found.offset, largest) || !isSingleNumber(found.length, largest))
        return std::nullopt;
    found.place.begin = tiff::firstNumber(*found.offset, chain.header.order);
    found.place.end = found.place.begin + tiff::firstNumber(*found.length, chain.header.order);
    const auto size = jpeg::pixelSize(slice(exif, found.place.begin, found.place.length()));
    if (!size || !isThumbnailSize(*size))
        return std::nullopt;
    found.size = *size;
    return found;
}

/// Replaces a JPEG thumbnail; false if there is none or the new one does not fit.
bool putJpegThumbnail(Bytes& exif, const Chain& chain, ThumbnailMaker& maker, std::size_t lengthLimit,
                      const std::vector<Range>& kept) {
    const auto found = findJpegThumbnail(exif, chain, lengthLimit);
    if (!found)
        return false;
    const ByteOrder order = chain.header.order;
    const Range& old = found->place;

    // In some cameras' files the thumbnail overlaps the maker note, or ends beyond the block.
    const bool hasOwnPlace = old.end <= exif.size() && !overlaps(old, kept);
    Bytes thumbnail = hasOwnPlace ? maker.jpeg(found->size, old.length()) : Bytes();
    if (thumbnail.empty() && lengthLimit > exif.size())
        thumbnail = maker.jpeg(found->size, lengthLimit - exif.size());
    if (thumbnail.empty())
        return false;
    blank(exif, {{old.begin, std::min<std::uint64_t>(old.end, exif.size())}}, kept);
    setNumber(exif, *found->length, order, thumbnail.size());
    if (hasOwnPlace && thumbnail.size() <= old.length()) {
        std::ranges::copy(thumbnail, exif.begin() + static_cast<std::ptrdiff_t>(old.begin));
    } else {
        setNumber(exif, *found->offset, order, exif.size());
        append(exif, thumbnail);
    }
    return true;
}

/// The size of an uncompressed RGB thumbnail; nullopt for other kinds.
std::optional<PixelSize> rgbThumbnailSize(const tiff::Directory& directory, ByteOrder order) {
    constexpr std::uint64_t kUncompressed = 1;
    constexpr std::uint64_t kRgb = 2;
    const auto number = [&](unsigned wanted, std::uint64_t fallback) {
        const tiff::Entry* entry = directory.find(wanted);
        return entry ? tiff::firstNumber(*entry, order) : fallback;
    };
    const tiff::Entry* bits = directory.find(tiff::tag::kBitsPerSample);
    const bool isRgb = number(tiff::tag::kCompression, 0) == kUncompressed &&
                       number(tiff::tag::kPhotometricInterpretation, 0) == kRgb &&
                       number(tiff::tag::kPlanarConfiguration, 1) == 1 && bits &&
                       tiff::allNumbers(*bits, order) == std::vector<std::uint64_t>{8, 8, 8};
    const std::uint64_t width = number(tiff::tag::kImageWidth, 0);
    const std::uint64_t height = number(tiff::tag::kImageLength, 0);
    if (!isRgb || width > kMaxThumbnailSide || height > kMaxThumbnailSide)
        return std::nullopt;
    const PixelSize size{static_cast<int>(width), static_cast<int>(height)};
    return isThumbnailSize(size) ? std::optional(size) : std::nullopt;
}

/// Replaces an uncompressed RGB thumbnail in one strip; false if there is none.
bool putRgbThumbnail(Bytes& exif, const Chain& chain, ThumbnailMaker& maker, const std::vector<Range>& kept) {
    const tiff::Directory& directory = chain.directories[1];
    const auto size = rgbThumbnailSize(directory, chain.header.order);
    const std::vector<Range> strips = pictureRanges(directory, exif, chain.header.order);
    if (!size || strips.size() != 1 ||
        strips.front().length() != 3 * static_cast<std::uint64_t>(size->area()) ||
        overlaps(strips.front(), kept))
        return false;
    const std::vector<RGBA32> pixels = maker.pixels(*size);
    auto out = exif.begin() + static_cast<std::ptrdiff_t>(strips.front().begin);
    for (const RGBA32 pixel : pixels)
        for (const std::uint8_t component : {pixel.red(), pixel.green(), pixel.blue()})
            *out++ = component;
    return !pixels.empty();
}

} // namespace

ByteView jpegThumbnail(ByteView exif) {
    const auto chain = readChain(exif);
    const auto found = chain ? findJpegThumbnail(exif, *chain, exif.size()) : std::nullopt;
    return found ? slice(exif, found->place.begin, found->place.length()) : ByteView();
}

void removeThumbnail(Bytes& exif) {
    const auto chain = readChain(exif);
    if (!chain || chain->directories.empty())
        return;
    const std::vector<Range> kept = keptRanges(*chain, 1);
    removeMainPicture(exif, *chain, kept);
    blankPictures(exif, *chain, 1, kept);
    unlinkNext(exif, *chain, chain->directories.front());
}

void renewThumbnail(Bytes& exif, ThumbnailMaker& maker, std::size_t lengthLimit) {
    const auto chain = readChain(exif);
    if (!chain || chain->directories.size() < 2)
        return removeThumbnail(exif);
    const std::vector<Range> kept = keptRanges(*chain, 2);
    if (!putJpegThumbnail(exif, *chain, maker, lengthLimit, kept) &&
        !putRgbThumbnail(exif, *chain, maker, kept))
        return removeThumbnail(exif);
    removeMainPicture(exif, *chain, kept);
    blankPictures(exif, *chain, 2, kept);
    unlinkNext(exif, *chain, chain->directories[1]);
}

} // namespace complexion::exif
