// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_coefficient_writer.h"

#include "imaging/codecs/jpeg_errors.h"
#include "imaging/codecs/jpeg_output.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/jpeg_segments.h"

#include <array>
#include <cstring>

namespace complexion::jpeg {

namespace {

/// The quality at which libjpeg sets all quantisation table entries to 1.
constexpr int kLosslessQuality = 100;
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
        : m_layout(layout), m_rows(rows), m_destination(expectedSize) {
        m_info.err = &m_errors;
    }
    ~Transcoder() { jpeg_destroy_compress(&m_info); }
    Transcoder(const Transcoder&) = delete;
    Transcoder& operator=(const Transcoder&) = delete;

    /// Writes a complete file. If `tables` is null, uses the optimal Huffman codes for it.
    bool write(ByteView icc, const CodingTables* tables) {
        if (!start(icc, tables))
            return false;
        for (int i = 0; i < m_rows.count; ++i)
            if (!writeRow(i, *m_rows.row(i)))
                return false;
        return m_errors.guard.run([&] { jpeg_finish_compress(&m_info); });
    }

    ByteView written() const { return m_destination.written(); }
    CodingTables tables() const {
        CodingTables tables = huffmanCodesOf(m_info);
        tables.colorSpace = m_layout.colorSpace;
        return tables;
    }
    Error error() const { return Error{"JPEG: " + m_errors.guard.message()}; }

private:
    bool start(ByteView icc, const CodingTables* tables) {
        const Bytes exif = m_layout.colorSpace == ColorSpace::Rgb ? exifOfDensity() : Bytes();
        return m_errors.guard.run([&] {
            configure(tables);
            for (int i = 0; i < m_info.num_components; ++i) {
                const Component& component = m_layout.components[static_cast<std::size_t>(i)];
                m_arrays[static_cast<std::size_t>(i)] = m_info.mem->request_virt_barray(
                    reinterpret_cast<j_common_ptr>(&m_info), JPOOL_IMAGE, FALSE,
                    static_cast<JDIMENSION>(m_layout.blocksPerMcuRow(component)),
                    static_cast<JDIMENSION>(m_rows.count * component.blocksDown),
                    static_cast<JDIMENSION>(component.blocksDown));
            }
            jpeg_write_coefficients(&m_info, m_arrays.data());
            if (!exif.empty())
                jpeg_write_marker(&m_info, marker::app(1), exif.data(), static_cast<unsigned>(exif.size()));
            if (!icc.empty())
                jpeg_write_icc_profile(&m_info, icc.data(), static_cast<unsigned>(icc.size()));
        });
    }

    void configure(const CodingTables* tables) {
        jpeg_create_compress(&m_info);
        m_info.dest = &m_destination;
        m_info.image_width = static_cast<JDIMENSION>(m_layout.size.width);
        m_info.image_height = static_cast<JDIMENSION>(m_rows.height);
        m_info.input_components = static_cast<int>(m_layout.components.size());
        m_info.in_color_space = libraryColorSpace(m_layout.colorSpace);
        jpeg_set_defaults(&m_info);
        jpeg_set_colorspace(&m_info, m_info.in_color_space);
        jpeg_set_quality(&m_info, kLosslessQuality, TRUE);
        for (int i = 0; i < m_info.num_components; ++i) {
            const Component& component = m_layout.components[static_cast<std::size_t>(i)];
            m_info.comp_info[i].h_samp_factor = component.blocksAcross;
            m_info.comp_info[i].v_samp_factor = component.blocksDown;
        }
        setDensity(&m_info);
        m_info.restart_in_rows = 1;
        m_info.optimize_coding = tables == nullptr;
        if (tables != nullptr)
            setHuffmanCodes(&m_info, *tables);
    }

    bool writeRow(int index, const McuRow& row) {
        return m_errors.guard.run([&] {
            for (std::size_t i = 0; i < m_layout.components.size(); ++i) {
                const auto down = static_cast<JDIMENSION>(m_layout.components[i].blocksDown);
                const auto across =
                    static_cast<std::size_t>(m_layout.blocksPerMcuRow(m_layout.components[i]));
                JBLOCKARRAY blocks =
                    m_info.mem->access_virt_barray(reinterpret_cast<j_common_ptr>(&m_info), m_arrays[i],
                                                   static_cast<JDIMENSION>(index) * down, down, TRUE);
                for (std::size_t y = 0; y < down; ++y)
                    std::memcpy(blocks[y], row[i].data() + y * across, across * sizeof(CoefficientBlock));
            }
        });
    }

    const Layout& m_layout;
    const McuRows& m_rows;
    MemoryDestination m_destination;
    ErrorHandler m_errors;
    jpeg_compress_struct m_info = {};
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
