// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/jpeg_segments.h"

#include <functional>
#include <string>
#include <string_view>

namespace complexion::jpeg {

bool isXmpSegment(const Segment& segment);

/// The XMP packet of a JPEG file in UTF-8: the main packet, merged with the extension that it refers to if
/// that is complete.
Bytes xmpOf(const std::vector<Segment>& segments);

/// Splits a packet of any length into segments.
Bytes segmentsOfXmp(ByteView packet);

/// A file's XMP segments as they are carried to another JPEG file: byte for byte, except for thumbnails
/// and the changes by `change`, which receives and returns a packet in UTF-8.
class CarriedXmp {
public:
    using Change = std::function<std::string(std::string_view packet)>;
    CarriedXmp(const std::vector<Segment>& segments, Change change);

    /// The bytes that replace `segment` in the new file; nullopt if it is not an XMP segment.
    std::optional<Bytes> carried(const Segment& segment) const;

private:
    Bytes changed(ByteView packet) const;

    Change m_change;
    // Empty unless the extension changes.
    ByteView m_main;
    std::vector<const Segment*> m_pieces; // sorted by address
    Bytes m_replacement;                  // in the main packet's place
};

} // namespace complexion::jpeg
