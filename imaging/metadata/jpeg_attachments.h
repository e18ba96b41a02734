// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace complexion::jpeg {

// The data after the end of a JPEG file's picture, and their declarations: the index of the Multi-Picture
// Format (CIPA DC-007), and the container directory and offsets in XMP.

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

/// Data after the end of a file's picture.
struct Attachment {
    enum class Kind {
        GainMap, ///< a JPEG picture: how much brighter each place is on a screen of high dynamic range
        Preview, ///< a JPEG picture of what the photo shows
        Movie,
        Trailer, ///< named blocks at the file's end, of which some may be pictures or movies
        Other,   ///< a depth map, text, a maker's data
    };
    Kind kind = Kind::Other;
    ByteView bytes;
    std::optional<std::size_t> entry = {}; ///< in the multi-picture index
    std::optional<std::size_t> item = {};  ///< in the container directory of XMP
};

/// The attachments in file order. Data that the file does not declare are left out, except movies
/// and trailers of known formats. What is in a trailer may be listed on its own, too.
std::vector<Attachment> attachments(ByteView file);

/// An attachment that is written to a new file, with its new content. In file order.
struct KeptAttachment {
    Attachment source;
    std::shared_ptr<const Bytes> bytes;
};
using KeptAttachments = std::vector<KeptAttachment>;

/// The XMP packet `xmp` of the file that the attachments come from, with their new lengths and without the
/// declarations of attachments that are not kept.
std::string xmpWithAttachments(const KeptAttachments& kept, std::string_view xmp);

/// The segment of a multi-picture index of the picture that it is in and of those attachments that had an
/// entry in `source`, without their places; empty when there are none.
Bytes multiPictureSegment(const MultiPictureIndex& source, const KeptAttachments& kept);

/// Sets the places in the multi-picture index in `start`, the start of a file whose picture ends at
/// `pictureEnd` and is followed by the attachments.
void setMultiPicturePlaces(Bytes& start, std::uint64_t pictureEnd, const KeptAttachments& kept);

} // namespace complexion::jpeg
