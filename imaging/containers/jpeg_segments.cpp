// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/jpeg_segments.h"

#include <algorithm>
#include <cstring>

namespace complexion::jpeg {

namespace {

constexpr std::uint8_t kMarkerStart = 0xff;
constexpr std::size_t kLengthFieldSize = 2;

/// Whether a marker has neither length nor payload: TEM (01) and RST0 to RST7 (D0 to D7).
bool isStandalone(std::uint8_t code) {
    return code == 0x01 || (code >= 0xd0 && code < marker::kStartOfImage);
}

/// Whether this marker ends the segments before a scan.
bool endsSegments(std::uint8_t code) {
    return code == marker::kStartOfScan || code == marker::kStartOfImage || code == marker::kEndOfImage;
}

/// The offset of the next marker's code from `position` on; the file's size if there is none. Skips what
/// belongs to no segment, as decoders do: stray bytes, fill bytes, and 0xFF followed by 0.
std::size_t nextMarkerCode(ByteView file, std::size_t position) {
    if (position >= file.size())
        return file.size();
    const std::uint8_t* const end = file.data() + file.size();
    const std::uint8_t* at = file.data() + position;
    do {
        // memchr, as a scan has megabytes without a marker.
        const void* const start = std::memchr(at, kMarkerStart, static_cast<std::size_t>(end - at));
        if (start == nullptr)
            return file.size();
        at = std::find_if(static_cast<const std::uint8_t*>(start), end,
                          [](std::uint8_t byte) { return byte != kMarkerStart; });
    } while (at != end && *at == 0);
    return static_cast<std::size_t>(at - file.data());
}

} // namespace

Segments split(ByteView file) {
    Segments jpeg;
    std::size_t position = 2;
    while (position < file.size()) {
        jpeg.rest = file.subspan(position);
        const std::size_t code = nextMarkerCode(file, position);
        if (code == file.size())
            return jpeg;
        const std::uint8_t found = file[code];
        jpeg.rest = file.subspan(code - 1);
        if (endsSegments(found))
            return jpeg;
        if (isStandalone(found)) {
            position = code + 1;
            continue;
        }
        const std::uint64_t length = numberAt(file, code + 1, kLengthFieldSize, ByteOrder::BigEndian);
        const ByteView whole = slice(file, code - 1, length + 2);
        if (length < kLengthFieldSize || whole.size() < length + 2)
            return jpeg;
        jpeg.segments.push_back({found, whole.subspan(2 + kLengthFieldSize), whole});
        position = code + 1 + length;
    }
    jpeg.rest = {};
    return jpeg;
}

Bytes segment(std::uint8_t code, ByteView payload) {
    Bytes segment = {kMarkerStart, code};
    segment.reserve(2 + kLengthFieldSize + payload.size());
    appendNumber(segment, kLengthFieldSize, ByteOrder::BigEndian, payload.size() + kLengthFieldSize);
    append(segment, payload);
    return segment;
}

bool isFrameHeader(std::uint8_t code) {
    return code >= 0xc0 && code <= 0xcf && code != 0xc4 && code != 0xc8 && code != 0xcc;
}

std::optional<PixelSize> pixelSize(ByteView file) {
    if (!startsWith(file, "\xff\xd8"))
        return std::nullopt;
    for (const Segment& segment : split(file).segments)
        if (isFrameHeader(segment.marker) && segment.payload.size() >= 5) {
            // Precision, then lines, then samples per line.
            const auto lines = static_cast<int>(numberAt(segment.payload, 1, 2, ByteOrder::BigEndian));
            const auto samples = static_cast<int>(numberAt(segment.payload, 3, 2, ByteOrder::BigEndian));
            if (lines > 0 && samples > 0)
                return PixelSize{samples, lines};
        }
    return std::nullopt;
}

std::optional<std::size_t> pictureEnd(ByteView file) {
    ByteView rest = split(file).rest;
    while (rest.size() >= 2 && rest[1] != marker::kEndOfImage) {
        // A scan's header, or tables between scans; coded data follow the former.
        const std::uint64_t length = numberAt(rest, 2, kLengthFieldSize, ByteOrder::BigEndian);
        rest = slice(rest, isStandalone(rest[1]) ? 2 : 2 + std::max<std::uint64_t>(length, kLengthFieldSize));
        std::size_t code = nextMarkerCode(rest, 0);
        while (code < rest.size() && isStandalone(rest[code]))
            code = nextMarkerCode(rest, code + 1);
        rest = code < rest.size() ? rest.subspan(code - 1) : ByteView();
    }
    if (rest.size() < 2)
        return std::nullopt;
    return static_cast<std::size_t>(rest.data() + 2 - file.data());
}

} // namespace complexion::jpeg
