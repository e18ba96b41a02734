// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/containers/resolution.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace complexion {

/// A text with the keyword that a PNG file gives it ("Comment", "Author" …), in UTF-8.
struct TextNote {
    std::string keyword;
    std::string text;
    bool operator==(const TextNote&) const = default;
};

inline constexpr std::string_view kCommentKeyword = "Comment";

/// The note for formats whose texts have no keywords: "Author: …"; a comment is its bare text.
std::string noteAsComment(const TextNote& note);

/// The metadata of a picture apart from the format of the file it stood in: what crosses from one format to
/// another.
struct PictureMetadata {
    /// A TIFF structure ("II" or "MM" onward) without pixels.
    Bytes exif;
    /// An XMP packet in UTF-8.
    Bytes xmp;
    /// Records of the IPTC's information interchange model.
    Bytes iptc;
    /// Photoshop's image resources other than IPTC records.
    Bytes photoshop;
    std::vector<TextNote> notes;
    std::optional<Resolution> resolution;
};

} // namespace complexion
