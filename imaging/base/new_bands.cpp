// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/new_bands.h"

#include "imaging/base/deep_pixels.h"

#include <algorithm>
#include <utility>

namespace complexion {

namespace {

/// The deep pixels of `block`, which begins at column `left` of packed rows `width` wide.
std::shared_ptr<const DeepBlock> deepBlockOf(const PixelBlock& block, const std::vector<RGBA64>& rows,
                                             std::size_t width, std::size_t left) {
    std::vector<RGBA64> pixels;
    pixels.reserve(static_cast<std::size_t>(block.size.area()));
    for (std::size_t row = 0; row < static_cast<std::size_t>(block.size.height); ++row) {
        const auto begin = rows.begin() + static_cast<std::ptrdiff_t>(row * width + left);
        pixels.insert(pixels.end(), begin, begin + block.size.width);
    }
    return DeepBlock::create(block, pixels);
}

} // namespace

std::vector<PixelBlock> newBand(PixelSize picture, int band) {
    const int height = std::min(Tile::kHeight, picture.height - band * Tile::kHeight);
    std::vector<PixelBlock> blocks;
    for (int x = 0; x < picture.width; x += Tile::kWidth)
        blocks.push_back(PixelBlock::uninitialized({std::min(Tile::kWidth, picture.width - x), height}));
    return blocks;
}

std::shared_ptr<const Band> BandMaker::make(std::vector<PixelBlock> blocks,
                                            const std::vector<RGBA64>& deepRows) {
    const std::shared_ptr<const Band> latest = [this] {
        const std::scoped_lock lock(m_mutex);
        return m_latest;
    }();
    TileList tiles;
    tiles.reserve(blocks.size());
    const std::size_t width =
        blocks.empty() ? 0 : deepRows.size() / static_cast<std::size_t>(blocks.front().size.height);
    std::size_t left = 0;
    for (PixelBlock& block : blocks) {
        const auto blockWidth = static_cast<std::size_t>(block.size.width);
        auto deep = deepRows.empty() ? nullptr : deepBlockOf(block, deepRows, width, left);
        auto tile = std::make_shared<const Tile>(std::move(block), std::move(deep));
        left += blockWidth;
        if (!tiles.empty() && tile->hasPixelsOf(*tiles.back()))
            tiles.push_back(tiles.back());
        else if (latest && tile->hasPixelsOf(*latest->tiles()[tiles.size()]))
            tiles.push_back(latest->tiles()[tiles.size()]);
        else
            tiles.push_back(std::move(tile));
    }
    auto band = std::make_shared<const Band>(std::move(tiles));
    const std::scoped_lock lock(m_mutex);
    m_latest = band;
    return band;
}

} // namespace complexion
