// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/pixel_buffer.h"

#include "imaging/base/checked.h"
#include "imaging/base/deep_pixels.h"

#include <algorithm>
#include <new>

namespace complexion {

namespace {

constexpr std::int64_t kBytesPerPixel = sizeof(RGBA32);

const Tile& storedTile(const Image& image, std::int64_t band, std::int64_t column) {
    return *image.bands()[static_cast<std::size_t>(band)]->tiles()[static_cast<std::size_t>(column)];
}

int columnInTile(PixelPosition position) {
    return static_cast<int>(position.column % Tile::kWidth);
}

int rowInTile(PixelPosition position) {
    return static_cast<int>(position.row % Tile::kHeight);
}

std::size_t indexInTile(PixelPosition position, const PixelBlock& block) {
    return static_cast<std::size_t>(rowInTile(position)) * static_cast<std::size_t>(block.size.width) +
           static_cast<std::size_t>(columnInTile(position));
}

std::shared_ptr<const Tile> tileOf(PixelBlock block, const std::vector<RGBA64>& deep) {
    auto kept = deep.empty() ? nullptr : DeepBlock::create(block, deep);
    return std::make_shared<const Tile>(std::move(block), std::move(kept));
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

PixelBuffer::WritableTile& PixelBuffer::writableTile(TileIndex index) {
    const auto found = m_writableTiles.find(index);
    if (found != m_writableTiles.end())
        return found->second;
    const Tile& tile = storedTile(m_image, index.band, index.column);
    const PixelBlock& source = tile.block();
    WritableTile copy{PixelBlock::uninitialized(source.size), {}};
    std::copy_n(source.pixels.get(), source.size.area(), copy.block.pixels.get());
    if (const std::optional<DeepAlpha> form = m_image.deepAlpha()) {
        copy.deep.resize(static_cast<std::size_t>(source.size.area()));
        for (int row = 0; row < source.size.height; ++row)
            tile.readDeep(row, 0, source.size.width, *form,
                          copy.deep.data() + std::ptrdiff_t{row} * source.size.width);
    }
    return m_writableTiles.emplace(index, std::move(copy)).first->second;
}

RGBA32 PixelBuffer::pixel(PixelPosition position) const {
    const TileIndex index = tileAt(position);
    const auto found = m_writableTiles.find(index);
    const PixelBlock& block = found != m_writableTiles.end()
                                  ? found->second.block
                                  : storedTile(m_image, index.band, index.column).block();
    return block.row(rowInTile(position))[columnInTile(position)];
}

void PixelBuffer::paintDeepPixel(WritableTile& tile, std::size_t index, RGBA32 paint) const {
    RGBA32& pixel = tile.block.pixels[index];
    tile.deep[index] = repainted(tile.deep[index], pixel, paint, *m_image.deepAlpha());
    pixel = paint;
}

void PixelBuffer::paint(std::span<const PixelPosition> positions, RGBA32 paint) {
    while (!positions.empty()) {
        const TileIndex index = tileAt(positions.front());
        WritableTile& tile = writableTile(index);
        const auto outside = std::ranges::find_if_not(
            positions, [&](PixelPosition position) { return tileAt(position) == index; });
        const auto count = static_cast<std::size_t>(outside - positions.begin());
        for (const PixelPosition position : positions.first(count)) {
            const std::size_t place = indexInTile(position, tile.block);
            if (tile.deep.empty())
                tile.block.pixels[place] = paint;
            else
                paintDeepPixel(tile, place, paint);
        }
        positions = positions.subspan(count);
    }
}

void PixelBuffer::paintRow(PixelPosition start, std::span<const RGBA32> pixels,
                           std::span<const RGBA64> deep) {
    while (!pixels.empty()) {
        WritableTile& tile = writableTile(tileAt(start));
        const std::size_t first = indexInTile(start, tile.block);
        const std::size_t count =
            std::min(pixels.size(), static_cast<std::size_t>(tile.block.size.width - columnInTile(start)));
        const auto part = pixels.first(count);
        if (tile.deep.empty())
            std::ranges::copy(part, tile.block.pixels.get() + first);
        for (std::size_t i = 0; i < count && !tile.deep.empty(); ++i)
            paintDeepPixel(tile, first + i, part[i]);
        if (!tile.deep.empty() && !deep.empty()) {
            std::ranges::copy(deep.first(count), tile.deep.begin() + static_cast<std::ptrdiff_t>(first));
            deep = deep.subspan(count);
        }
        pixels = pixels.subspan(count);
        start.column += static_cast<std::int64_t>(count);
    }
}

Image PixelBuffer::close() && {
    BandList bands = m_image.bands();
    for (auto written = m_writableTiles.begin(); written != m_writableTiles.end();) {
        const std::int64_t band = written->first.band;
        std::shared_ptr<const Band>& slot = bands[static_cast<std::size_t>(band)];
        auto tiles = slot->tiles();
        for (; written != m_writableTiles.end() && written->first.band == band; ++written)
            tiles[static_cast<std::size_t>(written->first.column)] =
                tileOf(std::move(written->second.block), written->second.deep);
        slot = std::make_shared<const Band>(std::move(tiles), *slot);
    }
    return m_image.withBands(std::move(bands));
}

} // namespace complexion
