// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/png_chunks.h"

#include <optional>
#include <string>
#include <vector>

namespace complexion::png {

/// The contents of a tEXt, zTXt or iTXt chunk (PNG 1.2 section 4.2.3).
struct Text {
    std::string keyword;
    /// Latin 1 from tEXt and zTXt, UTF-8 from iTXt.
    std::string text;
    bool isUtf8 = false;
};

/// Maximum total size in bytes of a file's compressed texts, once inflated.
inline constexpr std::size_t kMaxInflatedText = std::size_t{16} << 20;

/// Reads a text chunk. Nothing for other and for damaged chunks. Deducts a compressed text's size from
/// `budget`; a text that exceeds it is not read.
std::optional<Text> readText(const Chunk& chunk, std::size_t& budget);

/// Builds an uncompressed chunk: tEXt for ASCII, otherwise iTXt.
Bytes textChunk(std::string_view keyword, std::string_view utf8);
Bytes internationalTextChunk(std::string_view keyword, std::string_view utf8);

/// A profile (EXIF, XMP, IPTC …) that older software stores as a text of hexadecimal digits.
struct RawProfile {
    /// "exif", "xmp", "iptc", "8bim", "icc" …; "APP1" is EXIF or XMP as in a JPEG file, with its signature.
    std::string kind;
    Bytes bytes;

    bool isExif() const;
    bool isXmp() const;
};

/// Reads a raw profile. Nothing for other texts.
std::optional<RawProfile> rawProfile(const Text& text);
Bytes rawProfileChunk(std::string_view kind, ByteView profile);

/// The EXIF block of a PNG file: from its eXIf chunk, otherwise from the first raw profile. Empty if there is
/// no valid one.
Bytes exif(const std::vector<Chunk>& chunks);

} // namespace complexion::png
