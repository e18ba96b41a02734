// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/jpeg_attachments.h"

#include "imaging/containers/jpeg_segments.h"
#include "imaging/containers/tiff_structure.h"
#include "imaging/metadata/afcp_trailer.h"
#include "imaging/metadata/jpeg_xmp.h"
#include "imaging/metadata/samsung_trailer.h"
#include "imaging/metadata/xml_blanking.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace complexion::jpeg {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kIndexStart = "MPF\0"sv;
constexpr std::string_view kGainMapStart = "urn:iso:std:iso:ts:21496:-1\0"sv;
constexpr unsigned kEntriesTag = 0xB002;
constexpr std::size_t kEntryLength = 16;
constexpr std::size_t kEntrySize = 4; // offsets in an entry
constexpr std::size_t kEntryBegin = 8;
constexpr std::size_t kSegmentHead = 4; // marker and length
/// More than any phone writes. Further ones are ignored.
constexpr std::size_t kMaxAttachments = 64;

using Kind = Attachment::Kind;

std::optional<MultiPictureIndex> indexIn(ByteView file, const Segment& segment) {
    const ByteView structure = segment.payload.subspan(kIndexStart.size());
    const std::optional<tiff::Header> header = tiff::readHeader(structure);
    if (!header)
        return std::nullopt;
    const tiff::Directory directory = tiff::readDirectory(structure, *header, header->firstDirectory);
    const tiff::Entry* const entries = directory.find(kEntriesTag);
    if (!entries || entries->value.size() < kEntryLength)
        return std::nullopt;
    MultiPictureIndex index;
    index.segment = segment.whole;
    index.header = static_cast<std::size_t>(structure.data() - file.data());
    index.entriesAt = static_cast<std::size_t>(entries->valueOffset) + kSegmentHead + kIndexStart.size();
    index.isBigEndian = header->order == ByteOrder::BigEndian;
    const std::size_t end = std::min(entries->value.size(), kMaxAttachments * kEntryLength);
    for (std::size_t at = 0; at + kEntryLength <= end; at += kEntryLength) {
        const auto number = [&](std::size_t offset) {
            return numberAt(entries->value, at + offset, 4, header->order);
        };
        const std::uint64_t offset = number(kEntryBegin);
        index.entries.push_back({.attribute = static_cast<std::uint32_t>(number(0)),
                                 .begin = offset == 0 ? 0 : offset + index.header,
                                 .size = number(kEntrySize)});
    }
    return index;
}

bool isJpeg(ByteView bytes) {
    return startsWith(bytes, "\xff\xd8\xff"sv);
}

/// Whether a picture's own segments declare it a gain map: by gain map metadata, or by the type of an
/// auxiliary picture.
bool isGainMap(ByteView picture) {
    return std::ranges::any_of(split(picture).segments, [](const Segment& segment) {
        if (segment.marker == marker::app(2))
            return startsWith(segment.payload, kGainMapStart);
        const std::string_view text = textOf(segment.payload);
        return isXmpSegment(segment) && (text.find("hdrgm:GainMapM") != std::string_view::npos ||
                                         text.find("hdrgainmap") != std::string_view::npos);
    });
}

Kind kindOf(ByteView bytes) {
    if (!isJpeg(bytes))
        return bytes.size() > 8 && textOf(bytes).substr(4, 4) == "ftyp" ? Kind::Movie : Kind::Other;
    return isGainMap(bytes) ? Kind::GainMap : Kind::Preview;
}

