// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_coefficient_writer.h"

#include "imaging/codecs/jpeg_output.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/jpeg_segments.h"

#include <array>
#include <cstring>

namespace complexion::jpeg {

namespace {

/// Initial estimate of the encoded size.
constexpr std::size_t kExpectedBytesPerBlock = 24;
constexpr int kMaxComponents = 3;

J_COLOR_SPACE libraryColorSpace(ColorSpace colorSpace) {
    switch (colorSpace) {
    case ColorSpace::Grey:
        return JCS_GRAYSCALE;
    case ColorSpace::Rgb:
        return JCS_RGB;
    case ColorSpace::YCbCr:
        break;
    }
    return JCS_YCbCr;
}

std::size_t expectedBytes(const Layout& layout, int rows) {
    std::size_t blocks = 0;
    for (const Component& component : layout.components)
        blocks += component.blocksPerMcu();
    return blocks * kExpectedBytesPerBlock * static_cast<std::size_t>(layout.mcusAcross) *
           static_cast<std::size_t>(rows);
}

/// Writes coefficients unchanged through libjpeg's transcoding interface. A failed step leaves its message in
/// `error()`.
class Transcoder {
public:
    Transcoder(const Layout& layout, const McuRows& rows, std::size_t expectedSize)
        : m_layout(layout), m_rows(rows), m_encoder(expectedSize) {}

    /// Writes a complete file. If `tables` is null, uses the optimal Huffman codes for it.
    bool write(ByteView icc, const CodingTables* tables) {
        if (!start(icc, tables))
            return false;
        for (int i = 0; i < m_rows.count; ++i)
            if (!writeRow(i, *m_rows.row(i)))
                return false;
        return m_encoder.run([&] { jpeg_finish_compress(&info()); });
    }

    ByteView written() const { return m_encoder.written(); }
    CodingTables tables() const {
        CodingTables tables = m_encoder.tables();
        tables.colorSpace = m_layout.colorSpace;
        return tables;
    }
    Error error() const { return m_encoder.error(); }

private:
    jpeg_compress_struct& info() { return m_encoder.info(); }

    bool start(ByteView icc, const CodingTables* tables) {
        const Bytes exif = m_layout.colorSpace == ColorSpace::Rgb ? exifOfDensity() : Bytes();
        return m_encoder.run([&] {
            configure(tables);
            for (int i = 0; i < info().num_components; ++i) {
                const Component& component = m_layout.components[static_cast<std::size_t>(i)];
                m_arrays[static_cast<std::size_t>(i)] = info().mem->request_virt_barray(
                    reinterpret_cast<j_common_ptr>(&info()), JPOOL_IMAGE, FALSE,
                    static_cast<JDIMENSION>(m_layout.blocksPerMcuRow(component)),
                    static_cast<JDIMENSION>(m_rows.count * component.blocksDown),
                    static_cast<JDIMENSION>(component.blocksDown));
            }
            jpeg_write_coefficients(&info(), m_arrays.data());
            m_encoder.writeSegments(exif, icc);
        });
    }

    void configure(const CodingTables* tables) {
        const J_COLOR_SPACE colorSpace = libraryColorSpace(m_layout.colorSpace);
        m_encoder.create({m_layout.size.width, m_rows.height}, static_cast<int>(m_layout.components.size()),
                         colorSpace);
        m_encoder.configure(colorSpace, tables);
        for (int i = 0; i < info().num_components; ++i) {
            const Component& component = m_layout.components[static_cast<std::size_t>(i)];
            info().comp_info[i].h_samp_factor = component.blocksAcross;
            info().comp_info[i].v_samp_factor = component.blocksDown;
        }
        info().restart_in_rows = 1;
    }

    bool writeRow(int index, const McuRow& row) {
        return m_encoder.run([&] {
            for (std::size_t i = 0; i < m_layout.components.size(); ++i) {
                const auto down = static_cast<JDIMENSION>(m_layout.components[i].blocksDown);
                const auto across =
                    static_cast<std::size_t>(m_layout.blocksPerMcuRow(m_layout.components[i]));
                JBLOCKARRAY blocks =
                    info().mem->access_virt_barray(reinterpret_cast<j_common_ptr>(&info()), m_arrays[i],
                                                   static_cast<JDIMENSION>(index) * down, down, TRUE);
                for (std::size_t y = 0; y < down; ++y)
                    std::memcpy(blocks[y], row[i].data() + y * across, across * sizeof(CoefficientBlock));
            }
        });
    }

    const Layout& m_layout;
    const McuRows& m_rows;
    LibraryEncoder m_encoder;
    std::array<jvirt_barray_ptr, kMaxComponents> m_arrays = {};
};

} // namespace

Result<Bytes> makeTranscodedHeader(const Layout& layout, int height, ByteView icc,
                                   const CodingTables& tables) {
    const McuRow blank = emptyMcuRow(layout);
    const McuRows oneRow = {.count = 1, .height = layout.mcu.height, .row = [&blank](int) { return &blank; }};
    Transcoder transcoder(layout, oneRow, icc.size());
    if (!transcoder.write(icc, &tables))
        return transcoder.error();
    const ByteView headers = transcoder.written().first(scanStart(transcoder.written()));
    return withHeight(headers, height);
}

Result<Bytes> encodeMcuRows(const Layout& layout, const McuRows& rows, const CodingTables& tables) {
    Transcoder transcoder(layout, rows, expectedBytes(layout, rows.count));
    if (!transcoder.write({}, &tables))
        return transcoder.error();
    const ByteView file = transcoder.written();
    return Bytes(file.begin() + static_cast<std::ptrdiff_t>(scanStart(file)),
                 file.end() - kEndOfImage.size());
}

Result<CodingTables> optimalTables(const Layout& layout, const McuRows& rows) {
    Transcoder transcoder(layout, rows, expectedBytes(layout, rows.count));
    if (!transcoder.write({}, nullptr))
        return transcoder.error();
    return transcoder.tables();
}

} // namespace complexion::jpeg
