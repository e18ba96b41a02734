// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/codecs/jpeg_errors.h"
#include "imaging/codecs/jpeg_tables.h"

namespace complexion::jpeg {

/// The density in the files we write.
inline constexpr int kDotsPerInch = 72;

/// A libjpeg destination in growing memory. It is written to inside guarded steps, so it uses malloc and
/// reports exhausted memory as a libjpeg error.
struct MemoryDestination : jpeg_destination_mgr {
    explicit MemoryDestination(std::size_t expectedSize);
    ~MemoryDestination();
    MemoryDestination(const MemoryDestination&) = delete;
    MemoryDestination& operator=(const MemoryDestination&) = delete;

    ByteView written() const { return {bytes, capacity - free_in_buffer}; }

private:
    static MemoryDestination& of(j_compress_ptr codec);
    void grow(j_compress_ptr codec, std::size_t used);

    JOCTET* bytes = nullptr;
    std::size_t capacity;
};

/// libjpeg's encoder for one file in memory. A failed step leaves its message in `error()`.
class LibraryEncoder {
public:
    explicit LibraryEncoder(std::size_t expectedSize);
    ~LibraryEncoder();
    LibraryEncoder(const LibraryEncoder&) = delete;
    LibraryEncoder& operator=(const LibraryEncoder&) = delete;

    /// Calls `step`, as JumpGuard::run. The functions up to the next comment are for use in a step only.
    template <class Step>
    [[nodiscard]] bool run(const Step& step) {
        return m_errors.guard.run(step);
    }
    /// Begins with the library's default parameters.
    void create(PixelSize size, int components, J_COLOR_SPACE colorSpace);
    /// Sets the parameters of all files but thumbnails: quality 100, the density, and Huffman codes, which
    /// the library optimises if `tables` is null.
    void configure(J_COLOR_SPACE stored, const CodingTables* tables);
    /// After the start: an EXIF segment and a profile, unless empty.
    void writeSegments(ByteView exif, ByteView icc);

    // At any time.
    jpeg_compress_struct& info() { return m_info; }
    ByteView written() const { return m_destination.written(); }
    /// The Huffman codes.
    CodingTables tables() const;
    Error error() const { return m_errors.error(); }

private:
    MemoryDestination m_destination;
    ErrorHandler m_errors;
    jpeg_compress_struct m_info = {};
};

/// The payload of an EXIF segment with our density, for files without a JFIF segment.
Bytes exifOfDensity();

/// The offset of the entropy-coded data, after the SOS segment, in a file that the library wrote.
std::size_t scanStart(ByteView file);

/// `headers`, which the library wrote, changed to a picture of `height` rows.
Bytes withHeight(ByteView headers, int height);

} // namespace complexion::jpeg
