// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/pixel_buffer.h"

#include "imaging/base/checked.h"

#include <algorithm>
#include <new>

namespace complexion {

namespace {

constexpr std::int64_t kBytesPerPixel = sizeof(RGBA32);

const PixelBlock& storedBlock(const Image& image, std::int64_t band, std::int64_t column) {
    return image.bands()[static_cast<std::size_t>(band)]->tiles()[static_cast<std::size_t>(column)]->block();
}

int columnInTile(PixelPosition position) {
    return static_cast<int>(position.column % Tile::kWidth);
}

int rowInTile(PixelPosition position) {
    return static_cast<int>(position.row % Tile::kHeight);
}

} // namespace

Result<PixelBuffer> PixelBuffer::open(const Image& image) {
    if (!image.hasPixels())
        return Error{kNoBitmap};
    const std::int64_t bytesPerRow = checkedMultiply(std::int64_t{image.pixelSize().width}, kBytesPerPixel);
    (void)checkedMultiply(bytesPerRow, std::int64_t{image.pixelSize().height});
    try {
        return PixelBuffer(image.materialized());
    } catch (const std::bad_alloc&) {
        return Error{kNoContext};
    }
}

std::vector<RGBA32> PixelBuffer::sourcePixels(PixelRect rect) const {
    std::vector<RGBA32> pixels(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height));
    m_image.read(rect, pixels.data(), rect.width);
    return pixels;
}

PixelBuffer::TileIndex PixelBuffer::tileAt(PixelPosition position) {
    return {position.row / Tile::kHeight, position.column / Tile::kWidth};
}

PixelBlock& PixelBuffer::touchedTile(TileIndex index) {
    const auto found = m_touched.find(index);
    if (found != m_touched.end())
        return found->second;
    const PixelBlock& source = storedBlock(m_image, index.band, index.column);
    PixelBlock copy = PixelBlock::uninitialized(source.size);
    std::copy_n(source.pixels.get(), source.size.area(), copy.pixels.get());
    return m_touched.emplace(index, std::move(copy)).first->second;
}

RGBA32 PixelBuffer::pixel(PixelPosition position) const {
    const TileIndex index = tileAt(position);
    const auto found = m_touched.find(index);
    const PixelBlock& block =
        found != m_touched.end() ? found->second : storedBlock(m_image, index.band, index.column);
    return block.row(rowInTile(position))[columnInTile(position)];
}

void PixelBuffer::paint(std::span<const PixelPosition> positions, RGBA32 paint) {
    TileIndex current{-1, -1};
    PixelBlock* tile = nullptr;
    for (const PixelPosition position : positions) {
        if (const TileIndex index = tileAt(position); !tile || index != current) {
            current = index;
            tile = &touchedTile(index);
        }
        tile->row(rowInTile(position))[columnInTile(position)] = paint;
    }
}

void PixelBuffer::paintRow(PixelPosition start, std::span<const RGBA32> pixels) {
    while (!pixels.empty()) {
        PixelBlock& tile = touchedTile(tileAt(start));
        const int column = columnInTile(start);
        const std::size_t count = std::min(pixels.size(), static_cast<std::size_t>(tile.size.width - column));
        std::ranges::copy(pixels.first(count), tile.row(rowInTile(start)) + column);
        pixels = pixels.subspan(count);
        start.column += static_cast<std::int64_t>(count);
    }
}

Image PixelBuffer::close() && {
    BandList bands = m_image.bands();
    for (auto touched = m_touched.begin(); touched != m_touched.end();) {
        const std::int64_t band = touched->first.band;
        std::shared_ptr<const Band>& slot = bands[static_cast<std::size_t>(band)];
        auto tiles = slot->tiles();
        for (; touched != m_touched.end() && touched->first.band == band; ++touched)
            tiles[static_cast<std::size_t>(touched->first.column)] =
                std::make_shared<const Tile>(std::move(touched->second));
        slot = std::make_shared<const Band>(std::move(tiles), *slot);
    }
    return m_image.withBands(std::move(bands));
}

} // namespace complexion
