// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/image.h"

#include "imaging/base/fatal.h"
#include "imaging/base/new_bands.h"
#include "imaging/base/parallel.h"
#include "imaging/base/row_receiver.h"

#include <bit>
#include <cstring>
#include <utility>

namespace complexion {

namespace {

static_assert(Tile::kHeight == 64, "ImageBuilder keeps one bit for each row of a band");

int blocksFor(int length, int block) {
    return (length + block - 1) / block;
}

void copyRow(const RGBA32* from, int count, RGBA32* to) {
    std::memcpy(to, from, static_cast<std::size_t>(count) * sizeof(RGBA32));
}

void setBandRow(std::vector<PixelBlock>& band, int rowInBand, const RGBA32* row) {
    for (PixelBlock& block : band) {
        copyRow(row, block.size.width, block.row(rowInBand));
        row += block.size.width;
    }
}

/// The pixels of an image whose rows went to a RowReceiver.
class PixelsPassedOn final : public PixelSource {
public:
    explicit PixelsPassedOn(std::optional<DeepAlpha> deepAlpha) : m_deepAlpha(deepAlpha) {}

    void read(PixelRect, RGBA32*, std::ptrdiff_t) const override {
        fatal("pixels that were passed on are read");
    }
    std::optional<DeepAlpha> deepAlpha() const override { return m_deepAlpha; }

private:
    std::optional<DeepAlpha> m_deepAlpha;
};

} // namespace

struct Image::Content {
    PixelSize pixels;
    PointSize points;
    ColorProfile profile;
    std::optional<DeepAlpha> deepAlpha; // of the bands' deep pixels
    std::shared_ptr<const BandList> bands = std::make_shared<const BandList>();
    std::shared_ptr<const PixelSource> source;                     // replaces the bands, unless null
    std::vector<std::shared_ptr<const PixelTransform>> transforms; // applied in this order when read
    std::shared_ptr<Memo> encoderMemory = std::make_shared<Memo>();

