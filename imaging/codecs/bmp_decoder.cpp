// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"
#include "imaging/codecs/bmp_codec.h"
#include "imaging/codecs/bmp_rle.h"
#include "imaging/containers/bmp_header.h"
#include "imaging/containers/byte_order.h"

#include <bit>

namespace complexion::bmp {

namespace {

using little_endian::read16;
using little_endian::read32;

/// Extracts one colour component from a pixel by its bit mask and scales it to 8 bits.
class Field {
public:
    Field() = default;
    explicit Field(std::uint32_t mask)
        : m_mask(mask), m_shift(mask == 0 ? 0 : std::countr_zero(mask)), m_maxValue(mask >> m_shift) {
        for (std::uint32_t value = 0; value < m_table.size() && value <= m_maxValue; ++value)
            m_table[value] = scaled(value);
    }

    bool exists() const { return m_mask != 0; }

    std::uint8_t extract(std::uint32_t pixel) const {
        const std::uint32_t value = (pixel & m_mask) >> m_shift;
        return value < m_table.size() ? m_table[value] : scaled(value);
    }

private:
    std::uint8_t scaled(std::uint32_t value) const {
        if (m_maxValue == 0)
            return 0;
        return static_cast<std::uint8_t>((std::uint64_t{value} * 255 + m_maxValue / 2) / m_maxValue);
    }

    std::uint32_t m_mask = 0;
    int m_shift = 0;
    std::uint32_t m_maxValue = 0;
    std::array<std::uint8_t, 256> m_table = {};
};

/// Converts uncompressed rows to pixels.
class RowReader {
public:
    explicit RowReader(const Header& header) : m_header(header) {
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            m_fields[i] = Field(header.masks[i]);
    }

    void read(ByteView row, std::vector<RGBA32>& out) const {
        if (m_header.bits <= 8)
            readIndexed(row, out);
        else if (m_header.bits == 24)
            for (std::size_t x = 0; x < out.size(); ++x)
                out[x] = RGBA32(row[3 * x + 2], row[3 * x + 1], row[3 * x], 255);
        else if (m_header.bits == 16)
            for (std::size_t x = 0; x < out.size(); ++x)
                out[x] = fromFields(read16(row, 2 * x));
        else
            for (std::size_t x = 0; x < out.size(); ++x)
                out[x] = fromFields(read32(row, 4 * x));
    }

private:
    void readIndexed(ByteView row, std::vector<RGBA32>& out) const {
        const auto bits = static_cast<std::size_t>(m_header.bits);
        const unsigned mask = (1U << bits) - 1;
        for (std::size_t x = 0; x < out.size(); ++x) {
            const std::size_t bit = x * bits;
            out[x] = m_header.palette[row[bit / 8] >> (8 - bits - bit % 8) & mask];
        }
    }

    RGBA32 fromFields(std::uint32_t pixel) const {
        const std::uint8_t alpha = m_fields[3].exists() ? m_fields[3].extract(pixel) : std::uint8_t{255};
        return {premultiplied(m_fields[0].extract(pixel), alpha),
                premultiplied(m_fields[1].extract(pixel), alpha),
                premultiplied(m_fields[2].extract(pixel), alpha), alpha};
    }

    const Header& m_header;
    std::array<Field, 4> m_fields;
};

/// Decodes the rows that the file holds completely.
RowsFound decodeRows(ByteView pixels, const Header& header, ImageBuilder& builder) {
    const std::size_t rowBytes = header.rowBytes();
    const auto height = static_cast<std::size_t>(header.size.height);
    // The last row's padding may be missing.
    const std::size_t neededBytes =
        (static_cast<std::size_t>(header.size.width) * static_cast<std::size_t>(header.bits) + 7) / 8;
    const std::size_t completeRows =
        pixels.size() < neededBytes ? 0 : std::min(height, (pixels.size() - neededBytes) / rowBytes + 1);
    const RowReader reader(header);
    const int bands = (header.size.height + Tile::kHeight - 1) / Tile::kHeight;
    parallelFor(bands, [&](int band) {
        std::vector<RGBA32> row(static_cast<std::size_t>(header.size.width));
        const int end = std::min(header.size.height, (band + 1) * Tile::kHeight);
        for (int y = band * Tile::kHeight; y < end; ++y) {
            const auto stored = static_cast<std::size_t>(header.topDown ? y : header.size.height - 1 - y);
            if (stored >= completeRows)
                continue;
            reader.read(pixels.subspan(stored * rowBytes, neededBytes), row);
            builder.setRows(y, 1, row.data());
        }
    });
    if (completeRows == 0)
        return RowsFound::None;
    return completeRows < height ? RowsFound::Some : RowsFound::All;
}

/// The codec of an embedded JPEG or PNG file (BI_JPEG, BI_PNG), which takes the place of the pixels; null for
/// plain pixels.
const Codec* embeddedCodec(const Header& header) {
    if (header.compression == Compression::Jpeg)
        return &kJpegCodec;
    return header.compression == Compression::Png ? &kPngCodec : nullptr;
}

bool isRunLengthEncoded(const Header& header) {
    return header.compression == Compression::Rle4 || header.compression == Compression::Rle8 ||
           header.compression == Compression::Rle24;
}

Image atResolution(const Image& image, const Header& header) {
    return image.withSize(sizeAtResolution(image.pixelSize(), header.resolution));
}

} // namespace

Result<std::vector<PixelSize>> measure(ByteView file) {
    COMPLEXION_TRY(const Header header, readHeader(file));
    if (const Codec* codec = embeddedCodec(header))
        return codec->measure(file.subspan(header.pixelsAt));
    return std::vector{header.size};
}

Result<DecodedPicture> decode(ByteView file) {
    COMPLEXION_TRY(const Header header, readHeader(file));
    const ByteView pixels = file.subspan(header.pixelsAt);
    if (const Codec* codec = embeddedCodec(header)) {
        Result<DecodedPicture> picture = codec->read(pixels);
        if (picture)
            picture->image = atResolution(picture->image, header);
        return picture;
    }
    ImageBuilder builder(header.size);
    const RowsFound rows = isRunLengthEncoded(header) ? decodeRuns(pixels, header, builder)
                                                      : decodeRows(pixels, header, builder);
    const Error truncated{"BMP file ends before its pixels"};
    if (rows == RowsFound::None)
        return truncated;
    return DecodedPicture{atResolution(builder.finish().withProfile(header.profile), header),
                          rows == RowsFound::Some ? std::optional(truncated) : std::nullopt};
}

} // namespace complexion::bmp
