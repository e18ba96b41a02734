// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/containers/byte_order.h"

#include <optional>
#include <vector>

namespace complexion::jpeg {

/// Second bytes of marker codes (ITU-T T.81 table B.1).
namespace marker {
inline constexpr std::uint8_t kStartOfImage = 0xd8;
inline constexpr std::uint8_t kEndOfImage = 0xd9;
inline constexpr std::uint8_t kStartOfScan = 0xda;
inline constexpr std::uint8_t kApp0 = 0xe0;
inline constexpr std::uint8_t kComment = 0xfe;

constexpr std::uint8_t app(int number) {
    return static_cast<std::uint8_t>(kApp0 + number);
}
} // namespace marker

/// The largest payload of a segment, without marker and length, in bytes (ITU-T T.81 B.1.1.4).
inline constexpr std::size_t kMaxSegmentBytes = 65533;

/// A marker segment before the first scan.
struct Segment {
    std::uint8_t marker = 0;
    ByteView payload;
    /// Marker, length and payload, without fill bytes before the marker.
    ByteView whole;
};

/// A JPEG file up to its first scan.
struct Segments {
    std::vector<Segment> segments;
    /// The data from the first SOS marker on, or from the first damage on.
    ByteView rest;
};

/// Splits a file into the segments that decoders find, skipping stray bytes between them.
Segments split(ByteView file);

/// Builds a segment. `payload` has at most kMaxSegmentBytes bytes.
Bytes segment(std::uint8_t marker, ByteView payload);

/// The size in the frame header (ITU-T T.81 B.2.2), as stored. Nothing if there is none.
std::optional<PixelSize> pixelSize(ByteView file);

/// Whether a marker begins a frame header: SOF0 to SOF15, without DHT, JPG and DAC.
bool isFrameHeader(std::uint8_t marker);

/// Where the picture that `file` begins with ends: behind its end-of-image marker, whatever its scans.
/// Nothing for a picture without that marker.
std::optional<std::size_t> pictureEnd(ByteView file);

} // namespace complexion::jpeg
