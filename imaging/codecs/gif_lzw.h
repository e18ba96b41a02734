// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include <gif_lib.h>

namespace complexion::gif {

/// Decodes the palette indices of the frame whose image descriptor `gif` has just read (GIF89a appendix F).
/// The library's own decoder resets its whole string table at every clear code: a file full of them takes
/// seconds per megabyte.
class LzwDecoder {
public:
    /// `indexBits` is the frame's LZW minimum code size. Some encoders write more than the format's 8, up to
    /// 11; palette indices have at most 8 bits even then.
    LzwDecoder(GifFileType* gif, int indexBits);

    /// Reads the frame's next indices. False, with `indices` partly filled, if the codes are damaged or end
    /// early.
    bool read(std::span<std::uint8_t> indices);

private:
    static constexpr int kMaxBits = 12;
    static constexpr std::size_t kTableSize = std::size_t{1} << kMaxBits;

    void clear();
    std::optional<std::uint8_t> nextByte();
    std::optional<std::size_t> nextCode();
    /// Pushes the string of the next code onto the stack, first index on top.
    bool pushString();

    GifFileType* m_gif;
    std::span<const std::uint8_t> m_block; // the rest of the current sub-block
    bool m_isAtEnd = false;
    std::uint32_t m_bits = 0;
    int m_bitCount = 0;

    std::size_t m_clearCode = 0; // smaller codes are single indices, the next code ends the data
    int m_startWidth = 0;        // bits per code after a clear code
    int m_width = 0;
    std::size_t m_tableEnd = 0;
    std::optional<std::size_t> m_previous; // empty after a clear code
    // An entry's string is that of the code `m_prefix` followed by the index `m_last`.
    std::array<std::uint16_t, kTableSize> m_prefix{};
    std::array<std::uint8_t, kTableSize> m_last{};
    std::array<std::uint8_t, kTableSize + 1> m_stack{};
    std::size_t m_stacked = 0;
};

} // namespace complexion::gif
