// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/jpeg_attachments.h"

#include "imaging/containers/jpeg_segments.h"
#include "imaging/containers/tiff_structure.h"
#include "imaging/metadata/jpeg_xmp.h"
#include "imaging/metadata/xml_elements.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kIndexStart = "MPF\0"sv;
constexpr std::string_view kGainMapStart = "urn:iso:std:iso:ts:21496:-1\0"sv;
constexpr unsigned kEntriesTag = 0xB002;
constexpr std::size_t kEntryLength = 16;
constexpr std::size_t kSegmentHead = 4; // marker and length

using Kind = JpegAttachment::Kind;

std::optional<MultiPictureIndex> indexIn(ByteView file, const jpeg::Segment& segment) {
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
    for (std::size_t at = 0; at + kEntryLength <= entries->value.size(); at += kEntryLength) {
        const auto number = [&](std::size_t offset) {
            return numberAt(entries->value, at + offset, 4, header->order);
        };
        const std::uint64_t offset = number(8);
        index.entries.push_back({.attribute = static_cast<std::uint32_t>(number(0)),
                                 .begin = offset == 0 ? 0 : offset + index.header,
                                 .size = number(4)});
    }
    return index;
}

bool isJpeg(ByteView bytes) {
    return startsWith(bytes, "\xff\xd8\xff"sv);
}

/// By what a picture says of itself: the metadata of its gain, or the type of an auxiliary picture.
bool saysGainMap(ByteView picture) {
    return std::ranges::any_of(jpeg::split(picture).segments, [](const jpeg::Segment& segment) {
        if (segment.marker == jpeg::marker::app(2))
            return startsWith(segment.payload, kGainMapStart);
        const std::string_view text = textOf(segment.payload);
        return isXmpSegment(segment) && (text.find("hdrgm:GainMapM") != std::string_view::npos ||
                                         text.find("hdrgainmap") != std::string_view::npos);
    });
}

Kind kindOf(ByteView bytes) {
    if (!isJpeg(bytes))
        return bytes.size() > 8 && textOf(bytes).substr(4, 4) == "ftyp" ? Kind::Movie : Kind::Other;
    return saysGainMap(bytes) ? Kind::GainMap : Kind::Preview;
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
    for (std::size_t at = 0; (at = xmp.find("<Container:Item", at)) != std::string_view::npos;) {
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

class Collector {
public:
    explicit Collector(ByteView file)
        : m_file(file), m_pictureEnd(jpeg::pictureEnd(file).value_or(file.size())) {}

    void add(Kind kind, ByteView bytes) {
        const bool isBehind = !bytes.empty() && begin(bytes) >= m_pictureEnd;
        const bool isNew = std::ranges::none_of(
            m_found, [&](const JpegAttachment& other) { return begin(other.bytes) == begin(bytes); });
        if (isBehind && isNew)
            m_found.push_back({kind, bytes});
    }
    void addIndexed() {
        if (const std::optional<MultiPictureIndex> index = multiPictureIndex(m_file))
            for (const MultiPictureEntry& entry : index->entries) {
                const ByteView bytes = slice(m_file, entry.begin, entry.size);
                if (bytes.size() == entry.size)
                    add(kindOf(bytes), bytes);
            }
    }
    void addItems(std::string_view xmp) {
        std::uint64_t at = m_pictureEnd;
        for (const Item& item : itemsOf(xmp)) {
            const ByteView bytes = slice(m_file, at, item.length);
            if (item.semantic != "Primary" && bytes.size() == item.length)
                add(kindOf(item, bytes), bytes);
            at += (item.semantic == "Primary" ? 0 : bytes.size()) + item.padding;
        }
        const std::optional<std::uint64_t> fromEnd = numberIn(valueOf(xmp, "MicroVideoOffset"));
        if (fromEnd && *fromEnd < m_file.size())
            add(Kind::Movie, m_file.last(static_cast<std::size_t>(*fromEnd)));
    }
    /// A movie that nothing points to begins behind the picture.
    void addMovie() {
        constexpr std::size_t kBoxHead = 4; // its length
        const ByteView rest = slice(m_file, m_pictureEnd);
        const std::size_t at = textOf(rest).find("ftyp");
        const bool hasMovie = std::ranges::any_of(
            m_found, [](const JpegAttachment& other) { return other.kind == Kind::Movie; });
        if (!hasMovie && at != std::string_view::npos && at >= kBoxHead)
            add(Kind::Movie, rest.subspan(at - kBoxHead));
    }
    std::vector<JpegAttachment> sorted() && {
        std::ranges::sort(m_found, {}, [](const JpegAttachment& found) { return found.bytes.data(); });
        return std::move(m_found);
    }

private:
    std::size_t begin(ByteView bytes) const { return static_cast<std::size_t>(bytes.data() - m_file.data()); }

    ByteView m_file;
    std::size_t m_pictureEnd;
    std::vector<JpegAttachment> m_found;
};

} // namespace

std::optional<MultiPictureIndex> multiPictureIndex(ByteView file) {
    for (const jpeg::Segment& segment : jpeg::split(file).segments)
        if (segment.marker == jpeg::marker::app(2) && startsWith(segment.payload, kIndexStart))
            return indexIn(file, segment);
    return std::nullopt;
}

std::vector<JpegAttachment> jpegAttachments(ByteView file) {
    Collector collector(file);
    const std::optional<std::size_t> end = jpeg::pictureEnd(file);
    if (!end || *end == file.size())
        return {};
    const Bytes xmp = xmpOfJpeg(jpeg::split(file).segments);
    collector.addIndexed();
    collector.addItems(textOf(xmp));
    collector.addMovie();
    return std::move(collector).sorted();
}

} // namespace complexion
