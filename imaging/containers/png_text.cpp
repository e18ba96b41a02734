// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/png_text.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/inflate.h"
#include "imaging/containers/tiff_structure.h"

#include <algorithm>
#include <cctype>

namespace complexion::png {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kInternationalText = "iTXt";
constexpr std::string_view kRawProfile = "Raw profile type ";
// The signatures of EXIF and XMP segments in JPEG files, which some software keeps.
constexpr std::string_view kExifSignature = "Exif\0\0"sv;
constexpr std::string_view kXmpSignature = "http://ns.adobe.com/xap/1.0/\0"sv;

/// Inflates a text and deducts its size from `budget`. Nothing if it is damaged or exceeds the budget.
std::optional<std::string> inflatedText(ByteView compressed, std::size_t& budget) {
    const Inflated text = inflated(compressed, budget);
    budget -= std::min(budget, text.bytes.size());
    return text.isComplete ? std::optional(std::string(textOf(text.bytes))) : std::nullopt;
}

/// Takes a null-terminated string from `rest`. Nothing if there is no terminator.
std::optional<std::string_view> takeString(std::string_view& rest) {
    const std::size_t end = rest.find('\0');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view string = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    return string;
}

std::optional<Text> compressedText(std::string_view keyword, std::string_view stream, bool isUtf8,
                                   std::size_t& budget) {
    auto text = inflatedText(bytesOf(stream), budget);
    if (!text)
        return std::nullopt;
    return Text{std::string(keyword), std::move(*text), isUtf8};
}

std::optional<Text> internationalText(std::string_view keyword, std::string_view rest, std::size_t& budget) {
    if (rest.size() < 2)
        return std::nullopt;
    const bool isCompressed = rest[0] != 0;
    rest.remove_prefix(2);
    if (!takeString(rest) || !takeString(rest)) // language and translated keyword
        return std::nullopt;
    if (isCompressed)
        return compressedText(keyword, rest, true, budget);
    return Text{std::string(keyword), std::string(rest), true};
}

/// Decodes the hexadecimal digits of a raw profile.
Bytes bytesOfHexDigits(std::string_view text) {
    // Skip an empty line, the kind and the length; lines of digits follow.
    for (int line = 0; line < 3; ++line) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos)
            return {};
        text.remove_prefix(end + 1);
    }
    Bytes profile;
    int high = -1;
    for (const char character : text) {
        const auto digit = static_cast<unsigned char>(std::tolower(static_cast<unsigned char>(character)));
        if (std::isxdigit(digit) == 0)
            continue;
        const int value = digit <= '9' ? digit - '0' : digit - 'a' + 10;
        if (high < 0) {
            high = value;
        } else {
            profile.push_back(static_cast<std::uint8_t>(high << 4 | value));
            high = -1;
        }
    }
    return profile;
}

/// `block` without an EXIF signature, if it is a valid EXIF block; otherwise empty.
Bytes validExif(ByteView block) {
    const ByteView exif = startsWith(block, kExifSignature) ? block.subspan(kExifSignature.size()) : block;
    return tiff::readHeader(exif) ? Bytes(exif.begin(), exif.end()) : Bytes();
}

} // namespace

std::optional<Text> readText(const Chunk& chunk, std::size_t& budget) {
    std::string_view rest = textOf(chunk.data);
    const bool isPlain = chunk.name == "tEXt";
    const bool isCompressed = chunk.name == "zTXt";
    if (!isPlain && !isCompressed && chunk.name != kInternationalText)
        return std::nullopt;
    const auto keyword = takeString(rest);
    if (!keyword || keyword->empty())
        return std::nullopt;
    if (isPlain)
        return Text{std::string(*keyword), std::string(rest), false};
    if (!isCompressed)
        return internationalText(*keyword, rest, budget);
    return rest.empty() ? std::nullopt : compressedText(*keyword, rest.substr(1), false, budget);
}

Bytes textChunk(std::string_view keyword, std::string_view utf8) {
    const bool isAscii = std::ranges::all_of(
        utf8, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
    if (!isAscii)
        return internationalTextChunk(keyword, utf8);
    Bytes data;
    append(data, bytesOf(keyword));
    data.push_back(0);
    append(data, bytesOf(utf8));
    return chunk("tEXt", data);
}

Bytes internationalTextChunk(std::string_view keyword, std::string_view utf8) {
    Bytes data;
    append(data, bytesOf(keyword));
    // The keyword's terminator, compression flag and method, and an empty language tag and translated keyword
    // (PNG 1.2 section 4.2.3.3).
    data.insert(data.end(), 5, 0);
    append(data, bytesOf(utf8));
    return chunk(kInternationalText, data);
}

bool RawProfile::isExif() const {
    return kind == "exif" || (kind == "APP1" && startsWith(bytes, kExifSignature));
}

bool RawProfile::isXmp() const {
    return kind == "xmp" || (kind == "APP1" && startsWith(bytes, kXmpSignature));
}

std::optional<RawProfile> rawProfile(const Text& text) {
    if (!text.keyword.starts_with(kRawProfile))
        return std::nullopt;
    return RawProfile{text.keyword.substr(kRawProfile.size()), bytesOfHexDigits(text.text)};
}

Bytes rawProfileChunk(std::string_view kind, ByteView profile) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr std::size_t kBytesPerLine = 36;
    std::string length = std::to_string(profile.size());
    length.insert(0, length.size() < 8 ? 8 - length.size() : 0, ' ');
    std::string text = "\n" + std::string(kind) + "\n" + length;
    for (std::size_t i = 0; i < profile.size(); ++i) {
        if (i % kBytesPerLine == 0)
            text += '\n';
        text += kDigits[profile[i] >> 4];
        text += kDigits[profile[i] & 15];
    }
    text += '\n';
    return textChunk(std::string(kRawProfile) + std::string(kind), text);
}

Bytes exif(const std::vector<Chunk>& chunks) {
    for (const Chunk& chunk : chunks)
        if (chunk.name == "eXIf")
            if (Bytes exif = validExif(chunk.data); !exif.empty())
                return exif;
    std::size_t budget = kMaxInflatedText;
    for (const Chunk& chunk : chunks) {
        if (!startsWith(chunk.data, kRawProfile))
            continue;
        if (const auto text = readText(chunk, budget))
            if (const auto profile = rawProfile(*text); profile && profile->isExif())
                if (Bytes exif = validExif(profile->bytes); !exif.empty())
                    return exif;
    }
    return {};
}

} // namespace complexion::png
