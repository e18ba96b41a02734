// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace complexion::jpeg {

/// A Huffman code as in a DHT segment (ITU-T T.81 B.2.4.2): the number of codes of each length from 1 to 16
/// (element 0 is unused), and the symbols in the order of their codes.
struct HuffmanCode {
    std::array<std::uint8_t, 17> lengthCounts = {};
    std::array<std::uint8_t, 256> symbols = {};
    bool operator==(const HuffmanCode&) const = default;
};

/// The colour space of a file's components. YCbCr makes smaller files, RGB preserves pixel values better.
enum class ColorSpace { YCbCr, Rgb, Grey };

/// The colour space and Huffman codes of a picture. Element 0 of the codes is for luminance, element 1 for
/// both chrominances; RGB uses element 0 for all components.
struct CodingTables {
    ColorSpace colorSpace = ColorSpace::YCbCr;
    std::array<HuffmanCode, 2> dc;
    std::array<HuffmanCode, 2> ac;
};

/// All symbols that blocks of an 8-bit picture can need (ITU-T T.81 F.1.2): size categories of DC
/// differences; for AC coefficients the run/size pairs, EOB and ZRL.
std::span<const std::uint8_t> dcSymbols();
std::span<const std::uint8_t> acSymbols();

/// A code of nearly the same lengths as `code` that has a code word for every symbol of `symbols`.
HuffmanCode withAllSymbols(const HuffmanCode& code, std::span<const std::uint8_t> symbols);

} // namespace complexion::jpeg
