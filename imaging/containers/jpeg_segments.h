// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/containers/byte_order.h"

#include <optional>
#include <vector>

namespace complexion::jpeg {

/// Marker codes of ITU-T T.81, second byte.
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

/// The most that one segment holds beside its marker and its length.
inline constexpr std::size_t kMaxSegmentBytes = 65533;

/// One segment before the picture's first scan.
struct Segment {
    std::uint8_t marker = 0;
    ByteView payload;
    /// Marker, length and payload, without fill bytes before the marker.
    ByteView whole;
};

/// A JPEG file up to its first scan.
struct Segments {
    std::vector<Segment> segments;
    /// From the first scan's marker on, or from where the file stops making sense.
    ByteView rest;
};

/// Finds the segments that a decoder finds, whatever stands between them.
Segments split(ByteView file);

/// A segment's bytes; `payload` is at most kMaxSegmentBytes long.
Bytes segment(std::uint8_t marker, ByteView payload);

/// The size that the file's frame header tells, as stored.
std::optional<PixelSize> pixelSize(ByteView file);

/// Whether a marker begins a frame header: SOF0 to SOF15, without DHT, JPG and DAC.
bool isFrameHeader(std::uint8_t marker);

/// Where the picture that `file` begins with ends: behind its end-of-image marker, whatever its scans.
/// Nothing for a picture without that marker.
std::optional<std::size_t> pictureEnd(ByteView file);

} // namespace complexion::jpeg
