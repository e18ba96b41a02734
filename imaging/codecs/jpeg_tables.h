// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace complexion {

/// A Huffman code as a DHT segment has it (T.81, B.2.4.2): how many codes there are of each length 1 .. 16
/// (element 0 is unused) and the symbols in the order of their codes.
struct HuffmanCode {
    std::array<std::uint8_t, 17> lengthCounts = {};
    std::array<std::uint8_t, 256> symbols = {};
    bool operator==(const HuffmanCode&) const = default;
};

/// What a file's components are. The usual ones make smaller files; whoever wants back red, green and
/// blue to the level had better store those.
enum class JpegColors { YCbCr, Rgb, Grey };

/// How a picture's components are coded. Element 0 of the codes is luminance, 1 both chrominances; red, green
/// and blue all take element 0.
struct JpegTables {
    JpegColors colors = JpegColors::YCbCr;
    std::array<HuffmanCode, 2> dc;
    std::array<HuffmanCode, 2> ac;
};

/// All symbols that the blocks of an 8-bit picture can need: sizes of DC differences, and for AC coefficients
/// runs of zeros with the size of what ends them, the end of a block and the run of sixteen.
std::span<const std::uint8_t> dcSymbols();
std::span<const std::uint8_t> acSymbols();

/// A code of nearly the same lengths as `code` in which every symbol of `needed` has a code word.
HuffmanCode completed(const HuffmanCode& code, std::span<const std::uint8_t> needed);

} // namespace complexion
