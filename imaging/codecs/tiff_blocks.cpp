// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_blocks.h"

#include "imaging/base/parallel.h"

#include <algorithm>
#include <atomic>
#include <mutex>

namespace complexion::tiff {

namespace {

// Larger strips, in bytes, are read row by row.
constexpr std::uint64_t kMaxWholeStrip = std::uint64_t{64} << 20;
// Larger blocks, in bytes, are rejected.
constexpr std::uint64_t kMaxBlock = std::uint64_t{1} << 30;
// Smaller pictures, in pixels, are decoded on one thread.
constexpr std::int64_t kSmallArea = std::int64_t{1} << 18;

/// The decoded samples of a strip or tile.
struct Block {
    Bytes bytes;
    int rows = 0; // decoded rows
};

class BlockReader {
public:
    BlockReader(const File& file, const Page& page, std::uint64_t blockBytes, std::uint64_t rowBytes)
        : m_file(file),
          m_page(page),
          m_blockBytes(static_cast<std::size_t>(blockBytes)),
          m_rowBytes(static_cast<std::size_t>(rowBytes)) {}

    /// Reads strip or tile `index`, of `rows` rows.
    void read(std::uint32_t index, int rows, Block& block) {
        block.bytes.assign(std::min(m_blockBytes, m_rowBytes * static_cast<std::size_t>(rows)), 0);
        block.rows = rows;
        if (readWhole(index, block.bytes))
            return;
        readTruncated(index, block.bytes);
        // Rows before the damage are usable, unless they are still in the file's foreign byte order.
        if (TIFFIsByteSwapped(m_file.handle()) != 0 && m_page.bits > 8)
            block.rows = 0;
        while (block.rows > 0 && isBlank(block, block.rows - 1))
            --block.rows;
    }

private:
    bool isTiled() const { return TIFFIsTiled(m_file.handle()) != 0; }

    bool readWhole(std::uint32_t index, Bytes& out) {
        const auto size = static_cast<tmsize_t>(out.size());
        const tmsize_t got = isTiled() ? TIFFReadEncodedTile(m_file.handle(), index, out.data(), size)
                                       : TIFFReadEncodedStrip(m_file.handle(), index, out.data(), size);
        return got == size;
    }

    /// Decodes as much of a truncated block as the file holds. The library rejects such blocks.
    void readTruncated(std::uint32_t index, Bytes& out) {
        const std::uint64_t offset = TIFFGetStrileOffset(m_file.handle(), index);
        const std::uint64_t count = TIFFGetStrileByteCount(m_file.handle(), index);
        const ByteView file = m_file.bytes();
        if (offset >= file.size() || count <= file.size() - offset)
            return;
        const ByteView available = file.subspan(static_cast<std::size_t>(offset));
        Bytes coded(available.begin(), available.end()); // the library may reverse its bits in place
        std::size_t size = out.size();
        if (m_page.compression == COMPRESSION_NONE)
            size = std::min(size, coded.size() / m_rowBytes * m_rowBytes);
        TIFFReadFromUserBuffer(m_file.handle(), index, coded.data(), static_cast<tmsize_t>(coded.size()),
                               out.data(), static_cast<tmsize_t>(size));
    }

    bool isBlank(const Block& block, int row) const {
        const auto begin = block.bytes.begin() + static_cast<std::ptrdiff_t>(m_rowBytes) * row;
        return std::all_of(begin, begin + static_cast<std::ptrdiff_t>(m_rowBytes),
                           [](std::uint8_t byte) { return byte == 0; });
    }

    const File& m_file;
    const Page& m_page;
    std::size_t m_blockBytes;
    std::size_t m_rowBytes;
};

/// The blocks at one position: a single block, or in a planar page one per used sample.
class BlockGroup {
public:
    BlockGroup(const Page& page, const PixelConverter& converter)
        : m_page(page),
          m_samples(converter.samplesUsed()),
          m_blocks(page.planar ? m_samples.size() : 1),
          m_rows(m_blocks.size()) {}

    /// Reads the blocks; `blockOf(sample)` is the index of a sample's block. Returns the number of rows
    /// decoded for all samples.
    template <class BlockOf>
    int read(BlockReader& reader, int rows, BlockOf blockOf) {
        int decoded = rows;
        for (std::size_t i = 0; i < m_blocks.size() && decoded > 0; ++i) {
            reader.read(blockOf(static_cast<std::uint16_t>(m_page.planar ? m_samples[i] : 0)), rows,
                        m_blocks[i]);
            decoded = std::min(decoded, m_blocks[i].rows);
        }
        return decoded;
    }

