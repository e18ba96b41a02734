// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/row_sender.h"

#include <algorithm>
#include <utility>

namespace complexion {

namespace {

/// Rows of together at least so many bytes are sent at once. A message costs as much as copying about this.
constexpr std::size_t kEnoughBytes = std::size_t{16} << 10;

} // namespace

void RowSender::begin(PixelSize size, std::optional<DeepAlpha> deepAlpha) {
    const std::scoped_lock lock(m_mutex);
    m_width = size.width;
    m_orientation = Orientation::TopLeft;
    const std::size_t rowBytes = static_cast<std::size_t>(std::max(1, size.width)) * sizeof(RGBA32);
    const std::size_t count = (kEnoughBytes + rowBytes - 1) / rowBytes;
    m_window = 0;
    m_isKept.assign(count, false);
    m_pixels.resize(count * static_cast<std::size_t>(size.width));
    m_deepPixels.resize(deepAlpha ? m_pixels.size() : 0);
    m_answer.sendPicture(size, deepAlpha);
}

RGBA32* RowSender::memoryForRows(int count) {
    const std::size_t bytes = bytesOf(count);
    if (bytes < kEnoughBytes || bytes > SlotMemory::kSlotBytes)
        return nullptr;
    if (!m_slot)
        m_slot = m_answer.beginPart();
    return reinterpret_cast<RGBA32*>(m_answer.bytesOf(*m_slot));
}

std::size_t RowSender::bytesOf(int count) const {
    return static_cast<std::size_t>(count) * static_cast<std::size_t>(m_width) * sizeof(RGBA32);
}

void RowSender::setRows(int firstRow, int count, const RGBA32* rows, const RGBA64* deepRows) {
    if (m_slot && reinterpret_cast<const std::uint8_t*>(rows) == m_answer.bytesOf(*m_slot)) {
        m_answer.sendRows(firstRow, count, *std::exchange(m_slot, std::nullopt));
        return;
    }
    if (bytesOf(count) >= kEnoughBytes) {
        m_answer.sendRows(firstRow, count, m_width, rows, deepRows);
        return;
    }
    const std::scoped_lock lock(m_mutex);
    for (int row = 0; row < count; ++row) {
        const std::ptrdiff_t at = std::ptrdiff_t{row} * m_width;
        keep(firstRow + row, rows + at, deepRows ? deepRows + at : nullptr);
    }
}

void RowSender::finish() {
    const std::scoped_lock lock(m_mutex);
    sendKept();
}

void RowSender::keep(int row, const RGBA32* pixels, const RGBA64* deepPixels) {
    const int count = static_cast<int>(m_isKept.size());
    if (row / count != m_window) {
        sendKept();
        m_window = row / count;
    }
    const int index = row % count;
    m_isKept[static_cast<std::size_t>(index)] = true;
    std::copy_n(pixels, m_width, m_pixels.begin() + std::ptrdiff_t{index} * m_width);
    if (deepPixels)
        std::copy_n(deepPixels, m_width, m_deepPixels.begin() + std::ptrdiff_t{index} * m_width);
}

void RowSender::sendKept() {
    const int count = static_cast<int>(m_isKept.size());
    const auto isKept = [this](int index) { return m_isKept[static_cast<std::size_t>(index)]; };
    for (int begin = 0; begin < count; ++begin) {
        if (!isKept(begin))
            continue;
        int end = begin;
        while (end < count && isKept(end))
            ++end;
        const std::ptrdiff_t at = std::ptrdiff_t{begin} * m_width;
        m_answer.sendRows(m_window * count + begin, end - begin, m_width, m_pixels.data() + at,
                          m_deepPixels.empty() ? nullptr : m_deepPixels.data() + at);
        begin = end;
    }
    m_isKept.assign(m_isKept.size(), false);
}

} // namespace complexion