std::optional<std::uint64_t> numberIn(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// The value of the attribute or element whose local name is `name`, next from `at` on; empty for none.
std::string_view valueOf(std::string_view xml, std::string_view name, std::size_t at = 0) {
    const std::size_t found = xml.find(name, at);
    if (found == std::string_view::npos)
        return {};
    const std::size_t begin = xml.find_first_of("\"'>", found + name.size());
    const std::size_t end = xml.find_first_of("\"'<", begin == std::string_view::npos ? begin : begin + 1);
    return end == std::string_view::npos ? std::string_view() : xml.substr(begin + 1, end - begin - 1);
}

constexpr std::string_view kItem = "Container:Item";
constexpr std::string_view kPicture = "Primary"; // the semantic of the file's own picture

/// An item of the container directory.
struct Item {
    std::string_view semantic;
    std::string_view mime;
    std::uint64_t length = 0;
    std::uint64_t padding = 0;
};

/// The items that a packet lists, in the order in which they follow the picture; the picture is one itself.
std::vector<Item> itemsOf(std::string_view xmp) {
    std::vector<Item> items;
    for (std::size_t at = 0; (at = xmp.find("<Container:Item", at)) != std::string_view::npos &&
                             items.size() < kMaxAttachments;) {
        const std::size_t end = std::min(xmp.find("<Container:Item", at + 1), xmp.size());
        const std::string_view item = xmp.substr(at, end - at);
        items.push_back({.semantic = valueOf(item, "Item:Semantic"),
                         .mime = valueOf(item, "Item:Mime"),
                         .length = numberIn(valueOf(item, "Item:Length")).value_or(0),
                         .padding = numberIn(valueOf(item, "Item:Padding")).value_or(0)});
        at = end;
    }
    return items;
}

Kind kindOf(const Item& item, ByteView bytes) {
    if (item.semantic == "GainMap" && isJpeg(bytes))
        return Kind::GainMap;
    return item.mime.starts_with("video/") ? Kind::Movie : kindOf(bytes);
}

/// The XMP properties that declare a movie, and its offset.
constexpr std::array kMovieProperties = {"GCamera:MotionPhoto"sv,
                                         "GCamera:MotionPhotoVersion"sv,
                                         "GCamera:MotionPhotoPresentationTimestampUs"sv,
                                         "Camera:MotionPhoto"sv,
                                         "Camera:MotionPhotoVersion"sv,
                                         "Camera:MotionPhotoPresentationTimestampUs"sv,
                                         "GCamera:MicroVideo"sv,
                                         "GCamera:MicroVideoVersion"sv,
                                         "GCamera:MicroVideoOffset"sv,
                                         "GCamera:MicroVideoPresentationTimestampUs"sv};

/// Replaces the number of a property in the element from `begin` to `end`.
void setNumber(std::string& xml, std::size_t begin, std::size_t end, std::string_view name,
               std::uint64_t number) {
    const std::string_view value = valueOf(std::string_view(xml).substr(0, end), name, begin);
    if (!value.empty())
        xml.replace(static_cast<std::size_t>(value.data() - xml.data()), value.size(),
                    std::to_string(number));
}

/// Sets the length of the item at `begin` to that of the kept attachment `found`, or blanks the item if it is
/// `none`.
void updateItem(std::string& xml, std::size_t begin, KeptAttachments::const_iterator found,
                KeptAttachments::const_iterator none) {
    const std::size_t end = xml::elementEnd(xml, kItem, begin);
    if (end == std::string::npos)
        return;
    const bool isPicture =
        valueOf(std::string_view(xml).substr(begin, end - begin), "Item:Semantic") == kPicture;
    if (isPicture)
        setNumber(xml, begin, end, "Item:Padding", 0);
    if (found != none)
        setNumber(xml, begin, end, "Item:Length", found->bytes->size());
    if (isPicture || found != none)
        return;
    // With the list item around it.
    const std::size_t listBegin = xml.rfind("<rdf:li", begin);
    const std::size_t listEnd = xml.find("</rdf:li>", end);
    const bool isListed = listBegin != std::string::npos && listEnd != std::string::npos;
    const std::size_t from = isListed ? listBegin : begin;
    const std::size_t to = isListed ? listEnd + "</rdf:li>"sv.size() : end;
    xml.replace(from, to - from, to - from, ' ');
}

class Collector {
public:
    Collector(ByteView file, std::size_t pictureEnd) : m_file(file), m_pictureEnd(pictureEnd) {}

    void add(const Attachment& attachment) {
        if (attachment.bytes.empty() || begin(attachment.bytes) < m_pictureEnd)
            return;
        const auto same = std::ranges::find_if(
            m_found, [&](const Attachment& other) { return begin(other.bytes) == begin(attachment.bytes); });
        if (same == m_found.end())
            m_found.push_back(attachment);
        else if (!same->item)
            same->item = attachment.item;
    }
    void addIndexed() {
        const std::optional<MultiPictureIndex> index = multiPictureIndex(m_file);
        for (std::size_t i = 0; index && i < index->entries.size(); ++i) {
            const MultiPictureEntry& entry = index->entries[i];
            const ByteView bytes = slice(m_file, entry.begin, entry.size);
            if (bytes.size() == entry.size)
                add({.kind = kindOf(bytes), .bytes = bytes, .entry = i});
        }
    }
    void addItems(std::string_view xmp) {
        std::uint64_t at = m_pictureEnd;
        const std::vector<Item> items = itemsOf(xmp);
        for (std::size_t i = 0; i < items.size(); ++i) {
            const Item& item = items[i];
            const ByteView bytes = slice(m_file, at, item.length);
            if (item.semantic != kPicture && bytes.size() == item.length)
                add({.kind = kindOf(item, bytes), .bytes = bytes, .item = i});
            at += (item.semantic == kPicture ? 0 : bytes.size()) + item.padding;
        }
        const std::optional<std::uint64_t> fromEnd = numberIn(valueOf(xmp, "MicroVideoOffset"));
        if (fromEnd && *fromEnd < m_file.size())
            add({.kind = Kind::Movie, .bytes = m_file.last(static_cast<std::size_t>(*fromEnd))});
    }
    /// Finds a movie after the picture that is not declared.
    void addMovie() {
        constexpr std::size_t kBoxHead = 4; // its length
        const ByteView rest = slice(m_file, m_pictureEnd);
        const std::size_t at = textOf(rest).find("ftyp");
        const bool hasMovie =
            std::ranges::any_of(m_found, [](const Attachment& other) { return other.kind == Kind::Movie; });
        if (!hasMovie && at != std::string_view::npos && at >= kBoxHead)
            add({.kind = Kind::Movie, .bytes = rest.subspan(at - kBoxHead)});
    }
    std::vector<Attachment> sorted() && {
        std::ranges::sort(m_found, {}, [](const Attachment& found) { return found.bytes.data(); });
        return std::move(m_found);
    }

private:
    std::size_t begin(ByteView bytes) const { return static_cast<std::size_t>(bytes.data() - m_file.data()); }

    ByteView m_file;
    std::size_t m_pictureEnd;
    std::vector<Attachment> m_found;
};

} // namespace

