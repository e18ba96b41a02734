// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_compressor.h"

#include "imaging/codecs/jpeg_errors.h"
#include "imaging/codecs/jpeg_output.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/jpeg_segments.h"

namespace complexion::jpeg {

namespace {

constexpr int kQuality = 100;
/// A restart interval is the smallest unit that can be encoded again on its own.
constexpr int kBlockRowsPerInterval = 1;
static_assert(kBlockRowHeight == DCTSIZE);
/// Initial estimates of the encoded size, and of the headers without a profile.
constexpr std::size_t kExpectedBytesPerPixel = 1;
constexpr std::size_t kHeaderSpace = 4096;

/// libjpeg's encoder for one picture. A failed step leaves its message in `error()`.
class Compressor {
public:
    Compressor(PixelSize size, std::size_t expectedBytes) : m_size(size), m_destination(expectedBytes) {
        m_info.err = &m_errors;
    }
    ~Compressor() { jpeg_destroy_compress(&m_info); }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    /// Sets all parameters. If `tables` is null, the library computes the optimal Huffman codes.
    bool configure(ColorSpace colorSpace, const CodingTables* tables) {
        return m_errors.guard.run([&] {
            jpeg_create_compress(&m_info);
            m_info.dest = &m_destination;
            m_info.image_width = static_cast<JDIMENSION>(m_size.width);
            m_info.image_height = static_cast<JDIMENSION>(m_size.height);
            m_info.input_components = sizeof(RGBA32);
            m_info.in_color_space = JCS_EXT_XBGR;
            jpeg_set_defaults(&m_info);
            jpeg_set_colorspace(&m_info, colorSpace == ColorSpace::Rgb ? JCS_RGB : JCS_YCbCr);
            jpeg_set_quality(&m_info, kQuality, TRUE);
            // At quality 100 the rounding of the integer DCT matters: the float DCT loses a tenth less, makes
            // files a twentieth smaller and is as fast.
            m_info.dct_method = JDCT_FLOAT;
            for (int i = 0; i < m_info.num_components; ++i)
                m_info.comp_info[i].h_samp_factor = m_info.comp_info[i].v_samp_factor = 1;
            setDensity(&m_info);
            m_info.optimize_coding = tables == nullptr;
            if (tables != nullptr)
                setHuffmanCodes(&m_info, *tables);
        });
    }

    bool start(ByteView icc, int rowsPerInterval) {
        const Bytes exif = m_info.write_JFIF_header ? Bytes() : exifOfDensity();
        return m_errors.guard.run([&] {
            m_info.restart_in_rows = rowsPerInterval;
            jpeg_start_compress(&m_info, TRUE);
            if (!exif.empty())
                jpeg_write_marker(&m_info, marker::app(1), exif.data(), static_cast<unsigned>(exif.size()));
            if (!icc.empty())
                jpeg_write_icc_profile(&m_info, icc.data(), static_cast<unsigned>(icc.size()));
        });
    }

    bool writeRow(const RGBA32* row) {
        return m_errors.guard.run([&] {
            // The library's interface is not const-correct.
            auto* samples = reinterpret_cast<JSAMPROW>(const_cast<RGBA32*>(row));
            jpeg_write_scanlines(&m_info, &samples, 1);
        });
    }

    bool writeAllRows(const RGBA32* rows) {
        return m_errors.guard.run([&] {
            while (m_info.next_scanline < m_info.image_height) {
                auto* samples = reinterpret_cast<JSAMPROW>(
                    const_cast<RGBA32*>(rows + std::size_t{m_info.next_scanline} * m_info.image_width));
                jpeg_write_scanlines(&m_info, &samples, 1);
            }
            jpeg_finish_compress(&m_info);
        });
    }

    ByteView written() const { return m_destination.written(); }

    CodingTables tables() const { return huffmanCodesOf(m_info); }

    Error error() const { return m_errors.error(); }

private:
    PixelSize m_size;
    MemoryDestination m_destination;
    ErrorHandler m_errors;
    jpeg_compress_struct m_info = {};
};

std::size_t expectedBytes(PixelSize size) {
    return static_cast<std::size_t>(size.area()) * kExpectedBytesPerPixel;
}

} // namespace

Result<Bytes> makeHeader(PixelSize picture, ByteView icc, const CodingTables& tables) {
    Compressor compressor(picture, icc.size() + kHeaderSpace);
    const std::vector<RGBA32> anyRow(static_cast<std::size_t>(picture.width));
    // The library writes the frame and scan headers with the first row.
    if (!compressor.configure(tables.colorSpace, &tables) || !compressor.start(icc, kBlockRowsPerInterval) ||
        !compressor.writeRow(anyRow.data()))
        return compressor.error();
    const ByteView header = compressor.written().first(scanStart(compressor.written()));
    return Bytes(header.begin(), header.end());
}

Result<Bytes> encodeBlockRows(PixelSize size, const RGBA32* rows, const CodingTables& tables) {
    Compressor compressor(size, expectedBytes(size) + kHeaderSpace);
    if (!compressor.configure(tables.colorSpace, &tables) || !compressor.start({}, kBlockRowsPerInterval) ||
        !compressor.writeAllRows(rows))
        return compressor.error();
    const ByteView file = compressor.written();
    return Bytes(file.begin() + static_cast<std::ptrdiff_t>(scanStart(file)),
                 file.end() - kEndOfImage.size());
}

Result<TrialEncoding> encodeTrial(PixelSize size, const RGBA32* rows, ColorSpace colorSpace) {
    Compressor compressor(size, expectedBytes(size));
    if (!compressor.configure(colorSpace, nullptr) || !compressor.start({}, 0) ||
        !compressor.writeAllRows(rows))
        return compressor.error();
    const ByteView file = compressor.written();
    TrialEncoding trial{.tables = compressor.tables(), .file = Bytes(file.begin(), file.end())};
    trial.tables.colorSpace = colorSpace;
    return trial;
}

} // namespace complexion::jpeg