    std::span<const std::uint8_t* const> row(int index, std::uint64_t rowBytes) {
        for (std::size_t i = 0; i < m_blocks.size(); ++i)
            m_rows[i] = m_blocks[i].bytes.data() + static_cast<std::uint64_t>(index) * rowBytes;
        return m_rows;
    }

private:
    const Page& m_page;
    std::vector<int> m_samples;
    std::vector<Block> m_blocks;
    std::vector<const std::uint8_t*> m_rows;
};

/// The number of rows in a strip (TIFF 6.0 section 8, RowsPerStrip).
int stripHeight(const File& file, const Page& page) {
    std::uint32_t rows = 0;
    TIFFGetFieldDefaulted(file.handle(), TIFFTAG_ROWSPERSTRIP, &rows);
    return static_cast<int>(std::clamp<std::uint32_t>(rows, 1, static_cast<std::uint32_t>(page.size.height)));
}

/// How a page is divided into strips or tiles.
struct Grid {
    int blockWidth = 0; // in pixels; a strip is as wide as the page
    int blockHeight = 0;
    std::uint64_t blockBytes = 0;
    std::uint64_t rowBytes = 0; // of one block
    bool isTiled = false;

    int rowsOfBlocks(PixelSize size) const { return (size.height - 1) / blockHeight + 1; }
};

Result<Grid> gridOfTiles(const File& file, const Page& page) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(file.handle(), TIFFTAG_TILEWIDTH, &width);
    TIFFGetField(file.handle(), TIFFTAG_TILELENGTH, &height);
    Grid grid;
    grid.blockBytes = TIFFTileSize64(file.handle());
    grid.rowBytes = TIFFTileRowSize64(file.handle());
    grid.isTiled = true;
    if (width == 0 || height == 0 || grid.rowBytes == 0 || grid.blockBytes == 0 ||
        grid.blockBytes > kMaxBlock)
        return Error{"TIFF tiles of an impossible size"};
    grid.blockWidth = static_cast<int>(std::min<std::uint32_t>(width, INT32_MAX));
    grid.blockHeight = static_cast<int>(std::min(height, static_cast<std::uint32_t>(page.size.height)));
    return grid;
}

Result<Grid> gridOfStrips(const File& file, const Page& page) {
    Grid grid;
    grid.blockWidth = page.size.width;
    grid.blockHeight = stripHeight(file, page);
    grid.blockBytes = TIFFVStripSize64(file.handle(), static_cast<std::uint32_t>(grid.blockHeight));
    grid.rowBytes = TIFFScanlineSize64(file.handle());
    if (grid.rowBytes == 0 || grid.blockBytes == 0 || grid.rowBytes > kMaxBlock)
        return Error{"TIFF strips of an impossible size"};
    return grid;
}

/// Collects rows that several threads decode.
class RowSink {
public:
    explicit RowSink(ImageBuilder& builder) : m_builder(builder) {}

    void setRows(int firstRow, int count, const PixelRows& rows) {
        const std::scoped_lock lock(m_mutex); // blocks of two threads may share a band
        m_builder.setRows(firstRow, count, rows.pixels(), rows.deepPixels());
    }

private:
    ImageBuilder& m_builder;
    std::mutex m_mutex;
};

/// Decodes rows of blocks. The methods return the number of pixel rows that were at least partly decoded.
class RowOfBlocksReader {
public:
    RowOfBlocksReader(const File& file, const Page& page, const Grid& grid, PixelConverter& converter,
                      RowSink& sink)
        : m_file(file),
          m_page(page),
          m_grid(grid),
          m_sink(sink),
          m_reader(file, page, grid.blockBytes, grid.rowBytes),
          m_group(page, converter),
          m_rows(page.size.width, converter) {}

