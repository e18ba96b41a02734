// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/jpeg_segments.h"

namespace complexion {

bool isXmpSegment(const jpeg::Segment& segment);

/// The XMP packet of a JPEG file in UTF-8: the main packet, merged with the extension that it refers to if
/// that is complete.
Bytes xmpOfJpeg(const std::vector<jpeg::Segment>& segments);

/// Splits a packet of any length into segments.
Bytes segmentsOfXmp(ByteView packet);

/// A file's XMP segments as they are carried to another JPEG file: byte for byte, except for thumbnails.
class CarriedJpegXmp {
public:
    explicit CarriedJpegXmp(const std::vector<jpeg::Segment>& segments);

    /// The bytes that replace `segment` in the new file; nullopt if it is not an XMP segment.
    std::optional<Bytes> carried(const jpeg::Segment& segment) const;

private:
    // Empty unless the extension changes.
    ByteView m_main;
    std::vector<const jpeg::Segment*> m_pieces; // sorted by address
    Bytes m_replacement;                        // in the main packet's place
};

} // namespace complexion
