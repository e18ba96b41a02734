// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_compressor.h"

#include "imaging/codecs/jpeg_errors.h"
#include "imaging/codecs/jpeg_output.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/jpeg_segments.h"

namespace complexion {

namespace {

constexpr int kQuality = 100;
/// An interval is as little as can be coded again alone.
constexpr int kBlockRowsOfInterval = 1;
static_assert(kJpegBlockRows == DCTSIZE);
/// A first guess at the coded size, and what the headers take beside a profile.
constexpr std::size_t kExpectedBytesPerPixel = 1;
constexpr std::size_t kHeaderSpace = 4096;

/// The library's encoder of one picture. A step that fails leaves a message in `error()`.
class Compressor {
public:
    Compressor(PixelSize size, std::size_t expectedBytes) : m_size(size), m_destination(expectedBytes) {
        m_info.err = &m_errors;
    }
    ~Compressor() { jpeg_destroy_compress(&m_info); }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    /// Sets all parameters; `tables` null: the library finds the best ones for the picture.
    bool configure(JpegColors colors, const JpegTables* tables) {
        return m_errors.guard.run([&] {
            jpeg_create_compress(&m_info);
            m_info.dest = &m_destination;
            m_info.image_width = static_cast<JDIMENSION>(m_size.width);
            m_info.image_height = static_cast<JDIMENSION>(m_size.height);
            m_info.input_components = sizeof(RGBA32);
            m_info.in_color_space = JCS_EXT_XBGR;
            jpeg_set_defaults(&m_info);
            jpeg_set_colorspace(&m_info, colors == JpegColors::Rgb ? JCS_RGB : JCS_YCbCr);
            jpeg_set_quality(&m_info, kQuality, TRUE);
            // At quality 100 the integer transform's own rounding shows: the other loses a tenth less, in
            // files that are a twentieth smaller, and takes no longer.
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
        const Bytes exif = m_info.write_JFIF_header ? Bytes() : jpegExifOfDensity();
        return m_errors.guard.run([&] {
            m_info.restart_in_rows = rowsPerInterval;
            jpeg_start_compress(&m_info, TRUE);
            if (!exif.empty())
                jpeg_write_marker(&m_info, jpeg::marker::app(1), exif.data(),
                                  static_cast<unsigned>(exif.size()));
            if (!icc.empty())
                jpeg_write_icc_profile(&m_info, icc.data(), static_cast<unsigned>(icc.size()));
        });
    }

    bool writeRow(const RGBA32* row) {
        return m_errors.guard.run([&] {
            // The library's interface is older than const.
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

    JpegTables tables() const { return huffmanCodesOf(m_info); }

    Error error() const { return m_errors.error(); }

private:
    PixelSize m_size;
    JpegMemoryDestination m_destination;
    JpegErrors m_errors;
    jpeg_compress_struct m_info = {};
};

std::size_t expectedBytes(PixelSize size) {
    return static_cast<std::size_t>(size.area()) * kExpectedBytesPerPixel;
}

} // namespace

Result<Bytes> jpegHeader(PixelSize picture, ByteView icc, const JpegTables& tables) {
    Compressor compressor(picture, icc.size() + kHeaderSpace);
    const std::vector<RGBA32> anyRow(static_cast<std::size_t>(picture.width));
    // The library writes the frame's and the scan's headers when the first row comes.
    if (!compressor.configure(tables.colors, &tables) || !compressor.start(icc, kBlockRowsOfInterval) ||
        !compressor.writeRow(anyRow.data()))
        return compressor.error();
    const ByteView header = compressor.written().first(jpegScanStart(compressor.written()));
    return Bytes(header.begin(), header.end());
}

Result<Bytes> jpegIntervals(PixelSize size, const RGBA32* rows, const JpegTables& tables) {
    Compressor compressor(size, expectedBytes(size) + kHeaderSpace);
    if (!compressor.configure(tables.colors, &tables) || !compressor.start({}, kBlockRowsOfInterval) ||
        !compressor.writeAllRows(rows))
        return compressor.error();
    const ByteView file = compressor.written();
    return Bytes(file.begin() + static_cast<std::ptrdiff_t>(jpegScanStart(file)),
                 file.end() - kJpegEndOfImage.size());
}

Result<JpegTrial> tryJpeg(PixelSize size, const RGBA32* rows, JpegColors colors) {
    Compressor compressor(size, expectedBytes(size));
    if (!compressor.configure(colors, nullptr) || !compressor.start({}, 0) || !compressor.writeAllRows(rows))
        return compressor.error();
    const ByteView file = compressor.written();
    JpegTrial trial{.tables = compressor.tables(), .file = Bytes(file.begin(), file.end())};
    trial.tables.colors = colors;
    return trial;
}

} // namespace complexion
