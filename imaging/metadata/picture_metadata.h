// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace complexion {

/// How densely pixels lie, in the units that files state it in.
struct Resolution {
    enum class Unit { None, Inch, Centimetre };

    double across = 0;
    double down = 0;
    /// None: only the shape of a pixel is told.
    Unit unit = Unit::None;

    bool operator==(const Resolution&) const = default;
};

/// A density as it stands in files that count whole pixels per metre; without a unit, the bare number.
std::uint32_t pixelsPerMetre(double density, Resolution::Unit unit);
/// The other way round.
Resolution resolutionOfPixelsPerMetre(std::uint32_t across, std::uint32_t down);

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