std::optional<MultiPictureIndex> multiPictureIndex(ByteView file) {
    for (const Segment& segment : split(file).segments)
        if (segment.marker == marker::app(2) && startsWith(segment.payload, kIndexStart))
            return indexIn(file, segment);
    return std::nullopt;
}

std::vector<Attachment> attachments(ByteView file) {
    const std::optional<std::size_t> end = pictureEnd(file);
    if (!end || *end == file.size())
        return {};
    Collector collector(file, *end);
    const Bytes xmp = xmpOf(split(file).segments);
    collector.addIndexed();
    collector.addItems(textOf(xmp));
    collector.addMovie();
    const ByteView afcp = afcpTrailer(file, *end);
    const ByteView rest = file.first(file.size() - afcp.size()).subspan(*end);
    collector.add({.kind = Kind::Trailer, .bytes = samsungTrailer(rest)});
    collector.add({.kind = Kind::Trailer, .bytes = afcp});
    return std::move(collector).sorted();
}

std::shared_ptr<const Bytes> placedBytes(const KeptAttachment& kept, std::uint64_t begin) {
    if (kept.source.kind != Kind::Trailer || !isAfcp(*kept.bytes))
        return kept.bytes;
    auto placed = std::make_shared<Bytes>(*kept.bytes);
    setAfcpPlace(*placed, begin);
    return placed;
}

std::string xmpWithAttachments(const KeptAttachments& kept, std::string_view xmp) {
    std::string xml(xmp);
    for (const std::string_view name : kMovieProperties)
        xml::blankProperty(xml, name);
    if (std::ranges::none_of(kept, [](const auto& one) { return one.source.kind == Kind::GainMap; }))
        xml::blankProperty(xml, "hdrgm:Version");
    if (std::ranges::none_of(kept, [](const auto& one) { return one.source.item.has_value(); }))
        xml::blankElements(xml, "Container:Directory");
    // Backwards, because changing an item's length moves only what follows.
    std::vector<std::size_t> places;
    for (std::size_t at = 0; (at = xml.find("<" + std::string(kItem), at)) != std::string::npos &&
                             places.size() < kMaxAttachments;
         ++at)
        places.push_back(at);
    for (std::size_t i = places.size(); i-- > 0;)
        updateItem(xml, places[i],
                   std::ranges::find_if(kept, [i](const auto& one) { return one.source.item == i; }),
                   kept.end());
    return xml;
}

Bytes multiPictureSegment(const MultiPictureIndex& source, const KeptAttachments& kept) {
    constexpr unsigned kVersionTag = 0xB000;
    constexpr unsigned kCountTag = 0xB001;
    Bytes entries;
    const ByteOrder order = source.isBigEndian ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
    const auto appendEntry = [&](std::uint32_t attribute) {
        appendNumber(entries, 4, order, attribute);
        entries.resize(entries.size() + kEntryLength - 4);
    };
    appendEntry(source.entries.front().attribute);
    for (const KeptAttachment& one : kept)
        if (one.source.entry)
            appendEntry(source.entries[*one.source.entry].attribute);
    if (entries.size() <= kEntryLength)
        return {};
    tiff::Directory directory;
    directory.entries = {
        tiff::entryOfBytes(kVersionTag, tiff::type::kUndefined, bytesOf("0100")),
        tiff::entryOfNumbers(kCountTag, tiff::type::kLong, {entries.size() / kEntryLength}, order),
        tiff::entryOfBytes(kEntriesTag, tiff::type::kUndefined, entries)};
    tiff::Layout layout(order, false);
    Bytes payload(kIndexStart.begin(), kIndexStart.end());
    append(payload, layout.finish(layout.placeDirectory(directory)));
    return jpeg::segment(marker::app(2), payload);
}

void setMultiPicturePlaces(Bytes& start, std::uint64_t pictureEnd, const KeptAttachments& kept) {
    const std::optional<MultiPictureIndex> index = multiPictureIndex(start);
    if (!index)
        return;
    const ByteOrder order = index->isBigEndian ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
    std::size_t entry = index->header - kIndexStart.size() - kSegmentHead + index->entriesAt;
    setNumberAt(start, entry + kEntrySize, 4, order, pictureEnd);
    std::uint64_t begin = pictureEnd;
    for (const KeptAttachment& one : kept) {
        if (one.source.entry) {
            entry += kEntryLength;
            setNumberAt(start, entry + kEntrySize, 4, order, one.bytes->size());
            setNumberAt(start, entry + kEntryBegin, 4, order, begin - index->header);
        }
        begin += one.bytes->size();
    }
}

} // namespace complexion::jpeg
