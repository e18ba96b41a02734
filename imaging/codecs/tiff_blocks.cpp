// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_blocks.h"

#include <algorithm>

namespace complexion::tiff {

namespace {

// Strips of one picture-high piece are read row by row above this size, in bytes.
constexpr std::uint64_t kLargestWholeStrip = std::uint64_t{64} << 20;
// What has to be read whole is refused above this size.
constexpr std::uint64_t kLargestBlock = std::uint64_t{1} << 30;

/// One block's samples, decoded.
struct Block {
    Bytes bytes;
    int rows = 0; // that could be decoded
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
        readCut(index, block.bytes);
        // What is decoded before the damage is of use, but not in the file's foreign byte order.
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

    /// Decodes as much of a block as the file holds when its end is cut off: the library does not even begin.
    void readCut(std::uint32_t index, Bytes& out) {
        const std::uint64_t offset = TIFFGetStrileOffset(m_file.handle(), index);
        const std::uint64_t count = TIFFGetStrileByteCount(m_file.handle(), index);
        const ByteView file = m_file.bytes();
        if (offset >= file.size() || count <= file.size() - offset)
            return;
        const ByteView there = file.subspan(static_cast<std::size_t>(offset));
        Bytes coded(there.begin(), there.end()); // the library may turn its bits round in place
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

/// The blocks of all samples used that lie at one place: one block, or in a planar page one for each sample.
class BlockGroup {
public:
    BlockGroup(const Page& page, const PixelConverter& converter)
        : m_page(page),
          m_samples(converter.samplesUsed()),
          m_blocks(page.planar ? m_samples.size() : 1),
          m_rows(m_blocks.size()) {}

    /// `blockOf` gives the index of a sample's block. Gives the rows that could be decoded of every sample.
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

/// The number of rows in a strip.
int stripHeight(const File& file, const Page& page) {
    std::uint32_t rows = 0;
    TIFFGetFieldDefaulted(file.handle(), TIFFTAG_ROWSPERSTRIP, &rows);
    return static_cast<int>(std::clamp<std::uint32_t>(rows, 1, static_cast<std::uint32_t>(page.size.height)));
}

Result<int> readTiles(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder) {
    std::uint32_t tileWidth = 0;
    std::uint32_t tileHeight = 0;
    TIFFGetField(file.handle(), TIFFTAG_TILEWIDTH, &tileWidth);
    TIFFGetField(file.handle(), TIFFTAG_TILELENGTH, &tileHeight);
    const std::uint64_t tileBytes = TIFFTileSize64(file.handle());
    const std::uint64_t rowBytes = TIFFTileRowSize64(file.handle());
    if (tileWidth == 0 || tileHeight == 0 || rowBytes == 0 || tileBytes == 0 || tileBytes > kLargestBlock)
        return Error{"TIFF tiles of an impossible size"};

    BlockReader reader(file, page, tileBytes, rowBytes);
    BlockGroup group(page, converter);
    const auto width = static_cast<std::uint32_t>(page.size.width);
    const auto height = static_cast<std::uint32_t>(page.size.height);
    int decoded = 0;
    for (std::uint32_t y = 0; y < height; y += tileHeight) {
        const auto rows = static_cast<int>(std::min(tileHeight, height - y));
        std::vector<RGBA32> slab(std::size_t{width} * static_cast<std::size_t>(rows));
        int decodedHere = 0;
        for (std::uint32_t x = 0; x < width; x += tileWidth) {
            const int good = group.read(reader, rows, [&](std::uint16_t sample) {
                return TIFFComputeTile(file.handle(), x, y, 0, sample);
            });
            const std::size_t count = std::min(tileWidth, width - x);
            for (int row = 0; row < good; ++row)
                converter.convert(group.row(row, rowBytes),
                                  std::span(slab).subspan(static_cast<std::size_t>(row) * width + x, count));
            decodedHere = std::max(decodedHere, good);
            if (width - x <= tileWidth)
                break;
        }
        builder.setRows(static_cast<int>(y), decodedHere, slab.data());
        decoded += decodedHere;
        if (height - y <= tileHeight)
            break;
    }
    return decoded;
}

int readStrips(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder,
               std::uint64_t stripBytes) {
    const std::uint64_t rowBytes = TIFFScanlineSize64(file.handle());
    const int height = stripHeight(file, page);
    BlockReader reader(file, page, stripBytes, rowBytes);
    BlockGroup group(page, converter);
    std::vector<RGBA32> pixels(static_cast<std::size_t>(page.size.width));
    int decoded = 0;
    for (int y = 0; y < page.size.height; y += height) {
        const int rows = std::min(height, page.size.height - y);
        const int good = group.read(reader, rows, [&](std::uint16_t sample) {
            return TIFFComputeStrip(file.handle(), static_cast<std::uint32_t>(y), sample);
        });
        for (int row = 0; row < good; ++row) {
            converter.convert(group.row(row, rowBytes), pixels);
            builder.setRows(y + row, 1, pixels.data());
        }
        decoded += good;
        if (page.size.height - y <= height)
            break;
    }
    return decoded;
}

/// Row by row, so that a picture in one strip is not held twice.
int readRows(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder) {
    Bytes samples(static_cast<std::size_t>(TIFFScanlineSize64(file.handle())));
    std::vector<RGBA32> pixels(static_cast<std::size_t>(page.size.width));
    const std::uint8_t* row = samples.data();
    const int height = stripHeight(file, page);
    int decoded = 0;
    for (int y = 0; y < page.size.height;) {
        if (TIFFReadScanline(file.handle(), samples.data(), static_cast<std::uint32_t>(y), 0) != 1) {
            y = (y / height + 1) * height; // behind the damage, a strip later
            continue;
        }
        converter.convert({&row, 1}, pixels);
        builder.setRows(y++, 1, pixels.data());
        ++decoded;
    }
    return decoded;
}

} // namespace

Result<int> readBlocks(const File& file, const Page& page, PixelConverter& converter, ImageBuilder& builder) {
    if (TIFFIsTiled(file.handle()) != 0)
        return readTiles(file, page, converter, builder);
    const std::uint64_t rowBytes = TIFFScanlineSize64(file.handle());
    const auto height = static_cast<std::uint32_t>(stripHeight(file, page));
    const std::uint64_t stripBytes = TIFFVStripSize64(file.handle(), height);
    if (rowBytes == 0 || stripBytes == 0 || rowBytes > kLargestBlock)
        return Error{"TIFF strips of an impossible size"};
    if (stripBytes > kLargestWholeStrip && !page.planar)
        return readRows(file, page, converter, builder);
    if (stripBytes > kLargestBlock)
        return Error{"TIFF strips of an impossible size"};
    return readStrips(file, page, converter, builder, stripBytes);
}

Result<int> readByLibrary(const File& file, const Page& page, ImageBuilder& builder) {
    constexpr std::size_t kMessageSize = 1024; // the library's own
    std::array<char, kMessageSize> message = {};
    TIFF* handle = file.handle();
    if (TIFFRGBAImageOK(handle, message.data()) == 0)
        return Error{message.data()};
    int height = stripHeight(file, page);
    if (TIFFIsTiled(handle) != 0) {
        std::uint32_t tileHeight = 0;
        TIFFGetField(handle, TIFFTAG_TILELENGTH, &tileHeight);
        height = static_cast<int>(
            std::clamp<std::uint32_t>(tileHeight, 1, static_cast<std::uint32_t>(page.size.height)));
    }
    const std::uint64_t slabBytes = static_cast<std::uint64_t>(height) *
                                    static_cast<std::uint64_t>(page.size.width) * sizeof(std::uint32_t);
    if (slabBytes > kLargestBlock)
        return Error{"TIFF strips of an impossible size"};

    struct Image : TIFFRGBAImage {
        ~Image() { TIFFRGBAImageEnd(this); }
    };
    auto image = std::make_unique<Image>();
    if (TIFFRGBAImageBegin(image.get(), handle, 1, message.data()) == 0)
        return Error{message.data()};
    image->orientation = ORIENTATION_TOPLEFT; // the rows as they are stored, top row first
    image->req_orientation = ORIENTATION_TOPLEFT;
    std::vector<std::uint32_t> slab(static_cast<std::size_t>(slabBytes / sizeof(std::uint32_t)));
    int decoded = 0;
    for (int y = 0; y < page.size.height; y += height) {
        const int rows = std::min(height, page.size.height - y);
        image->row_offset = y;
        std::ranges::fill(slab, 0);
        if (TIFFRGBAImageGet(image.get(), slab.data(), static_cast<std::uint32_t>(page.size.width),
                             static_cast<std::uint32_t>(rows)) == 0)
            continue;
        std::vector<RGBA32> pixels;
        pixels.reserve(slab.size());
        for (const std::uint32_t word : slab)
            pixels.emplace_back(
                static_cast<std::uint8_t>(TIFFGetR(word)), static_cast<std::uint8_t>(TIFFGetG(word)),
                static_cast<std::uint8_t>(TIFFGetB(word)), static_cast<std::uint8_t>(TIFFGetA(word)));
        builder.setRows(y, rows, pixels.data());
        decoded += rows;
    }
    return decoded;
}

} // namespace complexion::tiff
