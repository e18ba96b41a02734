// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_compressor.h"

#include "imaging/codecs/jpeg_output.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/jpeg_segments.h"

namespace complexion::jpeg {

namespace {

/// A restart interval is the smallest unit that can be encoded again on its own.
constexpr int kBlockRowsPerInterval = 1;
static_assert(kBlockRowHeight == DCTSIZE);
/// Initial estimates of the encoded size, and of the headers without a profile.
constexpr std::size_t kExpectedBytesPerPixel = 1;
constexpr std::size_t kHeaderSpace = 4096;

/// Encodes the pixels of one picture. A failed step leaves its message in `error()`.
class Compressor {
public:
    Compressor(PixelSize size, std::size_t expectedBytes) : m_size(size), m_encoder(expectedBytes) {}

    /// Sets all parameters. If `tables` is null, the library computes the optimal Huffman codes.
    bool configure(ColorSpace colorSpace, const CodingTables* tables) {
        return m_encoder.run([&] {
            m_encoder.create(m_size, sizeof(RGBA32), JCS_EXT_XBGR);
            m_encoder.configure(colorSpace == ColorSpace::Rgb ? JCS_RGB : JCS_YCbCr, tables);
            // At quality 100 the rounding of the integer DCT matters: the float DCT loses a tenth less, makes
            // files a twentieth smaller and is as fast.
            info().dct_method = JDCT_FLOAT;
            for (int i = 0; i < info().num_components; ++i)
                info().comp_info[i].h_samp_factor = info().comp_info[i].v_samp_factor = 1;
        });
    }

    bool start(ByteView icc, int rowsPerInterval) {
        const Bytes exif = info().write_JFIF_header ? Bytes() : exifOfDensity();
        return m_encoder.run([&] {
            info().restart_in_rows = rowsPerInterval;
            jpeg_start_compress(&info(), TRUE);
            m_encoder.writeSegments(exif, icc);
        });
    }

    bool writeRow(const RGBA32* row) {
        return m_encoder.run([&] { writeScanline(row); });
    }

    bool writeAllRows(const RGBA32* rows) {
        return m_encoder.run([&] {
            while (info().next_scanline < info().image_height)
                writeScanline(rows + std::size_t{info().next_scanline} * info().image_width);
            jpeg_finish_compress(&info());
        });
    }

    ByteView written() const { return m_encoder.written(); }
    CodingTables tables() const { return m_encoder.tables(); }
    Error error() const { return m_encoder.error(); }

private:
    jpeg_compress_struct& info() { return m_encoder.info(); }

    void writeScanline(const RGBA32* row) {
        // The library's interface is not const-correct.
        auto* samples = reinterpret_cast<JSAMPROW>(const_cast<RGBA32*>(row));
        jpeg_write_scanlines(&info(), &samples, 1);
    }

    PixelSize m_size;
    LibraryEncoder m_encoder;
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
