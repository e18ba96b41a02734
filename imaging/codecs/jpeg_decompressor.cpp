// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_decompressor.h"

#include "imaging/base/large_pages.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/byte_order.h"

#include <algorithm>
#include <string_view>

namespace complexion::jpeg {

namespace {

using namespace std::string_view_literals;

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kIccMarker = JPEG_APP0 + 2;
constexpr std::size_t kMaxIccParts = 255; // counted in one byte (ICC.1:2010 annex B.4)
constexpr std::string_view kExifSignature = "Exif\0"sv;
constexpr std::size_t kExifHeaderSize = 6; // signature and padding byte (CIPA DC-008 section 4.7.2)
constexpr std::string_view kIccSignature = "ICC_PROFILE\0"sv;
constexpr std::size_t kIccHeaderSize = 14; // signature, part number from 1 on, number of parts

/// Memory limit for the coefficients of a multi-scan picture. They are kept, at 2 bytes each, until the last
/// scan.
constexpr long kMaxCoefficientMemory = 2L << 30;
/// Real pictures have about ten scans. Each scan, even an empty one, costs a pass over the whole picture.
constexpr int kMaxScans = 500;
constexpr int kAlwaysAllowedScans = 16;
constexpr std::int64_t kMaxScannedPixels = 2'000'000'000;

/// The fields that the library overwrites from a second frame header before it rejects it.
struct Frame {
    explicit Frame(const jpeg_decompress_struct& info)
        : width(info.image_width),
          height(info.image_height),
          components(info.num_components),
          precision(info.data_precision) {}
    void restore(jpeg_decompress_struct& info) const {
        info.image_width = width;
        info.image_height = height;
        info.num_components = components;
        info.data_precision = precision;
    }
    JDIMENSION width;
    JDIMENSION height;
    int components;
    int precision;
};

} // namespace

ApplicationSegments::ApplicationSegments() {
    m_icc.reserve(kMaxIccParts + 1); // add() is called by the C library and must not throw
}

void ApplicationSegments::add(int marker, ByteView payload) {
    if (marker == kExifMarker && m_exif.empty() && payload.size() >= kExifHeaderSize &&
        startsWith(payload, kExifSignature))
        m_exif = payload.subspan(kExifHeaderSize);
    else if (marker == kIccMarker && payload.size() >= kIccHeaderSize && startsWith(payload, kIccSignature) &&
             m_icc.size() <= kMaxIccParts)
        m_icc.push_back(payload);
}

Bytes ApplicationSegments::icc() const {
    // Some writers number no part: all are "0 of 0", in their order.
    const bool isNumbered =
        std::ranges::any_of(m_icc, [](ByteView payload) { return payload[kIccHeaderSize - 1] != 0; });
    std::vector<ByteView> parts(m_icc.size());
    for (std::size_t i = 0; i < m_icc.size(); ++i) {
        const ByteView payload = m_icc[i];
        const std::size_t number = isNumbered ? payload[kIccHeaderSize - 2] : i + 1;
        if ((isNumbered && payload[kIccHeaderSize - 1] != parts.size()) || number < 1 ||
            number > parts.size() || parts[number - 1].data() != nullptr)
            return {};
        parts[number - 1] = payload.subspan(kIccHeaderSize);
    }
    Bytes profile;
    for (const ByteView part : parts)
        profile.insert(profile.end(), part.begin(), part.end());
    return profile;
}

Decompressor::PieceSource::PieceSource() : jpeg_source_mgr() {
    init_source = [](j_decompress_ptr) {};
    fill_input_buffer = [](j_decompress_ptr info) -> boolean {
        auto& source = *static_cast<PieceSource*>(info->src);
        const ByteView piece =
            source.next < source.pieces.size() ? source.pieces[source.next++] : ByteView(kEndOfImage);
        source.next_input_byte = piece.data();
        source.bytes_in_buffer = piece.size();
        return TRUE;
    };
    skip_input_data = [](j_decompress_ptr info, long count) {
        auto& source = *static_cast<PieceSource*>(info->src);
        for (auto left = static_cast<std::size_t>(std::max(count, 0L)); left > 0;) {
            const std::size_t part = std::min(left, source.bytes_in_buffer);
            source.next_input_byte += part;
            source.bytes_in_buffer -= part;
            left -= part;
            if (left == 0 || source.next > source.pieces.size())
                return;
            source.fill_input_buffer(info);
        }
    };
    resync_to_restart = jpeg_resync_to_restart;
    term_source = [](j_decompress_ptr) {};
}

Decompressor::Decompressor(ByteView file) : m_file(file) {
    m_info.err = &m_errors;
}

Decompressor::Decompressor(ByteView file, ByteView rest) : m_file(file), m_isInPieces(true) {
    m_pieces.pieces = {file, rest};
    m_info.err = &m_errors;
}

bool Decompressor::readHeader() {
    return guard().run([this] {
        jpeg_create_decompress(&m_info);
        m_info.mem->max_memory_to_use = kMaxCoefficientMemory;
        if (m_isInPieces)
            m_info.src = &m_pieces;
        else
            jpeg_mem_src(&m_info, m_file.data(), m_file.size());
        m_info.client_data = &m_segments;
        jpeg_set_marker_processor(&m_info, kExifMarker, readSegment);
        jpeg_set_marker_processor(&m_info, kIccMarker, readSegment);
        jpeg_read_header(&m_info, TRUE);
    });
}

bool Decompressor::hasIndependentBlockRows() const {
    const auto isFullResolution = [](const jpeg_component_info& component) {
        return component.h_samp_factor == 1 && component.v_samp_factor == 1;
    };
    return !m_info.progressive_mode && !m_info.arith_code && m_info.comps_in_scan == m_info.num_components &&
           std::all_of(m_info.comp_info, m_info.comp_info + m_info.num_components, isFullResolution) &&
           m_info.restart_interval == (m_info.image_width + DCTSIZE - 1) / DCTSIZE;
}

Resolution Decompressor::jfifResolution() const {
    constexpr int kPerCentimetre = 2;
    if (!m_info.saw_JFIF_marker || m_info.density_unit > kPerCentimetre)
        return {};
    return {static_cast<double>(m_info.X_density), static_cast<double>(m_info.Y_density),
            static_cast<Resolution::Unit>(m_info.density_unit)};
}

bool Decompressor::start() {
    m_info.out_color_space = isCmyk() ? JCS_CMYK : JCS_EXT_ABGR;
    m_info.buffered_image = jpeg_has_multiple_scans(&m_info);
    if (!guard().run([this] { jpeg_start_decompress(&m_info); }))
        return false;
    return !m_info.buffered_image || startOutputOfAllScans();
}

bool Decompressor::readRows(JSAMPROW* rows, int count) {
    const int end = nextRow() + count;
    const bool succeeded = guard().run([&] {
        const int first = nextRow();
        while (nextRow() < end)
            if (jpeg_read_scanlines(&m_info, rows + (nextRow() - first),
                                    static_cast<JDIMENSION>(end - nextRow())) == 0)
                m_errors.guard.fail("no more rows");
    });
    m_isTruncated = m_isTruncated || !succeeded;
    return succeeded;
}

std::optional<Error> Decompressor::damage() const {
    if (!m_isTruncated && !m_errors.hasLostPixels && !(m_errors.hasNoEnd && lacksScans()))
        return std::nullopt;
    return Error{"JPEG: pixels are missing"};
}

/// Whether a multi-scan picture lacks scans: not all coefficients are known to their last bit.
bool Decompressor::lacksScans() const {
    if (!m_info.buffered_image)
        return false;
    if (m_info.coef_bits == nullptr)
        return true;
    return std::any_of(m_info.coef_bits, m_info.coef_bits + m_info.num_components, [](const auto& bits) {
        return std::any_of(std::begin(bits), std::end(bits), [](int missing) { return missing != 0; });
    });
}

bool Decompressor::readCoefficients() {
    m_info.buffered_image = TRUE;
    return guard().run([this] {
        jpeg_start_decompress(&m_info);
        keepCoefficients();
        while (!jpeg_input_complete(&m_info)) {
            if (m_info.input_scan_number > maxScans(m_info))
                guard().fail("too many scans");
            jpeg_consume_input(&m_info);
        }
    });
}

void Decompressor::keepCoefficients() {
    m_coefficients = jpeg_read_coefficients(&m_info); // reads nothing while the picture is buffered
    for (int i = 0; i < m_info.num_components; ++i) {
        const jpeg_component_info& component = m_info.comp_info[i];
        const auto rows = static_cast<std::ptrdiff_t>(component.height_in_blocks);
        const auto rowBytes = static_cast<std::ptrdiff_t>(component.width_in_blocks * sizeof(JBLOCK));
        auto* const first = reinterpret_cast<std::uint8_t*>(coefficientRow(i, 0));
        auto* const last = reinterpret_cast<std::uint8_t*>(coefficientRow(i, static_cast<int>(rows) - 1));
        // The library may have allocated the rows in several pieces.
        const std::ptrdiff_t length = last - first;
        if (length >= (rows - 1) * rowBytes && length <= 2 * rows * rowBytes)
            useLargePages(first, static_cast<std::size_t>(length));
    }
}

JBLOCKROW Decompressor::coefficientRow(int component, int row) {
    // All rows are in memory and do not move: the library has no backing store.
    return *m_info.mem->access_virt_barray(reinterpret_cast<j_common_ptr>(&m_info), m_coefficients[component],
                                           static_cast<JDIMENSION>(row), 1, FALSE);
}

boolean Decompressor::readSegment(j_decompress_ptr info) {
    constexpr std::size_t kLengthFieldSize = 2;
    jpeg_source_mgr& source = *info->src;
    const ByteView rest(source.next_input_byte, source.bytes_in_buffer);
    const std::size_t length = rest.size() < kLengthFieldSize ? 0 : std::size_t{rest[0]} << 8 | rest[1];
    if (length < kLengthFieldSize || length > rest.size())
        return source.fill_input_buffer(info); // which supplies an end marker
    static_cast<ApplicationSegments*>(info->client_data)
        ->add(info->unread_marker, rest.subspan(kLengthFieldSize, length - kLengthFieldSize));
    source.next_input_byte += length;
    source.bytes_in_buffer -= length;
    return TRUE;
}

int Decompressor::maxScans(const jpeg_decompress_struct& info) {
    const std::int64_t area = std::int64_t{info.image_width} * info.image_height;
    const std::int64_t affordable = kMaxScannedPixels / area;
    return static_cast<int>(std::clamp<std::int64_t>(affordable, kAlwaysAllowedScans, kMaxScans));
}

bool Decompressor::readScans(Until until) {
    return guard().run([this, until] {
        while (!jpeg_input_complete(&m_info) && m_info.input_scan_number <= maxScans(m_info))
            if (jpeg_consume_input(&m_info) == JPEG_SCAN_COMPLETED && until == Until::DcIsKnown &&
                isDcKnown())
                return;
    });
}

bool Decompressor::isDcKnown() const {
    return m_info.coef_bits != nullptr &&
           std::none_of(m_info.coef_bits, m_info.coef_bits + m_info.num_components,
                        [](const auto& bits) { return bits[0] < 0; });
}

bool Decompressor::startOutputOfAllScans() {
    const Frame frame(m_info);
    bool undamaged = guard().run([this] { keepCoefficients(); });
    if (undamaged && m_firstScanListener) {
        undamaged = readScans(Until::DcIsKnown);
        if (undamaged && isDcKnown())
            m_firstScanListener();
    }
    undamaged = undamaged && readScans(Until::End);
    frame.restore(m_info);
    // If asked for the scan before an unfinished one, the library reads no further and outputs what it has of
    // both.
    const bool finished = undamaged && jpeg_input_complete(&m_info);
    m_isTruncated = !finished;
    const int scan = std::max(1, m_info.input_scan_number - (finished ? 0 : 1));
    return guard().run([&] { jpeg_start_output(&m_info, scan); });
}

} // namespace complexion::jpeg
