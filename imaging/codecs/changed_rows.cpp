// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/changed_rows.h"

#include <algorithm>
#include <cstring>

namespace complexion {

namespace {

bool haveSameSizes(const TileList& tiles, const TileList& others) {
    return std::ranges::equal(
        tiles, others, {}, [](const auto& tile) { return tile->block().size; },
        [](const auto& tile) { return tile->block().size; });
}

bool haveSamePixels(const PixelBlock& block, const PixelBlock& other, int firstRow, int rows) {
    const auto count = static_cast<std::size_t>(block.size.width) * static_cast<std::size_t>(rows);
    return std::memcmp(block.row(firstRow), other.row(firstRow), count * sizeof(RGBA32)) == 0;
}

} // namespace

std::vector<bool> changedRows(const Band& band, const TileList& before, int rowsPerGroup) {
    const int height = band.height();
    const bool sameSizes = haveSameSizes(band.tiles(), before);
    std::vector<bool> changed(static_cast<std::size_t>((height + rowsPerGroup - 1) / rowsPerGroup),
                              !sameSizes);
    for (std::size_t column = 0; sameSizes && column < before.size(); ++column) {
        if (band.tiles()[column] == before[column])
            continue;
        const PixelBlock& block = band.tiles()[column]->block();
        for (std::size_t group = 0; group < changed.size(); ++group) {
            const int first = static_cast<int>(group) * rowsPerGroup;
            const int rows = std::min(rowsPerGroup, height - first);
            if (!changed[group] && !haveSamePixels(block, before[column]->block(), first, rows))
                changed[group] = true;
        }
    }
    return changed;
}

} // namespace complexion
