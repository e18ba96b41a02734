// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/jpeg_segments.h"

namespace complexion {

bool isXmpSegment(const jpeg::Segment& segment);

/// The XMP packet of a JPEG file in UTF-8: its main packet, and in it the extension that it names, where that
/// is whole.
Bytes xmpOfJpeg(const std::vector<jpeg::Segment>& segments);

/// The segments that hold a packet of any length in a new file.
Bytes segmentsOfXmp(ByteView packet);

/// What becomes of a file's XMP segments in another JPEG file: byte for byte the same, but for thumbnails.
class CarriedJpegXmp {
public:
    explicit CarriedJpegXmp(const std::vector<jpeg::Segment>& segments);

    /// What stands for `segment` in the new file if it is one of XMP's; nothing for others.
    std::optional<Bytes> carried(const jpeg::Segment& segment) const;

private:
    // Both empty unless the extension changes.
    ByteView m_main;
    std::vector<const jpeg::Segment*> m_pieces; // in the order of their addresses
    Bytes m_anew;                               // in the main packet's place
};

} // namespace complexion
