// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/png_structure.h"

#include "imaging/containers/inflate.h"
#include "imaging/containers/png_chunks.h"

#include <algorithm>
#include <cctype>

#include <zlib.h>

namespace complexion {

namespace {

constexpr std::string_view kInternationalText = "iTXt";

std::uint32_t checkSum(ByteView bytes) {
    return static_cast<std::uint32_t>(crc32_z(0, bytes.data(), bytes.size()));
}

/// The text of a zlib stream; nothing when it is damaged or longer than `budget`, which it is taken from.
std::optional<std::string> inflatedText(ByteView compressed, std::size_t& budget) {
    const Inflated text = inflated(compressed, budget);
    budget -= std::min(budget, text.bytes.size());
    return text.isWhole ? std::optional(std::string(textOf(text.bytes))) : std::nullopt;
}

/// Takes what stands before the next zero, and the zero; nothing when there is none.
std::optional<std::string_view> takenWord(std::string_view& rest) {
    const std::size_t end = rest.find('\0');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view word = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    return word;
}

std::optional<PngText> compressedText(std::string_view keyword, std::string_view stream, bool isUtf8,
                                      std::size_t& budget) {
    auto text = inflatedText(bytesOf(stream), budget);
    if (!text)
        return std::nullopt;
    return PngText{std::string(keyword), std::move(*text), isUtf8};
}

std::optional<PngText> internationalText(std::string_view keyword, std::string_view rest,
                                         std::size_t& budget) {
    if (rest.size() < 2)
        return std::nullopt;
    const bool isCompressed = rest[0] != 0;
    rest.remove_prefix(2);
    if (!takenWord(rest) || !takenWord(rest)) // language and translated keyword
        return std::nullopt;
    if (isCompressed)
        return compressedText(keyword, rest, true, budget);
    return PngText{std::string(keyword), std::string(rest), true};
}

} // namespace

std::vector<PngChunk> splitPng(ByteView file) {
    std::vector<PngChunk> chunks;
    std::uint64_t position = kPngSignature.size();
    while (position + kPngFrameSize <= file.size()) {
        const std::uint64_t length = numberAt(file, position, 4, ByteOrder::BigEndian);
        const ByteView whole = slice(file, position, length + kPngFrameSize);
        if (whole.size() < length + kPngFrameSize)
            break;
        const PngChunk chunk{textOf(whole.subspan(kPngTypeOffset, 4)), whole.subspan(kPngDataOffset, length),
                             whole};
        position += whole.size();
        const bool isCritical = std::isupper(static_cast<unsigned char>(chunk.name[0])) != 0;
        if (isCritical || numberAt(whole, kPngDataOffset + length, 4, ByteOrder::BigEndian) ==
                              checkSum(whole.subspan(kPngTypeOffset, length + 4)))
            chunks.push_back(chunk);
        if (chunk.name == "IEND")
            break;
    }
    return chunks;
}

Bytes pngChunk(std::string_view name, ByteView data) {
    Bytes chunk;
    appendPngChunk(chunk, static_cast<std::uint32_t>(numberAt(bytesOf(name), 0, 4, ByteOrder::BigEndian)),
                   data);
    return chunk;
}

std::optional<PngText> pngText(const PngChunk& chunk, std::size_t& budget) {
    std::string_view rest = textOf(chunk.data);
    const bool isPlain = chunk.name == "tEXt";
    const bool isCompressed = chunk.name == "zTXt";
    if (!isPlain && !isCompressed && chunk.name != kInternationalText)
        return std::nullopt;
    const auto keyword = takenWord(rest);
    if (!keyword || keyword->empty())
        return std::nullopt;
    if (isPlain)
        return PngText{std::string(*keyword), std::string(rest), false};
    if (!isCompressed)
        return internationalText(*keyword, rest, budget);
    return rest.empty() ? std::nullopt : compressedText(*keyword, rest.substr(1), false, budget);
}

Bytes pngTextChunk(std::string_view keyword, std::string_view utf8) {
    const bool isAscii = std::ranges::all_of(
        utf8, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
    if (!isAscii)
        return pngInternationalTextChunk(keyword, utf8);
    Bytes data;
    append(data, bytesOf(keyword));
    data.push_back(0);
    append(data, bytesOf(utf8));
    return pngChunk("tEXt", data);
}

Bytes pngInternationalTextChunk(std::string_view keyword, std::string_view utf8) {
    Bytes data;
    append(data, bytesOf(keyword));
    // The keyword's end; not compressed, by no method; no language; no translated keyword.
    data.insert(data.end(), 5, 0);
    append(data, bytesOf(utf8));
    return pngChunk(kInternationalText, data);
}

Bytes bytesOfRawProfile(std::string_view text) {
    // An empty line, the name, the length, then lines of figures.
    for (int line = 0; line < 3; ++line) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos)
            return {};
        text.remove_prefix(end + 1);
    }
    Bytes profile;
    int high = -1;
    for (const char character : text) {
        const auto figure = static_cast<unsigned char>(std::tolower(static_cast<unsigned char>(character)));
        if (std::isxdigit(figure) == 0)
            continue;
        const int value = figure <= '9' ? figure - '0' : figure - 'a' + 10;
        if (high < 0) {
            high = value;
        } else {
            profile.push_back(static_cast<std::uint8_t>(high << 4 | value));
            high = -1;
        }
    }
    return profile;
}

Bytes pngRawProfileChunk(std::string_view kind, ByteView profile) {
    constexpr std::string_view kFigures = "0123456789abcdef";
    constexpr std::size_t kBytesPerLine = 36;
    std::string length = std::to_string(profile.size());
    length.insert(0, length.size() < 8 ? 8 - length.size() : 0, ' ');
    std::string text = "\n" + std::string(kind) + "\n" + length;
    for (std::size_t i = 0; i < profile.size(); ++i) {
        if (i % kBytesPerLine == 0)
            text += '\n';
        text += kFigures[profile[i] >> 4];
        text += kFigures[profile[i] & 15];
    }
    text += '\n';
    return pngTextChunk("Raw profile type " + std::string(kind), text);
}

} // namespace complexion
