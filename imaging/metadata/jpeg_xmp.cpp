// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/jpeg_xmp.h"

#include "imaging/metadata/extended_xmp.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

// XMP Specification Part 3, "JPEG": payload identifiers. The extension's is followed by its digest, its total
// length, and the offset of this piece.
constexpr std::string_view kXmpStart = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr std::string_view kExtensionStart = "http://ns.adobe.com/xmp/extension/\0"sv;
constexpr std::size_t kLengthOffset = kExtensionStart.size() + kXmpDigestLength;
constexpr std::size_t kOffsetOffset = kLengthOffset + 4;
constexpr std::size_t kPieceOffset = kOffsetOffset + 4;
constexpr std::size_t kMaxMainBytes = 65502;
constexpr std::size_t kMaxPieceBytes = 65400;

/// The segments of the extension with this digest, sorted by offset; empty if they have gaps or overlap.
std::vector<const jpeg::Segment*> piecesOf(const std::vector<jpeg::Segment>& segments,
                                           std::string_view digest) {
    std::vector<const jpeg::Segment*> pieces;
    for (const jpeg::Segment& segment : segments)
        if (segment.marker == jpeg::marker::app(1) && segment.payload.size() > kPieceOffset &&
            startsWith(segment.payload, kExtensionStart) &&
            startsWith(segment.payload.subspan(kExtensionStart.size()), digest))
            pieces.push_back(&segment);
    const auto number = [](const jpeg::Segment* piece, std::size_t offset) {
        return numberAt(piece->payload, offset, 4, ByteOrder::BigEndian);
    };
    std::ranges::sort(pieces, {}, [&](const jpeg::Segment* piece) { return number(piece, kOffsetOffset); });
    std::uint64_t end = 0;
    for (const jpeg::Segment* piece : pieces) {
        if (number(piece, kOffsetOffset) != end ||
            number(piece, kLengthOffset) != number(pieces.front(), kLengthOffset))
            return {};
        end += piece->payload.size() - kPieceOffset;
    }
    if (!pieces.empty() && number(pieces.front(), kLengthOffset) != end)
        return {};
    return pieces;
}

/// The pieces of the extension that the packet `main` refers to.
std::vector<const jpeg::Segment*> piecesFor(const std::vector<jpeg::Segment>& segments, ByteView main) {
    const std::string_view digest = xmpExtensionDigest(textOf(main));
    if (digest.size() != kXmpDigestLength)
        return {};
    return piecesOf(segments, digest);
}

Bytes joined(const std::vector<const jpeg::Segment*>& pieces) {
    Bytes extension;
    for (const jpeg::Segment* piece : pieces)
        append(extension, piece->payload.subspan(kPieceOffset));
    return extension;
}

ByteView packetIn(const jpeg::Segment& segment) {
    return segment.payload.subspan(kXmpStart.size());
}

Bytes mainSegment(std::string_view packet) {
    Bytes payload(kXmpStart.begin(), kXmpStart.end());
    append(payload, bytesOf(packet));
    return jpeg::segment(jpeg::marker::app(1), payload);
}

/// The segments of an extension; none if it is empty.
Bytes extensionSegments(std::string_view extension) {
    Bytes segments;
    if (extension.empty() || extension.size() > UINT32_MAX)
        return segments;
    Bytes start(kExtensionStart.begin(), kExtensionStart.end());
    append(start, bytesOf(xmpDigest(extension)));
    appendNumber(start, 4, ByteOrder::BigEndian, extension.size());
    for (std::size_t offset = 0; offset < extension.size(); offset += kMaxPieceBytes) {
        Bytes payload = start;
        appendNumber(payload, 4, ByteOrder::BigEndian, offset);
        append(payload, slice(bytesOf(extension), offset, kMaxPieceBytes));
        append(segments, jpeg::segment(jpeg::marker::app(1), payload));
    }
    return segments;
}

const jpeg::Segment* findMain(const std::vector<jpeg::Segment>& segments) {
    const auto found = std::ranges::find_if(segments, isXmpSegment);
    return found == segments.end() ? nullptr : &*found;
}

} // namespace

bool isXmpSegment(const jpeg::Segment& segment) {
    return segment.marker == jpeg::marker::app(1) && startsWith(segment.payload, kXmpStart);
}

Bytes xmpOfJpeg(const std::vector<jpeg::Segment>& segments) {
    const jpeg::Segment* segment = findMain(segments);
    if (!segment)
        return {};
    const Bytes main = xmpInUtf8(packetIn(*segment));
    const Bytes extension = xmpInUtf8(joined(piecesFor(segments, main)));
    if (const auto whole = joinedXmp(textOf(main), textOf(extension)))
        return {whole->begin(), whole->end()};
    return xmpWithoutExtension(main);
}

Bytes segmentsOfXmp(ByteView packet) {
    if (packet.empty())
        return {};
    if (packet.size() <= kMaxMainBytes)
        return mainSegment(textOf(packet));
    const Bytes one = xmpWithoutExtension(xmpInUtf8(packet));
    const DividedXmp divided = dividedXmp(textOf(one), kMaxMainBytes);
    Bytes segments = mainSegment(divided.main);
    append(segments, extensionSegments(divided.extension));
    return segments;
}

Bytes CarriedJpegXmp::changed(ByteView packet) const {
    const Bytes utf8 = xmpInUtf8(packet);
    const std::string text = m_change(textOf(utf8));
    return text == textOf(utf8) ? xmpToCarry(packet) : xmpToCarry(bytesOf(text));
}

CarriedJpegXmp::CarriedJpegXmp(const std::vector<jpeg::Segment>& segments, Change change)
    : m_change(std::move(change)) {
    const jpeg::Segment* main = findMain(segments);
    if (!main)
        return;
    const Bytes packet = xmpInUtf8(packetIn(*main));
    std::vector<const jpeg::Segment*> pieces = piecesFor(segments, packet);
    const Bytes extension = joined(pieces);
    const Bytes newExtension = changed(extension);
    if (newExtension == extension)
        return;
    // Replaces the old digest by that of the changed extension.
    const Bytes carriedMain = changed(packet);
    std::string text(textOf(carriedMain));
    const std::string_view digest = xmpExtensionDigest(text);
    if (digest.size() != kXmpDigestLength)
        return;
    text.replace(static_cast<std::size_t>(digest.data() - text.data()), digest.size(),
                 xmpDigest(textOf(newExtension)));
    m_replacement = text.size() <= kMaxMainBytes ? mainSegment(text) : segmentsOfXmp(bytesOf(text));
    append(m_replacement, extensionSegments(textOf(newExtension)));
    m_main = main->whole;
    m_pieces = std::move(pieces);
    std::ranges::sort(m_pieces);
}

std::optional<Bytes> CarriedJpegXmp::carried(const jpeg::Segment& segment) const {
    if (!m_main.empty() && segment.whole.data() == m_main.data())
        return m_replacement;
    if (std::ranges::binary_search(m_pieces, &segment))
        return Bytes();
    if (!isXmpSegment(segment))
        return std::nullopt;
    const Bytes packet = changed(packetIn(segment));
    if (std::ranges::equal(packet, packetIn(segment)))
        return Bytes(segment.whole.begin(), segment.whole.end());
    return segmentsOfXmp(packet);
}

} // namespace complexion
