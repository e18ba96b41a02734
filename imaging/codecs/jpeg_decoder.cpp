// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_decoder.h"

#include "imaging/codecs/codec.h"
#include "imaging/codecs/device_colors.h"
#include "imaging/codecs/jpeg_errors.h"
#include "imaging/codecs/plausible_area.h"
#include "imaging/metadata/exif_basics.h"
#include "imaging/orientation.h"
#include "imaging/parallel.h"

#include <cstring>

namespace complexion {

namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kIccMarker = JPEG_APP0 + 2;
constexpr std::size_t kMostIccParts = 255; // a byte counts them
constexpr std::array<std::uint8_t, 5> kExifSignature = {'E', 'x', 'i', 'f', 0};
constexpr std::size_t kExifHeaderSize = 6; // the signature and a padding byte
constexpr std::array<std::uint8_t, 12> kIccSignature = {'I', 'C', 'C', '_', 'P', 'R',
                                                        'O', 'F', 'I', 'L', 'E', 0};
constexpr std::size_t kIccHeaderSize = 14; // the signature, the part's number from 1 on, the number of parts

/// The coefficients of a picture in several scans are kept in memory until the last has come, 2 bytes each.
constexpr long kMostCoefficientMemory = 2L << 30;
/// Real pictures have some ten scans. Each costs a walk over the whole picture, even an empty one.
constexpr int kMostScans = 500;
constexpr int kAlwaysAllowedScans = 16;
constexpr std::int64_t kMostScannedPixels = 8'000'000'000;
/// A block of 64 pixels takes at least a bit for each component's first coefficient, save in a picture of one
/// colour that only an arithmetic coder can squeeze further.
constexpr std::int64_t kMostPixelsPerByte = 512;
/// What the library shows where data is missing: all coefficients 0.
constexpr RGBA32 kMissing(128, 128, 128, 255);

constexpr double kCentimetresPerInch = 2.54;

template <std::size_t length>
bool startsWith(ByteView bytes, const std::array<std::uint8_t, length>& signature) {
    return bytes.size() >= length && std::memcmp(bytes.data(), signature.data(), length) == 0;
}

/// The application segments that matter. The library's own list of them costs the square of their number.
class Segments {
public:
    Segments() { m_icc.reserve(kMostIccParts + 1); } // nothing may be thrown through the library

    void add(int marker, ByteView payload) {
        if (marker == kExifMarker && m_exif.empty() && payload.size() >= kExifHeaderSize &&
            startsWith(payload, kExifSignature))
            m_exif = payload.subspan(kExifHeaderSize);
        else if (marker == kIccMarker && payload.size() >= kIccHeaderSize &&
                 startsWith(payload, kIccSignature) && m_icc.size() <= kMostIccParts)
            m_icc.push_back(payload);
    }

    ByteView exif() const { return m_exif; }

    /// The embedded profile; empty without a complete one.
    Bytes icc() const {
        std::vector<ByteView> parts(m_icc.size());
        for (const ByteView payload : m_icc) {
            const std::size_t number = payload[kIccHeaderSize - 2];
            if (payload[kIccHeaderSize - 1] != parts.size() || number < 1 || number > parts.size() ||
                parts[number - 1].data() != nullptr)
                return {};
            parts[number - 1] = payload.subspan(kIccHeaderSize);
        }
        Bytes profile;
        for (const ByteView part : parts)
            profile.insert(profile.end(), part.begin(), part.end());
        return profile;
    }

private:
    ByteView m_exif;
    std::vector<ByteView> m_icc;
};

/// The library's decoder on one file. A step that fails leaves a message in `error()`.
class Decompressor {
public:
    explicit Decompressor(ByteView file) : m_file(file) { m_info.err = &m_errors; }
    ~Decompressor() { jpeg_destroy_decompress(&m_info); }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;

    /// Reads up to the first scan.
    bool readHeader() {
        return guard().run([this] {
            jpeg_create_decompress(&m_info);
            m_info.mem->max_memory_to_use = kMostCoefficientMemory;
            jpeg_mem_src(&m_info, m_file.data(), m_file.size());
            m_info.client_data = &m_segments;
            jpeg_set_marker_processor(&m_info, kExifMarker, readSegment);
            jpeg_set_marker_processor(&m_info, kIccMarker, readSegment);
            jpeg_read_header(&m_info, TRUE);
        });
    }

