// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_output.h"

#include "imaging/base/fatal.h"
#include "imaging/containers/jpeg_segments.h"
#include "imaging/containers/tiff_resolution.h"

#include <jerror.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace complexion::jpeg {

namespace {

/// Size of the headers without a profile.
constexpr std::size_t kHeaderSpace = 4096;

// Sizes and offsets in bytes (ITU-T T.81 B.1.1, B.2.2).
constexpr std::size_t kFirstSegment = 2;      // after SOI
constexpr std::size_t kSegmentHeaderSize = 4; // marker and length
constexpr std::size_t kFrameHeightOffset = 5; // in the frame header, after marker, length and precision
constexpr std::uint8_t kBaselineFrame = 0xC0; // SOF0

std::size_t segmentSize(ByteView file, std::size_t position) {
    return 2 + (std::size_t{file[position + 2]} << 8 | file[position + 3]);
}

void setCode(j_compress_ptr codec, JHUFF_TBL** place, const HuffmanCode& code) {
    if (*place == nullptr)
        *place = jpeg_alloc_huff_table(reinterpret_cast<j_common_ptr>(codec));
    std::memcpy((*place)->bits, code.lengthCounts.data(), code.lengthCounts.size());
    std::memcpy((*place)->huffval, code.symbols.data(), code.symbols.size());
}

HuffmanCode codeOf(const JHUFF_TBL& table) {
    HuffmanCode code;
    std::memcpy(code.lengthCounts.data(), table.bits, code.lengthCounts.size());
    std::memcpy(code.symbols.data(), table.huffval, code.symbols.size());
    return code;
}

} // namespace

MemoryDestination::MemoryDestination(std::size_t expectedSize)
    : jpeg_destination_mgr(), capacity(std::max(expectedSize, kHeaderSpace)) {
    init_destination = [](j_compress_ptr codec) { of(codec).grow(codec, 0); };
    empty_output_buffer = [](j_compress_ptr codec) -> boolean {
        MemoryDestination& self = of(codec);
        const std::size_t used = self.capacity; // called only when the buffer is full
        self.capacity *= 2;
        self.grow(codec, used);
        return TRUE;
    };
    term_destination = [](j_compress_ptr) {};
}

MemoryDestination::~MemoryDestination() {
    std::free(bytes);
}

MemoryDestination& MemoryDestination::of(j_compress_ptr codec) {
    return *static_cast<MemoryDestination*>(codec->dest);
}

void MemoryDestination::grow(j_compress_ptr codec, std::size_t used) {
    void* grown = std::realloc(bytes, capacity);
    if (grown == nullptr)
        ERREXIT1(codec, JERR_OUT_OF_MEMORY, 0);
    bytes = static_cast<JOCTET*>(grown);
    next_output_byte = bytes + used;
    free_in_buffer = capacity - used;
}

void setHuffmanCodes(j_compress_ptr codec, const CodingTables& tables) {
    for (std::size_t i = 0; i < 2; ++i) {
        setCode(codec, &codec->dc_huff_tbl_ptrs[i], tables.dc[i]);
        setCode(codec, &codec->ac_huff_tbl_ptrs[i], tables.ac[i]);
    }
}

CodingTables huffmanCodesOf(const jpeg_compress_struct& codec) {
    CodingTables tables;
    for (std::size_t i = 0; i < 2; ++i) {
        tables.dc[i] = codeOf(*codec.dc_huff_tbl_ptrs[i]);
        tables.ac[i] = codeOf(*codec.ac_huff_tbl_ptrs[i]);
    }
    return tables;
}

void setDensity(j_compress_ptr codec) {
    codec->density_unit = 1; // per inch
    codec->X_density = codec->Y_density = kDotsPerInch;
}

Bytes exifOfDensity() {
    Bytes payload = {'E', 'x', 'i', 'f', 0, 0};
    append(payload, tiff::exifOfResolution({kDotsPerInch, kDotsPerInch, Resolution::Unit::Inch}));
    return payload;
}

std::size_t scanStart(ByteView file) {
    std::size_t position = kFirstSegment;
    while (position + kSegmentHeaderSize <= file.size()) {
        const std::uint8_t code = file[position + 1];
        position += segmentSize(file, position);
        if (code == marker::kStartOfScan)
            break;
    }
    return std::min(position, file.size());
}

Bytes withHeight(ByteView headers, int height) {
    Bytes changed(headers.begin(), headers.end());
    std::size_t position = kFirstSegment;
    while (position + kSegmentHeaderSize <= changed.size() && changed[position + 1] != kBaselineFrame)
        position += segmentSize(changed, position);
    if (position + kFrameHeightOffset + 1 >= changed.size())
        fatal("headers of a JPEG file without a frame");
    changed[position + kFrameHeightOffset] = static_cast<std::uint8_t>(height >> 8);
    changed[position + kFrameHeightOffset + 1] = static_cast<std::uint8_t>(height);
    return changed;
}

} // namespace complexion::jpeg
