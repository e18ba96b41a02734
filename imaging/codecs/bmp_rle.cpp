// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/bmp_rle.h"

#include <algorithm>
#include <optional>

namespace complexion::bmp {

namespace {

/// Reads the encoded bytes sequentially.
class ByteReader {
public:
    explicit ByteReader(ByteView bytes) : m_bytes(bytes) {}

    /// Returns the next `count` bytes, or nothing if fewer remain.
    std::optional<ByteView> take(std::size_t count) {
        if (m_bytes.size() < count)
            return std::nullopt;
        const ByteView taken = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return taken;
    }

private:
    ByteView m_bytes;
};

class RunDecoder {
public:
    RunDecoder(ByteView code, const Header& header, ImageBuilder& builder)
        : m_reader(code),
          m_header(header),
          m_builder(builder),
          m_background(header.palette[0]),
          m_row(static_cast<std::size_t>(header.size.width), m_background) {}

    RowsFound run() {
        const bool complete = decode();
        const bool lacksPixels = !complete && (m_y + 1 < m_header.size.height || m_x < m_header.size.width);
        // After the end-of-bitmap code the remaining rows are background. Truncated data keeps the row it had
        // begun.
        if (complete)
            while (m_y < m_header.size.height)
                finishRow();
        else if (m_x > 0 && m_y < m_header.size.height)
            finishRow();
        if (m_y == 0)
            return RowsFound::None;
        return lacksPixels ? RowsFound::Some : RowsFound::All;
    }

private:
    /// False if the data ends without an end-of-bitmap code.
    bool decode() {
        while (m_y < m_header.size.height) {
            const auto pair = m_reader.take(2);
            if (!pair)
                return false;
            const int count = (*pair)[0];
            const int value = (*pair)[1];
            if (count > 0) {
                if (!readEncodedRun(count, static_cast<std::uint8_t>(value)))
                    return false;
            } else if (value == kEndOfLine) {
                finishRow();
            } else if (value == kEndOfBitmap) {
                return true;
            } else if (value == kDelta) {
                if (!applyDelta())
                    return false;
            } else if (!readAbsoluteRun(value)) {
                return false;
            }
        }
        return true;
    }

    bool readEncodedRun(int count, std::uint8_t value) {
        RGBA32 even = m_header.palette[value];
        RGBA32 odd = even;
        if (m_header.bits == 4) {
            even = m_header.palette[value >> 4];
            odd = m_header.palette[value & 15];
        } else if (m_header.bits == 24) {
            const auto rest = m_reader.take(2);
            if (!rest)
                return false;
            even = odd = RGBA32((*rest)[1], (*rest)[0], value, 255);
        }
        for (int i = 0; i < count; ++i)
            put(i % 2 == 0 ? even : odd);
        return true;
    }

    bool readAbsoluteRun(int count) {
        const std::size_t bytes = (static_cast<std::size_t>(count * m_header.bits) + 7) / 8;
        const auto pixels = m_reader.take(bytes);
        if (!pixels)
            return false;
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            if (m_header.bits == 24)
                put(RGBA32((*pixels)[3 * i + 2], (*pixels)[3 * i + 1], (*pixels)[3 * i], 255));
            else if (m_header.bits == 8)
                put(m_header.palette[(*pixels)[i]]);
            else
                put(m_header.palette[(*pixels)[i / 2] >> (i % 2 == 0 ? 4 : 0) & 15]);
        }
        // Absolute runs are padded to 16-bit words; the last padding byte may be missing.
        return bytes % 2 == 0 || m_reader.take(1) || m_y >= m_header.size.height;
    }

    bool applyDelta() {
        const auto by = m_reader.take(2);
        if (!by)
            return false;
        const int column = m_x + (*by)[0];
        for (int i = 0; i < (*by)[1] && m_y < m_header.size.height; ++i)
            finishRow();
        m_x = std::min(column, m_header.size.width);
        return true;
    }

    void put(RGBA32 pixel) {
        if (m_x < m_header.size.width)
            m_row[static_cast<std::size_t>(m_x++)] = pixel;
    }

    void finishRow() {
        m_builder.setRows(m_header.topDown ? m_y : m_header.size.height - 1 - m_y, 1, m_row.data());
        std::ranges::fill(m_row, m_background);
        ++m_y;
        m_x = 0;
    }

    // Escape codes after a run length of 0.
    static constexpr int kEndOfLine = 0;
    static constexpr int kEndOfBitmap = 1;
    static constexpr int kDelta = 2;

    ByteReader m_reader;
    const Header& m_header;
    ImageBuilder& m_builder;
    RGBA32 m_background;
    std::vector<RGBA32> m_row;
    int m_x = 0;
    int m_y = 0; // rows finished, in the file's order
};

} // namespace

RowsFound decodeRuns(ByteView code, const Header& header, ImageBuilder& builder) {
    return RunDecoder(code, header, builder).run();
}

} // namespace complexion::bmp
