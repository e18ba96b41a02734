// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_errors.h"
#include "imaging/containers/exif_basics.h"

#include <array>
#include <optional>
#include <vector>

namespace complexion {

/// The application segments of a JPEG file that matter. The library's own list of them costs the square of
/// their number.
class JpegApplicationSegments {
public:
    JpegApplicationSegments();

    void add(int marker, ByteView payload);

    /// The EXIF block behind its signature; empty without one.
    ByteView exif() const { return m_exif; }

    /// The embedded profile; empty without a complete one.
    Bytes icc() const;

private:
    ByteView m_exif;
    std::vector<ByteView> m_icc;
};

/// The library's decoder on one file. A step that fails leaves a message in `error()`.
class JpegDecompressor {
public:
    explicit JpegDecompressor(ByteView file);
    /// On a file in two pieces, the second from within the coded bytes on; its end is made up.
    JpegDecompressor(ByteView file, ByteView rest);
    ~JpegDecompressor() { jpeg_destroy_decompress(&m_info); }
    JpegDecompressor(const JpegDecompressor&) = delete;
    JpegDecompressor& operator=(const JpegDecompressor&) = delete;

    /// Reads up to the first scan's coded bytes.
    bool readHeader();

    PixelSize size() const {
        return {static_cast<int>(m_info.image_width), static_cast<int>(m_info.image_height)};
    }
    /// What follows the headers.
    ByteView scanData() const { return {m_info.src->next_input_byte, m_info.src->bytes_in_buffer}; }
    bool isCmyk() const { return m_info.jpeg_color_space == JCS_CMYK || m_info.jpeg_color_space == JCS_YCCK; }
    bool isRgb() const { return m_info.jpeg_color_space == JCS_RGB; }
    bool isGrey() const { return m_info.jpeg_color_space == JCS_GRAYSCALE; }
    bool hasKnownColors() const { return m_info.jpeg_color_space != JCS_UNKNOWN; }
    /// Whether no pixel depends on another row of blocks: each is an interval of one scan, none is scaled.
    bool hasBlockRowsApart() const;

    ExifBasics exif() const {
        return m_segments.exif().empty() ? ExifBasics() : readExifBasics(m_segments.exif());
    }
    /// 72 pixels per inch where the file states none.
    Resolution jfifResolution() const;
    Bytes icc() const { return m_segments.icc(); }

    /// Prepares the output of rows in our pixel layout, or of CMYK samples. Pictures in several scans are
    /// read whole here, as far as they can be.
    bool start();

    int nextRow() const { return static_cast<int>(m_info.output_scanline); }

    /// Reads the next `count` rows; false when the picture could not be read on.
    bool readRows(JSAMPROW* rows, int count);

    /// In place of `start`: reads the coefficients of all scans, 2 bytes each. False when that is more than a
    /// picture of any sense needs, and when the file cannot be read to its end.
    bool readCoefficients();
    /// A row of a component's blocks, quantised, wherever it lies in the component's last row of MCUs; valid
    /// as long as this is.
    JBLOCKROW coefficientRow(int component, int row);

    /// Whether anything in what was read so far was out of order.
    bool hasWarned() const { return m_errors.hasWarned; }
    /// What the library knows of the file.
    const jpeg_decompress_struct& info() const { return m_info; }

    Error error() const { return m_errors.error(); }

    /// What is wrong with the picture that was read, where pixels of it are missing.
    std::optional<Error> damage() const;

private:
    /// Gives the library the pieces one after the other, then a made-up end.
    struct PieceSource : jpeg_source_mgr {
        PieceSource();
        std::array<ByteView, 2> pieces;
        std::size_t next = 0;
    };

    JumpGuard& guard() { return m_errors.guard; }
    static boolean readSegment(j_decompress_ptr info);
    static int mostScans(const jpeg_decompress_struct& info);
    bool startOutputOfAllScans();
    bool lacksScans() const;

    ByteView m_file;
    PieceSource m_pieces;
    bool m_isInPieces = false;
    jpeg_progress_mgr m_progress = {};
    jvirt_barray_ptr* m_coefficients = nullptr; // of each component; the library's
    bool m_isCut = false;                       // reading stopped before the picture's end
    JpegApplicationSegments m_segments;
    JpegErrors m_errors;
    jpeg_decompress_struct m_info = {};
};

} // namespace complexion
