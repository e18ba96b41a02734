// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include <gif_lib.h>

namespace complexion {

/// Decodes the colour indices of the frame whose description `gif` has just read (GIF89a, appendix F). The
/// library's own decoder sets its whole table anew for each code that clears it, so that a file of such codes
/// takes seconds a megabyte.
class GifLzwDecoder {
public:
    /// `indexBits`: the frame's code size. Some software writes more than the 8 of the format, as many as let
    /// all codes have 12 bits; indices have no more than 8 all the same.
    GifLzwDecoder(GifFileType* gif, int indexBits);

    /// The next indices of the frame. False, with some of them, when the codes are damaged or at their end.
    bool read(std::span<std::uint8_t> indices);

private:
    static constexpr int kMaxBits = 12;
    static constexpr std::size_t kTableSize = std::size_t{1} << kMaxBits;

    void clear();
    std::optional<std::uint8_t> nextByte();
    std::optional<std::size_t> nextCode();
    /// Puts the string of the next code onto the stack, its first index on top.
    bool takeString();

    GifFileType* m_gif;
    std::span<const std::uint8_t> m_block; // of the file's, what is left
    bool m_isAtEnd = false;
    std::uint32_t m_bits = 0;
    int m_bitCount = 0;

    std::size_t m_clearCode = 0; // all below stand for one index, the one after it for the end
    int m_startWidth = 0;        // of codes, in bits
    int m_width = 0;
    std::size_t m_tableEnd = 0;
    std::optional<std::size_t> m_previous; // none after the table was cleared
    // Each entry's string is that of another entry with one index behind it.
    std::array<std::uint16_t, kTableSize> m_prefix{};
    std::array<std::uint8_t, kTableSize> m_last{};
    std::array<std::uint8_t, kTableSize + 1> m_stack{};
    std::size_t m_stacked = 0;
};

} // namespace complexion
