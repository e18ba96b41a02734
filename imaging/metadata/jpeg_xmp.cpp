// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/jpeg_xmp.h"

#include "imaging/metadata/extended_xmp.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <string_view>

namespace complexion::jpeg {

namespace {

using namespace std::string_view_literals;

// XMP Specification Part 3, "JPEG": payload identifiers. The extension's is followed by its digest, its total
// length, and the offset of this piece.
constexpr std::string_view kXmpStart = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr std::string_view kExtensionStart = "http://ns.adobe.com/xmp/extension/\0"sv;
constexpr std::size_t kLengthOffset = kExtensionStart.size() + xmp::kDigestLength;
constexpr std::size_t kOffsetOffset = kLengthOffset + 4;
constexpr std::size_t kPieceOffset = kOffsetOffset + 4;
constexpr std::size_t kMaxMainBytes = 65502;
constexpr std::size_t kMaxPieceBytes = 65400;

/// The segments of the extension with this digest, sorted by offset; empty if they have gaps or overlap.
std::vector<const Segment*> piecesOf(const std::vector<Segment>& segments, std::string_view digest) {
    std::vector<const Segment*> pieces;
    for (const Segment& segment : segments)
        if (segment.marker == marker::app(1) && segment.payload.size() > kPieceOffset &&
            startsWith(segment.payload, kExtensionStart) &&
            startsWith(segment.payload.subspan(kExtensionStart.size()), digest))
            pieces.push_back(&segment);
    const auto number = [](const Segment* piece, std::size_t offset) {
        return numberAt(piece->payload, offset, 4, ByteOrder::BigEndian);
    };
    std::ranges::sort(pieces, {}, [&](const Segment* piece) { return number(piece, kOffsetOffset); });
    std::uint64_t end = 0;
    for (const Segment* piece : pieces) {
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
std::vector<const Segment*> piecesFor(const std::vector<Segment>& segments, ByteView main) {
    const std::string_view digest = xmp::extensionDigest(textOf(main));
    if (digest.size() != xmp::kDigestLength)
        return {};
    return piecesOf(segments, digest);
}

Bytes joined(const std::vector<const Segment*>& pieces) {
    Bytes extension;
    for (const Segment* piece : pieces)
        append(extension, piece->payload.subspan(kPieceOffset));
    return extension;
}

ByteView packetIn(const Segment& segment) {
    return segment.payload.subspan(kXmpStart.size());
}

Bytes mainSegment(std::string_view packet) {
    Bytes payload(kXmpStart.begin(), kXmpStart.end());
    append(payload, bytesOf(packet));
    return jpeg::segment(marker::app(1), payload);
}

/// The segments of an extension; none if it is empty.
Bytes extensionSegments(std::string_view extension) {
    Bytes segments;
    if (extension.empty() || extension.size() > UINT32_MAX)
        return segments;
    Bytes start(kExtensionStart.begin(), kExtensionStart.end());
    append(start, bytesOf(xmp::digest(extension)));
    appendNumber(start, 4, ByteOrder::BigEndian, extension.size());
    for (std::size_t offset = 0; offset < extension.size(); offset += kMaxPieceBytes) {
        Bytes payload = start;
        appendNumber(payload, 4, ByteOrder::BigEndian, offset);
        append(payload, slice(bytesOf(extension), offset, kMaxPieceBytes));
        append(segments, jpeg::segment(marker::app(1), payload));
    }
    return segments;
}

const Segment* findMain(const std::vector<Segment>& segments) {
    const auto found = std::ranges::find_if(segments, isXmpSegment);
    return found == segments.end() ? nullptr : &*found;
}

} // namespace

bool isXmpSegment(const Segment& segment) {
    return segment.marker == marker::app(1) && startsWith(segment.payload, kXmpStart);
}

Bytes xmpOf(const std::vector<Segment>& segments) {
    const Segment* segment = findMain(segments);
    if (!segment)
        return {};
    const Bytes main = xmp::inUtf8(packetIn(*segment));
    const Bytes extension = xmp::inUtf8(joined(piecesFor(segments, main)));
    if (const auto whole = xmp::joined(textOf(main), textOf(extension)))
        return {whole->begin(), whole->end()};
    return xmp::withoutExtension(main);
}

Bytes segmentsOfXmp(ByteView packet) {
    if (packet.empty())
        return {};
    if (packet.size() <= kMaxMainBytes)
        return mainSegment(textOf(packet));
    const Bytes one = xmp::withoutExtension(xmp::inUtf8(packet));
    const xmp::DividedPacket divided = xmp::divided(textOf(one), kMaxMainBytes);
    Bytes segments = mainSegment(divided.main);
    append(segments, extensionSegments(divided.extension));
    return segments;
}

Bytes CarriedXmp::changed(ByteView packet) const {
    const Bytes utf8 = xmp::inUtf8(packet);
    const std::string text = m_change(textOf(utf8));
    return text == textOf(utf8) ? xmp::toCarry(packet) : xmp::toCarry(bytesOf(text));
}

CarriedXmp::CarriedXmp(const std::vector<Segment>& segments, Change change) : m_change(std::move(change)) {
    const Segment* main = findMain(segments);
    if (!main)
        return;
    const Bytes packet = xmp::inUtf8(packetIn(*main));
    std::vector<const Segment*> pieces = piecesFor(segments, packet);
    const Bytes extension = joined(pieces);
    const Bytes newExtension = changed(extension);
    if (newExtension == extension)
        return;
    // Replaces the old digest by that of the changed extension.
    const Bytes carriedMain = changed(packet);
    std::string text(textOf(carriedMain));
    const std::string_view digest = xmp::extensionDigest(text);
    if (digest.size() != xmp::kDigestLength)
        return;
    text.replace(static_cast<std::size_t>(digest.data() - text.data()), digest.size(),
                 xmp::digest(textOf(newExtension)));
    m_replacement = text.size() <= kMaxMainBytes ? mainSegment(text) : segmentsOfXmp(bytesOf(text));
    append(m_replacement, extensionSegments(textOf(newExtension)));
    m_main = main->whole;
    m_pieces = std::move(pieces);
    std::ranges::sort(m_pieces);
}

std::optional<Bytes> CarriedXmp::carried(const Segment& segment) const {
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

} // namespace complexion::jpeg
