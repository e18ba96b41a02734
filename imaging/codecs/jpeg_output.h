// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/codecs/jpeg_tables.h"

#include <cstdio> // jpeglib.h needs it

#include <jpeglib.h>

namespace complexion {

/// The density that our files state.
inline constexpr int kJpegDotsPerInch = 72;

/// The library's output in memory that grows. Written to inside guarded steps, so memory is the C library's
/// and its lack is an error of libjpeg.
struct JpegMemoryDestination : jpeg_destination_mgr {
    explicit JpegMemoryDestination(std::size_t expectedSize);
    ~JpegMemoryDestination();
    JpegMemoryDestination(const JpegMemoryDestination&) = delete;
    JpegMemoryDestination& operator=(const JpegMemoryDestination&) = delete;

    ByteView written() const { return {bytes, capacity - free_in_buffer}; }

private:
    static JpegMemoryDestination& of(j_compress_ptr codec);
    void grow(j_compress_ptr codec, std::size_t used);

    JOCTET* bytes = nullptr;
    std::size_t capacity;
};

/// Has the encoder take these codes. Inside a guarded step.
void setHuffmanCodes(j_compress_ptr codec, const JpegTables& tables);

/// The codes that the encoder takes.
JpegTables huffmanCodesOf(const jpeg_compress_struct& codec);

/// Has the file state our density. Inside a guarded step, before the encoder is started.
void setDensity(j_compress_ptr codec);

/// The payload of an EXIF segment that tells the density: for files that have no JFIF segment.
Bytes jpegExifOfDensity();

/// Where the entropy-coded bytes begin in a file that the library wrote: after the SOS segment.
std::size_t jpegScanStart(ByteView file);

/// Headers that the library wrote, for a picture of `height` rows.
Bytes withJpegHeight(ByteView headers, int height);

} // namespace complexion
