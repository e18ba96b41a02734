// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/png_chunks.h"

#include <optional>
#include <string>
#include <vector>

namespace complexion::png {

/// The parts of a tEXt, zTXt or iTXt chunk.
struct Text {
    std::string keyword;
    /// As the chunk's kind has it: Latin 1 for the first two, UTF-8 for the third.
    std::string text;
    bool isUtf8 = false;
};

/// Maximum length in bytes of all compressed texts of a file together, once inflated.
inline constexpr std::size_t kMaxInflatedText = std::size_t{16} << 20;

/// Nothing for other chunks and for damaged ones. A compressed text is taken from `budget`, and not read when
/// it is longer than that.
std::optional<Text> readText(const Chunk& chunk, std::size_t& budget);

/// An uncompressed chunk: iTXt, or tEXt where that can hold the text.
Bytes textChunk(std::string_view keyword, std::string_view utf8);
Bytes internationalTextChunk(std::string_view keyword, std::string_view utf8);

/// A profile (EXIF, XMP, IPTC …) that older software writes as a text, in hexadecimal digits.
struct RawProfile {
    /// "exif", "xmp", "iptc", "8bim", "icc" …; "APP1" is EXIF or XMP as in a JPEG file, with its signature.
    std::string kind;
    Bytes bytes;

    bool isExif() const;
    bool isXmp() const;
};

/// Nothing for other texts.
std::optional<RawProfile> rawProfile(const Text& text);
Bytes rawProfileChunk(std::string_view kind, ByteView profile);

/// The EXIF block of a PNG file: that of its eXIf chunk, else the first one in a raw profile; empty without a
/// sound one.
Bytes exif(const std::vector<Chunk>& chunks);

} // namespace complexion::png