    PixelSize size() const {
        return {static_cast<int>(m_info.image_width), static_cast<int>(m_info.image_height)};
    }
    /// Whether anything follows the headers.
    bool hasScanData() const { return m_info.src->bytes_in_buffer > 2; }
    bool isCmyk() const { return m_info.jpeg_color_space == JCS_CMYK || m_info.jpeg_color_space == JCS_YCCK; }
    bool isGrey() const { return m_info.jpeg_color_space == JCS_GRAYSCALE; }
    bool hasKnownColors() const { return m_info.jpeg_color_space != JCS_UNKNOWN; }

    ExifBasics exif() const {
        return m_segments.exif().empty() ? ExifBasics() : readExifBasics(m_segments.exif());
    }

    Density jfifDensity() const {
        constexpr int kPerInch = 1;
        constexpr int kPerCentimetre = 2;
        if (!m_info.saw_JFIF_marker ||
            (m_info.density_unit != kPerInch && m_info.density_unit != kPerCentimetre))
            return {};
        const double unit = m_info.density_unit == kPerCentimetre ? kCentimetresPerInch : 1;
        return {m_info.X_density * unit, m_info.Y_density * unit};
    }

    Bytes icc() const { return m_segments.icc(); }

    /// Prepares the output of rows in our pixel layout, or of CMYK samples. Pictures in several scans are
    /// read whole here, as far as they can be.
    bool start() {
        m_info.out_color_space = isCmyk() ? JCS_CMYK : JCS_EXT_ABGR;
        m_info.buffered_image = jpeg_has_multiple_scans(&m_info);
        if (!guard().run([this] { jpeg_start_decompress(&m_info); }))
            return false;
        return !m_info.buffered_image || startOutputOfAllScans();
    }

    int nextRow() const { return static_cast<int>(m_info.output_scanline); }

    /// Reads the next `count` rows; false when the picture could not be read on.
    bool readRows(JSAMPROW* rows, int count) {
        const int end = nextRow() + count;
        return guard().run([&] {
            const int first = nextRow();
            while (nextRow() < end)
                if (jpeg_read_scanlines(&m_info, rows + (nextRow() - first),
                                        static_cast<JDIMENSION>(end - nextRow())) == 0)
                    m_errors.guard.fail("no more rows");
        });
    }

    Error error() const { return Error{"JPEG: " + m_errors.guard.message()}; }

private:
    JumpGuard& guard() { return m_errors.guard; }

    /// What the library calls behind the marker of an application segment.
    static boolean readSegment(j_decompress_ptr info) {
        constexpr std::size_t kLengthLength = 2;
        jpeg_source_mgr& source = *info->src;
        const ByteView rest(source.next_input_byte, source.bytes_in_buffer);
        const std::size_t length = rest.size() < kLengthLength ? 0 : std::size_t{rest[0]} << 8 | rest[1];
        if (length < kLengthLength || length > rest.size())
            return source.fill_input_buffer(info); // which makes an end of the picture
        static_cast<Segments*>(info->client_data)
            ->add(info->unread_marker, rest.subspan(kLengthLength, length - kLengthLength));
        source.next_input_byte += length;
        source.bytes_in_buffer -= length;
        return TRUE;
    }

    int mostScans() const {
        const std::int64_t affordable = kMostScannedPixels / size().area();
        return static_cast<int>(std::clamp<std::int64_t>(affordable, kAlwaysAllowedScans, kMostScans));
    }

    /// What the library takes over from a second frame header before it refuses it.
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

    bool startOutputOfAllScans() {
        const Frame frame(m_info);
        const bool undamaged = guard().run([this] {
            while (!jpeg_input_complete(&m_info) && m_info.input_scan_number <= mostScans())
                jpeg_consume_input(&m_info);
        });
        frame.restore(m_info);
        // Asked for the scan before the one that it could not finish, the library reads no further, and shows
        // what it has of both.
        const bool finished = undamaged && jpeg_input_complete(&m_info);
        const int scan = std::max(1, m_info.input_scan_number - (finished ? 0 : 1));
        return guard().run([&] { jpeg_start_output(&m_info, scan); });
    }

