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

/// The quality at which all quantisation table entries are 1.
constexpr int kQuality = 100;
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

LibraryEncoder::LibraryEncoder(std::size_t expectedSize) : m_destination(expectedSize) {
    m_info.err = &m_errors;
}

LibraryEncoder::~LibraryEncoder() {
    jpeg_destroy_compress(&m_info);
}

void LibraryEncoder::create(PixelSize size, int components, J_COLOR_SPACE colorSpace) {
    jpeg_create_compress(&m_info);
    m_info.dest = &m_destination;
    m_info.image_width = static_cast<JDIMENSION>(size.width);
    m_info.image_height = static_cast<JDIMENSION>(size.height);
    m_info.input_components = components;
    m_info.in_color_space = colorSpace;
    jpeg_set_defaults(&m_info);
}

void LibraryEncoder::configure(J_COLOR_SPACE stored, const CodingTables* tables) {
    jpeg_set_colorspace(&m_info, stored);
    jpeg_set_quality(&m_info, kQuality, TRUE);
    m_info.density_unit = 1; // per inch
    m_info.X_density = m_info.Y_density = kDotsPerInch;
    m_info.optimize_coding = tables == nullptr;
    for (std::size_t i = 0; tables != nullptr && i < 2; ++i) {
        setCode(&m_info, &m_info.dc_huff_tbl_ptrs[i], tables->dc[i]);
        setCode(&m_info, &m_info.ac_huff_tbl_ptrs[i], tables->ac[i]);
    }
}

void LibraryEncoder::writeSegments(ByteView exif, ByteView icc) {
    if (!exif.empty())
        jpeg_write_marker(&m_info, marker::app(1), exif.data(), static_cast<unsigned>(exif.size()));
    if (!icc.empty())
        jpeg_write_icc_profile(&m_info, icc.data(), static_cast<unsigned>(icc.size()));
}

CodingTables LibraryEncoder::tables() const {
    CodingTables tables;
    for (std::size_t i = 0; i < 2; ++i) {
        tables.dc[i] = codeOf(*m_info.dc_huff_tbl_ptrs[i]);
        tables.ac[i] = codeOf(*m_info.ac_huff_tbl_ptrs[i]);
    }
    return tables;
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
