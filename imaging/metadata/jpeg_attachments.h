// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace complexion {

// What a JPEG file has behind the end of its picture, and where the file says so: the index of the
// Multi-Picture Format (CIPA DC-007), and the container directory and offsets in XMP.

/// An entry of the multi-picture index.
struct MultiPictureEntry {
    std::uint32_t attribute = 0;
    std::uint64_t begin = 0; // in the file
    std::uint64_t size = 0;
};

/// The index itself.
struct MultiPictureIndex {
    ByteView segment;          ///< that it is in, whole
    std::size_t entriesAt = 0; ///< offset of the entries in the segment
    std::size_t header = 0;    ///< offset in the file that the entries count from
    bool isBigEndian = false;
    std::vector<MultiPictureEntry> entries;
};

std::optional<MultiPictureIndex> multiPictureIndex(ByteView file);

/// A part of a file behind its picture.
struct JpegAttachment {
    enum class Kind {
        GainMap, ///< a JPEG picture: how much brighter each place is on a screen of high dynamic range
        Preview, ///< a JPEG picture of what the photo shows
        Movie,
        Other, ///< a depth map, text, a maker's data
    };
    Kind kind = Kind::Other;
    ByteView bytes;
    std::optional<std::size_t> entry = {}; ///< in the multi-picture index
    std::optional<std::size_t> item = {};  ///< in the container directory of XMP
};

/// In the file's order. Parts of which the file does not say what they are, are not among them, unless they
/// are movies.
std::vector<JpegAttachment> jpegAttachments(ByteView file);

/// Attachments that a new file gets, in their order, with what they have become.
struct KeptAttachment {
    JpegAttachment source;
    std::shared_ptr<const Bytes> bytes;
};
using KeptAttachments = std::vector<KeptAttachment>;

/// An XMP packet of the file that they come from, as it tells of these attachments alone: of those that are
/// not kept it no longer speaks, and the lengths are the new ones.
std::string xmpTellingOf(const KeptAttachments& kept, std::string_view xmp);

/// The segment of a multi-picture index of the picture that it is in and of those attachments that had an
/// entry in `source`, without their places; empty when there are none.
Bytes multiPictureSegment(const MultiPictureIndex& source, const KeptAttachments& kept);

/// Sets the places in the multi-picture index in `start`, the start of a file whose picture ends at
/// `pictureEnd` and is followed by the attachments.
void setMultiPicturePlaces(Bytes& start, std::uint64_t pictureEnd, const KeptAttachments& kept);

} // namespace complexion
