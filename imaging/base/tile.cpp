// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/tile.h"

#include "imaging/base/deep_pixels.h"
#include "imaging/base/fatal.h"

#include <cstring>

namespace complexion {

bool Tile::hasPixelsOf(const Tile& other) const {
    const auto bytes = static_cast<std::size_t>(m_block.size.area()) * sizeof(RGBA32);
    return m_block.size == other.m_block.size &&
           std::memcmp(m_block.pixels.get(), other.m_block.pixels.get(), bytes) == 0 &&
           (m_deep == other.m_deep || (m_deep && other.m_deep && *m_deep == *other.m_deep));
}

void Tile::readDeep(int row, int column, int count, DeepAlpha form, RGBA64* out) const {
    if (m_deep) {
        m_deep->read(m_block, row, column, count, out);
        return;
    }
    const RGBA32* const pixels = m_block.row(row) + column;
    for (int i = 0; i < count; ++i)
        out[i] = widened(pixels[i], form);
}

std::shared_ptr<const PixelBlock> Tile::level(int level) const {
    if (level < 1 || level > kLastLevel)
        fatal("a tile has no such level");
    const std::scoped_lock lock(m_mutex);
    const auto index = static_cast<std::size_t>(level - 1);
    if (!m_levels[index]) {
        // Start from the nearest cached finer level; the levels in between are not cached.
        std::size_t from = index;
        while (from > 0 && !m_levels[from - 1])
            --from;
        auto block = std::make_shared<const PixelBlock>(halved(from == 0 ? m_block : *m_levels[from - 1]));
        for (++from; from <= index; ++from)
            block = std::make_shared<const PixelBlock>(halved(*block));
        m_levels[index] = std::move(block);
    }
    return m_levels[index];
}

void Tile::dropLevels() const {
    const std::scoped_lock lock(m_mutex);
    m_levels = {};
}

} // namespace complexion
