// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/gif_lzw.h"

namespace complexion::gif {

namespace {

constexpr std::size_t kIndexCount = 256;

} // namespace

LzwDecoder::LzwDecoder(GifFileType* gif, int indexBits) : m_gif(gif) {
    int codeSize = 0;
    GifByteType* block = nullptr;
    m_isAtEnd =
        DGifGetCode(gif, &codeSize, &block) != GIF_OK || !block || indexBits < 1 || indexBits >= kMaxBits;
    if (m_isAtEnd)
        return;
    m_block = {block + 1, block[0]};
    m_clearCode = std::size_t{1} << indexBits;
    m_startWidth = indexBits + 1;
    clear();
}

void LzwDecoder::clear() {
    m_width = m_startWidth;
    m_tableEnd = m_clearCode + 2;
    m_previous.reset();
}

std::optional<std::uint8_t> LzwDecoder::nextByte() {
    while (m_block.empty() && !m_isAtEnd) {
        GifByteType* block = nullptr;
        m_isAtEnd = DGifGetCodeNext(m_gif, &block) != GIF_OK || !block;
        if (!m_isAtEnd)
            m_block = {block + 1, block[0]};
    }
    if (m_isAtEnd)
        return std::nullopt;
    const std::uint8_t byte = m_block.front();
    m_block = m_block.subspan(1);
    return byte;
}

std::optional<std::size_t> LzwDecoder::nextCode() {
    if (m_width == 0) // the frame has no codes
        return std::nullopt;
    while (m_bitCount < m_width) {
        const std::optional<std::uint8_t> byte = nextByte();
        if (!byte)
            return std::nullopt;
        m_bits |= std::uint32_t{*byte} << m_bitCount;
        m_bitCount += 8;
    }
    const std::size_t code = m_bits & ((1U << m_width) - 1);
    m_bits >>= m_width;
    m_bitCount -= m_width;
    return code;
}

bool LzwDecoder::pushString() {
    std::optional<std::size_t> code = nextCode();
    while (code == m_clearCode) {
        clear();
        code = nextCode();
    }
    // The code after the clear code ends the data. A code one past the table is the entry about to be added:
    // the previous string followed by its own first index.
    if (!code || code == m_clearCode + 1 || *code > m_tableEnd || (*code == m_tableEnd && !m_previous) ||
        *code >= kTableSize || (*code < m_clearCode && *code >= kIndexCount))
        return false;
    const bool isNextEntry = *code == m_tableEnd;
    if (isNextEntry)
        ++m_stacked; // filled below
    std::size_t entry = isNextEntry ? *m_previous : *code;
    for (; entry >= m_clearCode; entry = m_prefix[entry])
        m_stack[m_stacked++] = m_last[entry];
    const auto first = static_cast<std::uint8_t>(entry);
    m_stack[m_stacked++] = first;
    if (isNextEntry)
        m_stack[0] = first;
    if (m_previous && m_tableEnd < kTableSize) {
        m_prefix[m_tableEnd] = static_cast<std::uint16_t>(*m_previous);
        m_last[m_tableEnd] = first;
        ++m_tableEnd;
        if (m_tableEnd == std::size_t{1} << m_width && m_width < kMaxBits)
            ++m_width;
    }
    m_previous = code;
    return true;
}

bool LzwDecoder::read(std::span<std::uint8_t> indices) {
    for (std::uint8_t& index : indices) {
        if (m_stacked == 0 && !pushString())
            return false;
        index = m_stack[--m_stacked];
    }
    return true;
}

} // namespace complexion::gif
