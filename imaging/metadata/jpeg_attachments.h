// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace complexion::jpeg {

// Attachments of a JPEG file (data after the EOI marker of its picture) and their declarations: the index of
// the Multi-Picture Format (CIPA DC-007), and the container directory and offsets in XMP.

/// An entry of the multi-picture index.
struct MultiPictureEntry {
    std::uint32_t attribute = 0;
    std::uint64_t begin = 0; // in the file
    std::uint64_t size = 0;
};

/// The index itself.
struct MultiPictureIndex {
    ByteView segment;          ///< the whole segment that contains it
    std::size_t entriesAt = 0; ///< offset of the entries in the segment
    std::size_t header = 0;    ///< offset in the file to which offsets of entries are relative
    bool isBigEndian = false;
    std::vector<MultiPictureEntry> entries;
};

std::optional<MultiPictureIndex> multiPictureIndex(ByteView file);

/// Data after the end of a file's picture.
struct Attachment {
    enum class Kind {
        GainMap, ///< a JPEG picture: how much brighter each pixel is on an HDR display
        Preview, ///< a JPEG picture of the photo
        Movie,
        Trailer, ///< named blocks at the file's end, some of which may be pictures or movies
        Other,   ///< a depth map, text, proprietary data
    };
    Kind kind = Kind::Other;
    ByteView bytes;
    std::optional<std::size_t> entry = {}; ///< in the multi-picture index
    std::optional<std::size_t> item = {};  ///< in the container directory of XMP
};

/// The attachments in file order. Ignores data that the file does not declare, except movies and trailers of
/// known formats. The contents of a trailer may be listed separately, too.
std::vector<Attachment> attachments(ByteView file);

/// An attachment that is written to a new file, with its new content. In file order.
struct KeptAttachment {
    Attachment source;
    std::shared_ptr<const Bytes> bytes;
};
using KeptAttachments = std::vector<KeptAttachment>;

/// The bytes of the attachment at offset `begin` of the new file.
std::shared_ptr<const Bytes> placedBytes(const KeptAttachment& kept, std::uint64_t begin);

/// Returns `xmp`, the XMP packet of the attachments' file, with their new lengths and without the
/// declarations of attachments that are not kept.
std::string xmpWithAttachments(const KeptAttachments& kept, std::string_view xmp);

/// A multi-picture index segment for the primary picture and the attachments that have an entry in `source`,
/// with offsets yet to be set; empty if there are no such attachments.
Bytes multiPictureSegment(const MultiPictureIndex& source, const KeptAttachments& kept);

/// Sets the offsets and sizes in the multi-picture index in `start`, the start of a file whose picture ends
/// at `pictureEnd` and is followed by the attachments.
void setMultiPicturePlaces(Bytes& start, std::uint64_t pictureEnd, const KeptAttachments& kept);

} // namespace complexion::jpeg