    bool isStored() const { return !source && transforms.empty(); }
};

Image::Image() : Image(std::make_shared<const Content>()) {}

void PixelSource::readDeep(PixelRect, RGBA64*, std::ptrdiff_t) const {
    fatal("deep pixels of a source without are read");
}

Image Image::empty(PointSize size) {
    Content content;
    content.points = size;
    return Image(std::make_shared<const Content>(std::move(content)));
}

Image Image::fromBands(PixelSize pixels, BandList bands, ColorProfile profile,
                       std::optional<DeepAlpha> deepAlpha) {
    Content content;
    content.deepAlpha = deepAlpha;
    content.pixels = pixels;
    content.points = {static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
    content.profile = std::move(profile);
    content.bands = std::make_shared<const BandList>(std::move(bands));
    return Image(std::make_shared<const Content>(std::move(content)));
}

Image Image::fromSource(PixelSize pixels, std::shared_ptr<const PixelSource> source, ColorProfile profile) {
    Content content;
    content.pixels = pixels;
    content.points = {static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
    content.profile = std::move(profile);
    content.source = std::move(source);
    return Image(std::make_shared<const Content>(std::move(content)));
}

Image Image::fromPixels(PixelSize size, std::span<const RGBA32> pixels) {
    if (std::ssize(pixels) != size.area())
        fatal("an image needs as many pixels as its size says");
    ImageBuilder builder(size);
    builder.setRows(0, size.height, pixels.data());
    return builder.finish();
}

PixelSize Image::pixelSize() const {
    return m_content->pixels;
}

PointSize Image::size() const {
    return m_content->points;
}

const ColorProfile& Image::profile() const {
    return m_content->profile;
}

Image Image::withSize(PointSize size) const {
    Content content = *m_content;
    content.points = size;
    return Image(std::make_shared<const Content>(std::move(content)));
}

Image Image::withProfile(ColorProfile profile) const {
    Content content = *m_content;
    content.profile = std::move(profile);
    return Image(std::make_shared<const Content>(std::move(content)));
}

Image Image::withBands(BandList bands) const {
    Content content = *m_content;
    content.bands = std::make_shared<const BandList>(std::move(bands));
    if (!content.isStored())
        content.deepAlpha.reset();
    content.source = nullptr;
    content.transforms.clear();
    return Image(std::make_shared<const Content>(std::move(content)));
}

Image Image::transformed(std::shared_ptr<const PixelTransform> transform) const {
    Content content = *m_content;
    content.transforms.push_back(std::move(transform));
    content.encoderMemory = std::make_shared<Memo>();
    return Image(std::make_shared<const Content>(std::move(content)));
}

bool Image::isTransformed() const {
    return !m_content->transforms.empty();
}

void Image::read(PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const {
    readLevel(0, rect, out, stride);
}

void Image::readLevel(int level, PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const {
    readStoredLevel(level, rect, out, stride);
    if (!m_content->transforms.empty())
        for (int y = 0; y < rect.height; ++y)
            transform({out + y * stride, static_cast<std::size_t>(rect.width)});
}

void Image::transform(std::span<RGBA32> pixels) const {
    for (const auto& transform : m_content->transforms)
        transform->apply(pixels);
}

void Image::readStoredLevel(int level, PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const {
    if (rect.isEmpty())
        return;
    const PixelSize size = levelSize(level);
    if (rect.intersected({0, 0, size.width, size.height}) != rect)
        fatal("pixels outside the picture are read");
    if (m_content->source) {
        if (level > 0)
            fatal("a picture that is made when it is read has no levels");
        m_content->source->read(rect, out, stride);
        return;
    }
    const int tileWidth = Tile::kWidth >> level;
    const int tileHeight = Tile::kHeight >> level;
    for (int band = rect.y / tileHeight; band * tileHeight < rect.bottom(); ++band) {
        const auto& tiles = (*m_content->bands)[static_cast<std::size_t>(band)]->tiles();
        for (int column = rect.x / tileWidth; column * tileWidth < rect.right(); ++column) {
            const Tile& tile = *tiles[static_cast<std::size_t>(column)];
            const std::shared_ptr<const PixelBlock> kept = level == 0 ? nullptr : tile.level(level);
            const PixelBlock& block = kept ? *kept : tile.block();
            const PixelRect place{column * tileWidth, band * tileHeight, block.size.width, block.size.height};
            const PixelRect part = place.intersected(rect);
            for (int y = part.y; y < part.bottom(); ++y)
                copyRow(block.row(y - place.y) + (part.x - place.x), part.width,
                        out + (y - rect.y) * stride + (part.x - rect.x));
        }
    }
}

PixelSize Image::levelSize(int level) const {
    if (level < 0 || level > Tile::kLastLevel)
        fatal("an image has no such level");
    const PixelSize full = pixelSize();
    return {blocksFor(full.width, 1 << level), blocksFor(full.height, 1 << level)};
}

RGBA32 Image::pixel(int row, int column) const {
    RGBA32 pixel;
    read({column, row, 1, 1}, &pixel, 1);
    return pixel;
}

std::optional<DeepAlpha> Image::deepAlpha() const {
    if (!m_content->transforms.empty())
        return std::nullopt;
    return m_content->source ? m_content->source->deepAlpha() : m_content->deepAlpha;
}

void Image::readDeep(PixelRect rect, RGBA64* out, std::ptrdiff_t stride) const {
    const std::optional<DeepAlpha> form = deepAlpha();
    if (!form || rect.intersected({0, 0, pixelSize().width, pixelSize().height}) != rect)
        fatal("deep pixels are read where there are none");
    if (m_content->source) {
        m_content->source->readDeep(rect, out, stride);
        return;
    }
    for (int y = rect.y; y < rect.bottom(); ++y, out += stride) {
        const TileList& tiles = (*m_content->bands)[static_cast<std::size_t>(y / Tile::kHeight)]->tiles();
        for (int x = rect.x; x < rect.right();) {
            const Tile& tile = *tiles[static_cast<std::size_t>(x / Tile::kWidth)];
            const int column = x % Tile::kWidth;
            const int count = std::min(tile.block().size.width - column, rect.right() - x);
            tile.readDeep(y % Tile::kHeight, column, count, *form, out + (x - rect.x));
            x += count;
        }
    }
}

PixelRect Image::difference(const Image& other) const {
    const PixelRect whole{0, 0, pixelSize().width, pixelSize().height};
    if (pixelSize() != other.pixelSize() || m_content->transforms != other.m_content->transforms ||
        !(profile() == other.profile()) || m_content->source || other.m_content->source)
        return whole;
    PixelRect changed;
    for (int index = 0; index < bandCount(); ++index) {
        const auto& mine = (*m_content->bands)[static_cast<std::size_t>(index)];
        const auto& theirs = (*other.m_content->bands)[static_cast<std::size_t>(index)];
        if (mine == theirs)
            continue;
        for (std::size_t column = 0; column < mine->tiles().size(); ++column)
            if (mine->tiles()[column] != theirs->tiles()[column])
                changed = changed.united({static_cast<int>(column) * Tile::kWidth, index * Tile::kHeight,
                                          mine->tiles()[column]->block().size.width, mine->height()});
    }
    return changed;
}

int Image::bandCount() const {
    return pixelSize().area() == 0 ? 0 : blocksFor(pixelSize().height, Tile::kHeight);
}

PixelRect Image::bandRect(int index) const {
    const int y = index * Tile::kHeight;
    return {0, y, pixelSize().width, std::min(Tile::kHeight, pixelSize().height - y)};
}

std::shared_ptr<const Band> Image::storedBand(int index) const {
    return m_content->isStored() ? (*m_content->bands)[static_cast<std::size_t>(index)] : nullptr;
}

const BandList& Image::bands() const {
    if (!m_content->isStored())
        fatal("the bands of an image that is computed when read are asked for");
    return *m_content->bands;
}

Image Image::materialized() const {
    if (m_content->isStored())
        return *this;
    const std::optional<DeepAlpha> deep = deepAlpha();
    BandList bands(static_cast<std::size_t>(bandCount()));
    BandMaker maker;
    parallelFor(bandCount(), [&](int index) {
        std::vector<PixelBlock> blocks = newBand(pixelSize(), index);
        const PixelRect band = bandRect(index);
        PixelRect place = band;
        for (PixelBlock& block : blocks) {
            place.width = block.size.width;
            read(place, block.pixels.get(), place.width);
            place.x = place.right();
        }
        std::vector<RGBA64> deepRows;
        if (deep) {
            deepRows.resize(static_cast<std::size_t>(band.width) * static_cast<std::size_t>(band.height));
            readDeep(band, deepRows.data(), band.width);
        }
        bands[static_cast<std::size_t>(index)] = maker.make(std::move(blocks), deepRows);
    });
    return fromBands(pixelSize(), std::move(bands), profile(), deep).withSize(size());
}

Memo& Image::encoderMemory() const {
    return *m_content->encoderMemory;
}

void Image::dropCachesUnlessShared(const Image& current) const {
    const BandList& mine = *m_content->bands;
    const BandList& theirs = *current.m_content->bands;
    for (std::size_t index = 0; index < mine.size(); ++index) {
        const Band* other = index < theirs.size() ? theirs[index].get() : nullptr;
        if (mine[index].get() == other)
            continue;
        mine[index]->encoded().set(nullptr);
        const auto& tiles = mine[index]->tiles();
        for (std::size_t column = 0; column < tiles.size(); ++column)
            if (!other || column >= other->tiles().size() || tiles[column] != other->tiles()[column])
                tiles[column]->dropLevels();
    }
}

ImageBuilder::ImageBuilder(PixelSize size, std::optional<DeepAlpha> deepAlpha)
    : m_size(size), m_deepAlpha(deepAlpha), m_receiver(RowReceiver::installed()) {
    if (size.width < 0 || size.height < 0)
        fatal("an image has a negative size");
    if (m_receiver)
        m_receiver->begin(size, deepAlpha);
    else {
        m_bands.resize(static_cast<std::size_t>(size.width == 0 ? 0 : blocksFor(size.height, Tile::kHeight)));
        m_maker = std::make_unique<BandMaker>();
    }
}

ImageBuilder::ImageBuilder(ImageBuilder&&) noexcept = default;

ImageBuilder::~ImageBuilder() = default;

void ImageBuilder::begin(PartBand& part, std::size_t band) const {
    part.blocks = newBand(m_size, static_cast<int>(band));
    if (m_deepAlpha)
        part.deepRows.resize(static_cast<std::size_t>(m_size.width) *
                             static_cast<std::size_t>(part.blocks.front().size.height));
}

/// Makes the band as soon as it is complete, which saves memory: deep rows need twice that of the finished
/// band, and equal tiles are shared.
void ImageBuilder::finish(PartBand& part) {
    part.whole = m_maker->make(std::exchange(part.blocks, {}), std::exchange(part.deepRows, {}));
}

void ImageBuilder::setRows(int firstRow, int count, const RGBA32* rows, const RGBA64* deepRows) {
    if (firstRow < 0 || count < 0 || firstRow > m_size.height - count)
        fatal("rows outside the picture are set");
    if (count > 0 && m_deepAlpha.has_value() != (deepRows != nullptr))
        fatal("an image is deep, or it is not");
    if (m_receiver) {
        m_receiver->setRows(firstRow, count, rows, deepRows);
        return;
    }
    for (int row = firstRow; row < firstRow + count; ++row, rows += m_size.width) {
        const auto index = static_cast<std::size_t>(row / Tile::kHeight);
        PartBand& part = m_bands[index];
        if (part.whole)
            fatal("rows are set twice");
        if (part.blocks.empty())
            begin(part, index);
        const int rowInBand = row % Tile::kHeight;
        setBandRow(part.blocks, rowInBand, rows);
        if (deepRows != nullptr) {
            std::copy_n(deepRows, m_size.width,
                        part.deepRows.data() + std::ptrdiff_t{rowInBand} * m_size.width);
            deepRows += m_size.width;
        }
        part.rowsSet |= std::uint64_t{1} << rowInBand;
        if (std::popcount(part.rowsSet) == part.blocks.front().size.height)
            finish(part);
    }
}

Image ImageBuilder::finish() {
    if (m_receiver)
        return Image::fromSource(m_size, std::make_shared<const PixelsPassedOn>(m_deepAlpha));
    const std::vector<RGBA32> clear(static_cast<std::size_t>(m_size.width));
    BandList bands(m_bands.size());
    for (std::size_t index = 0; index < m_bands.size(); ++index) {
        PartBand& part = m_bands[index];
        if (!part.whole) {
            if (part.blocks.empty())
                begin(part, index);
            for (int row = 0; row < part.blocks.front().size.height; ++row)
                if ((part.rowsSet >> row & 1) == 0)
                    setBandRow(part.blocks, row, clear.data());
            finish(part);
        }
        bands[index] = std::move(part.whole);
    }
    return Image::fromBands(m_size, std::move(bands), {}, m_deepAlpha);
}

} // namespace complexion
