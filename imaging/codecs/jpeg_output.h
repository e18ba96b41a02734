// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/codecs/jpeg_tables.h"

#include <cstdio> // jpeglib.h needs it

#include <jpeglib.h>

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

/// Sets the encoder's Huffman codes. Call inside a guarded step.
void setHuffmanCodes(j_compress_ptr codec, const CodingTables& tables);

/// The encoder's Huffman codes.
CodingTables huffmanCodesOf(const jpeg_compress_struct& codec);

/// Sets the file's density. Call inside a guarded step, before the encoder starts.
void setDensity(j_compress_ptr codec);

/// The payload of an EXIF segment with our density, for files without a JFIF segment.
Bytes exifOfDensity();

/// The offset of the entropy-coded data, after the SOS segment, in a file that the library wrote.
std::size_t scanStart(ByteView file);

/// `headers`, which the library wrote, changed to a picture of `height` rows.
Bytes withHeight(ByteView headers, int height);

} // namespace complexion::jpeg
