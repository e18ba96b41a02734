// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>
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
};

/// In the file's order. Parts of which the file does not say what they are, are not among them, unless they
/// are movies.
std::vector<JpegAttachment> jpegAttachments(ByteView file);

} // namespace complexion
