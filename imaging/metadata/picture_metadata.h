// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/containers/resolution.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace complexion {

/// A text with its PNG keyword ("Comment", "Author" …), in UTF-8.
struct TextNote {
    std::string keyword;
    std::string text;
    bool operator==(const TextNote&) const = default;
};

inline constexpr std::string_view kCommentKeyword = "Comment";

/// The note for formats without keywords: "Author: …", or only the text of a comment.
std::string noteAsComment(const TextNote& note);

/// Metadata independent of the file format, for carrying it from one format to another.
struct PictureMetadata {
    /// A TIFF structure (from "II" or "MM" on) without pixels.
    Bytes exif;
    /// An XMP packet in UTF-8.
    Bytes xmp;
    /// IPTC-IIM records.
    Bytes iptc;
    /// Photoshop image resources other than IPTC records.
    Bytes photoshop;
    std::vector<TextNote> notes;
    std::optional<Resolution> resolution;
};

} // namespace complexion
