// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/byte_order.h"

#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// One chunk of a PNG file.
struct PngChunk {
    std::string_view name;
    ByteView data;
    /// Length, name, data and check sum.
    ByteView whole;
};

/// A PNG file's chunks up to its end, or to where it stops making sense. Ancillary chunks with a wrong check
/// sum are left out.
std::vector<PngChunk> splitPng(ByteView file);

/// A chunk's bytes.
Bytes pngChunk(std::string_view name, ByteView data);

/// The parts of a tEXt, zTXt or iTXt chunk.
struct PngText {
    std::string keyword;
    /// As the chunk's kind has it: Latin 1 for the first two, UTF-8 for the third.
    std::string text;
    bool isUtf8 = false;
};

/// As many bytes all compressed texts of a file have together: beyond this they are hostile.
inline constexpr std::size_t kMostInflatedText = std::size_t{16} << 20;

/// Nothing for other chunks and for damaged ones. A compressed text is taken from `budget`, and not read when
/// it is longer than that.
std::optional<PngText> pngText(const PngChunk& chunk, std::size_t& budget);

/// An uncompressed chunk: iTXt, or tEXt where that can hold the text.
Bytes pngTextChunk(std::string_view keyword, std::string_view utf8);
Bytes pngInternationalTextChunk(std::string_view keyword, std::string_view utf8);

/// Profiles that older software writes as text, in hexadecimal figures behind a name and a length.
Bytes bytesOfRawProfile(std::string_view text);
Bytes pngRawProfileChunk(std::string_view kind, ByteView profile);

} // namespace complexion
