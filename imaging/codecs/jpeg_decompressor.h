// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_errors.h"
#include "imaging/containers/exif_basics.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace complexion::jpeg {

/// A JPEG file's EXIF and ICC segments. The library's own list of segments takes time quadratic in their
/// number.
class ApplicationSegments {
public:
    ApplicationSegments();

    void add(int marker, ByteView payload);

    /// The EXIF block after its signature. Empty if there is none.
    ByteView exif() const { return m_exif; }

    /// The embedded ICC profile. Empty if it is missing or incomplete.
    Bytes icc() const;

private:
    ByteView m_exif;
    std::vector<ByteView> m_icc;
};

/// libjpeg's decoder for one file. A failed step leaves its message in `error()`.
class Decompressor {
public:
    explicit Decompressor(ByteView file);
    /// For a file in two pieces: the headers, and entropy-coded data from some restart interval on. Supplies
    /// an end marker.
    Decompressor(ByteView file, ByteView rest);
    ~Decompressor() { jpeg_destroy_decompress(&m_info); }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;

    /// Reads the headers up to the first scan's entropy-coded data.
    bool readHeader();

    PixelSize size() const {
        return {static_cast<int>(m_info.image_width), static_cast<int>(m_info.image_height)};
    }
    /// The data after the headers.
    ByteView scanData() const { return {m_info.src->next_input_byte, m_info.src->bytes_in_buffer}; }
    bool isCmyk() const { return m_info.jpeg_color_space == JCS_CMYK || m_info.jpeg_color_space == JCS_YCCK; }
    bool isRgb() const { return m_info.jpeg_color_space == JCS_RGB; }
    bool isGrey() const { return m_info.jpeg_color_space == JCS_GRAYSCALE; }
    bool hasKnownColors() const { return m_info.jpeg_color_space != JCS_UNKNOWN; }
    /// Whether block rows can be decoded independently: one scan, each block row a restart interval, no
    /// subsampling.
    bool hasIndependentBlockRows() const;

    exif::Basics exif() const {
        return m_segments.exif().empty() ? exif::Basics() : exif::readBasics(m_segments.exif());
    }
    /// The EXIF block. Empty if there is none.
    ByteView exifBlock() const { return m_segments.exif(); }
    /// The density in the JFIF segment; 72 pixels per inch if it has none.
    Resolution jfifResolution() const;
    Bytes icc() const { return m_segments.icc(); }

    /// Has `start` call `listener` as soon as the DC coefficients of a progressive picture are known, which
    /// is after its first scan; their last bits may be missing. `coefficientRow` has them.
    void onFirstScan(std::function<void()> listener) { m_firstScanListener = std::move(listener); }

    /// Starts the output of rows as RGBA32 pixels or CMYK samples. Multi-scan pictures are read completely
    /// here, as far as possible.
    bool start();

    int nextRow() const { return static_cast<int>(m_info.output_scanline); }

    /// Reads the next `count` rows. False if reading failed.
    bool readRows(JSAMPROW* rows, int count);

    /// Instead of `start`: reads the coefficients of all scans, 2 bytes each. False if they exceed the memory
    /// limit, if there are too many scans, or if the file cannot be read to its end.
    bool readCoefficients();
    /// A component's row of quantised blocks; padding rows of the last MCU row are included. Valid as long as
    /// this object.
    JBLOCKROW coefficientRow(int component, int row);

    /// Whether the library has issued a warning so far.
    bool hasWarned() const { return m_errors.hasWarned; }
    /// The library's decoder state.
    const jpeg_decompress_struct& info() const { return m_info; }

    Error error() const { return m_errors.error(); }

    /// Describes the damage if pixels are missing.
    std::optional<Error> damage() const;

private:
    /// Supplies the library with the pieces, then with an end marker.
    struct PieceSource : jpeg_source_mgr {
        PieceSource();
        std::array<ByteView, 2> pieces;
        std::size_t next = 0;
    };

    JumpGuard& guard() { return m_errors.guard; }
    static boolean readSegment(j_decompress_ptr info);
    static int maxScans(const jpeg_decompress_struct& info);
    /// Before any scan of a buffered picture is read: the arrays that will hold its coefficients.
    void keepCoefficients();
    bool startOutputOfAllScans();
    /// Reads scans, all of them or until the DC coefficients are known. False if reading failed.
    enum class Until { DcIsKnown, End };
    bool readScans(Until until);
    bool isDcKnown() const;
    bool lacksScans() const;

    ByteView m_file;
    PieceSource m_pieces;
    bool m_isInPieces = false;
    jvirt_barray_ptr* m_coefficients = nullptr; // one array per component, owned by the library
    std::function<void()> m_firstScanListener;
    bool m_isTruncated = false; // reading stopped before the end of the picture
    ApplicationSegments m_segments;
    ErrorHandler m_errors;
    jpeg_decompress_struct m_info = {};
};

} // namespace complexion::jpeg