    ByteView m_file;
    Segments m_segments;
    JpegErrors m_errors;
    jpeg_decompress_struct m_info = {};
};

/// Reads the header and refuses what would not fit.
Result<PixelSize> readCheckedHeader(Decompressor& decompressor, ByteView file) {
    if (!decompressor.readHeader())
        return decompressor.error();
    const PixelSize size = decompressor.size();
    if (!isPlausibleArea(size.width, size.height, file.size(), kMostPixelsPerByte))
        return Error{"JPEG: the picture is too large, or the file too short for it"};
    return size;
}

/// Reads all rows into `builder`, `convert`ed in place or from CMYK samples by bands.
class RowReader {
public:
    RowReader(Decompressor& decompressor, PixelSize size)
        : m_decompressor(decompressor),
          m_size(size),
          m_rows(PixelBlock::uninitialized({size.width, std::min(Tile::kHeight, size.height)})) {
        for (int row = 0; row < m_rows.size.height; ++row)
            m_rowPointers.push_back(reinterpret_cast<JSAMPROW>(m_rows.row(row)));
    }

    /// The picture; `convert` makes our pixels of each row in place. An error when not even one row can be
    /// read.
    template <class Convert>
    Result<Image> read(const Convert& convert) {
        ImageBuilder builder(m_size);
        bool readable = true;
        for (int y = 0; y < m_size.height; y += Tile::kHeight) {
            const int count = std::min(Tile::kHeight, m_size.height - y);
            readable = readable && m_decompressor.readRows(m_rowPointers.data(), count);
            const int read = std::clamp(m_decompressor.nextRow() - y, 0, count);
            if (y == 0 && read == 0)
                return m_decompressor.error();
            convert(m_rows, read);
            std::fill(m_rows.row(read), m_rows.row(count), kMissing);
            builder.setRows(y, count, m_rows.pixels.get());
        }
        return builder.finish();
    }

private:
    Decompressor& m_decompressor;
    PixelSize m_size;
    PixelBlock m_rows;
    std::vector<JSAMPROW> m_rowPointers;
};

Result<Image> readCmyk(RowReader& reader, ByteView icc) {
    // Every writer of note stores inverted inks, with the Adobe segment or without.
    const InvertedCmyk inks(icc);
    return reader.read([&](PixelBlock& rows, int count) {
        parallelFor(count, [&](int row) { inks.convert({rows.row(row), rows.row(row + 1)}); });
    });
}

Result<Image> readGreyInProfile(RowReader& reader, const GreyTable& table) {
    return reader.read([&](PixelBlock& rows, int count) {
        for (RGBA32* pixel = rows.row(0); pixel != rows.row(count); ++pixel)
            *pixel = table[pixel->red()];
    });
}

Result<Image> readPixels(Decompressor& decompressor, PixelSize size) {
    const Bytes icc = decompressor.icc();
    const std::optional<GreyTable> grey = decompressor.isGrey() ? greyTable(icc) : std::nullopt;
    if (!decompressor.start())
        return decompressor.error();
    RowReader reader(decompressor, size);
    if (decompressor.isCmyk())
        return readCmyk(reader, icc);
    if (grey)
        return readGreyInProfile(reader, *grey);
    Result<Image> image = reader.read([](PixelBlock&, int) {});
    return image ? image->withProfile(ColorProfile::fromIcc(icc)) : image;
}

} // namespace

Result<PixelSize> measureJpeg(ByteView file) {
    Decompressor decompressor(file);
    const Result<PixelSize> size = readCheckedHeader(decompressor, file);
    return size ? uprightSize(*size, decompressor.exif().orientation) : size;
}

Result<Image> decodeJpeg(ByteView file) {
    Decompressor decompressor(file);
    const Result<PixelSize> size = readCheckedHeader(decompressor, file);
    if (!size)
        return size.error();
    if (!decompressor.hasKnownColors())
        return Error{"JPEG: the components stand for no known colours"};
    if (!decompressor.hasScanData())
        return Error{"JPEG: the file ends before the picture"};
    const ExifBasics exif = decompressor.exif();
    const Density density = exif.density.value_or(decompressor.jfifDensity());
    Result<Image> stored = readPixels(decompressor, *size);
    if (!stored)
        return stored;
    return turnedUpright(stored->withSize(sizeAtDensity(*size, density.horizontal, density.vertical)),
                         exif.orientation);
}

} // namespace complexion