    int readAll(int begin, int end) {
        int decoded = 0;
        for (int index = begin; index < end; ++index) {
            const int y = index * m_grid.blockHeight;
            const int rows = std::min(m_grid.blockHeight, m_page.size.height - y);
            decoded += m_grid.isTiled ? readTiles(y, rows) : readStrip(y, rows);
        }
        return decoded;
    }

private:
    int readTiles(int y, int rows) {
        const auto width = static_cast<std::size_t>(m_page.size.width);
        const auto tileWidth = static_cast<std::size_t>(m_grid.blockWidth);
        m_rows.reset(rows);
        int decoded = 0;
        for (std::size_t x = 0; x < width; x += tileWidth) {
            const int good = m_group.read(m_reader, rows, [&](std::uint16_t sample) {
                return TIFFComputeTile(m_file.handle(), static_cast<std::uint32_t>(x),
                                       static_cast<std::uint32_t>(y), 0, sample);
            });
            for (int row = 0; row < good; ++row)
                m_rows.convert(m_group.row(row, m_grid.rowBytes), row, x, std::min(tileWidth, width - x));
            decoded = std::max(decoded, good);
        }
        m_sink.setRows(y, decoded, m_rows);
        return decoded;
    }

    int readStrip(int y, int rows) {
        const int decoded = m_group.read(m_reader, rows, [&](std::uint16_t sample) {
            return TIFFComputeStrip(m_file.handle(), static_cast<std::uint32_t>(y), sample);
        });
        m_rows.reset(1);
        for (int row = 0; row < decoded; ++row) {
            m_rows.convert(m_group.row(row, m_grid.rowBytes), 0, 0,
                           static_cast<std::size_t>(m_page.size.width));
            m_sink.setRows(y + row, 1, m_rows);
        }
        return decoded;
    }

    const File& m_file;
    const Page& m_page;
    const Grid& m_grid;
    RowSink& m_sink;
    BlockReader m_reader;
    BlockGroup m_group;
    PixelRows m_rows;
};

/// Decodes all blocks on all cores. The library decodes one block of an open file at a time, so each thread
/// opens the file itself.
int readAllBlocks(const File& file, const Grid& grid, int rowsOfBlocks, RowSink& sink) {
    const int shares = std::min(coreCount(), rowsOfBlocks);
    std::atomic<int> decoded = 0;
    parallelFor(shares, [&](int share) {
        const Result<File> ownFile = File::open(file.bytes());
        const Result<Page> page = ownFile ? readPage(*ownFile) : Result<Page>(ownFile.error());
        if (!page)
            return;
        std::optional<PixelConverter> converter = PixelConverter::create(*ownFile, *page);
        const auto boundary = [&](int index) {
            return static_cast<int>(std::int64_t{rowsOfBlocks} * index / shares);
        };
        if (converter)
            decoded += RowOfBlocksReader(*ownFile, *page, grid, *converter, sink)
                           .readAll(boundary(share), boundary(share + 1));
    });
    return decoded;
}

/// Reads row by row, so that a picture in one strip is not in memory twice.
int readRows(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder) {
    Bytes samples(static_cast<std::size_t>(TIFFScanlineSize64(file.handle())));
    PixelRows pixels(page.size.width, converter);
    pixels.reset(1);
    const std::uint8_t* row = samples.data();
    const int height = stripHeight(file, page);
    int decoded = 0;
    for (int y = 0; y < page.size.height;) {
        if (TIFFReadScanline(file.handle(), samples.data(), static_cast<std::uint32_t>(y), 0) != 1) {
            y = (y / height + 1) * height; // continue with the next strip
            continue;
        }
        pixels.convert({&row, 1}, 0, 0, static_cast<std::size_t>(page.size.width));
        builder.setRows(y++, 1, pixels.pixels(), pixels.deepPixels());
        ++decoded;
    }
    return decoded;
}

} // namespace

Result<int> readBlocks(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder) {
    const bool isTiled = TIFFIsTiled(file.handle()) != 0;
    const Result<Grid> grid = isTiled ? gridOfTiles(file, page) : gridOfStrips(file, page);
    if (!grid)
        return grid.error();
    if (!isTiled && grid->blockBytes > kMaxWholeStrip && !page.planar)
        return readRows(file, page, converter, builder);
    if (grid->blockBytes > kMaxBlock)
        return Error{"TIFF strips of an impossible size"};
    RowSink sink(builder);
    const int rowsOfBlocks = grid->rowsOfBlocks(page.size);
    const bool isWorthThreads = page.compression != COMPRESSION_NONE && page.size.area() > kSmallArea &&
                                grid->blockBytes <= kMaxWholeStrip;
    return isWorthThreads ? readAllBlocks(file, *grid, rowsOfBlocks, sink)
                          : RowOfBlocksReader(file, page, *grid, converter, sink).readAll(0, rowsOfBlocks);
}

} // namespace complexion::tiff
