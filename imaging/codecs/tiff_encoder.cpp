// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"
#include "imaging/codecs/tiff_codec.h"
#include "imaging/containers/little_endian.h"

#include <tiff.h>

#include <algorithm>
#include <limits>

namespace complexion {

namespace {

using little_endian::append16;
using little_endian::append32;

constexpr std::uint32_t kPixelsPerInch = 72;

/// A band's rows as the samples of a strip: red, green, blue and, unless all bands are opaque, premultiplied
/// alpha.
struct TiffBand : Memo::Value {
    std::shared_ptr<const Bytes> bytes;
    std::size_t samples = 0;
    bool opaque = false;
};

/// Encodes with `samples` a pixel; with 0, as few as the band itself needs.
std::shared_ptr<const TiffBand> encodedRows(const Image& image, PixelRect rect, std::size_t samples) {
    std::vector<RGBA32> pixels(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height));
    image.read(rect, pixels.data(), rect.width);
    auto band = std::make_shared<TiffBand>();
    band->opaque = std::ranges::all_of(pixels, [](RGBA32 pixel) { return pixel.alpha() == 255; });
    band->samples = samples != 0 ? samples : (band->opaque ? 3 : 4);
    Bytes bytes(pixels.size() * band->samples);
    std::uint8_t* out = bytes.data();
    for (const RGBA32 pixel : pixels) {
        out[0] = pixel.red();
        out[1] = pixel.green();
        out[2] = pixel.blue();
        if (band->samples == 4)
            out[3] = pixel.alpha();
        out += band->samples;
    }
    band->bytes = std::make_shared<const Bytes>(std::move(bytes));
    return band;
}

/// The band as it is kept, if it has `samples` a pixel or any number will do (0); otherwise newly encoded.
std::shared_ptr<const TiffBand> encodedBand(const Image& image, int index, std::size_t samples) {
    const std::shared_ptr<const Band> stored = image.storedBand(index);
    if (stored)
        if (auto kept = stored->encoded().get<TiffBand>(); kept && (samples == 0 || kept->samples == samples))
            return kept;
    auto band = encodedRows(image, image.bandRect(index), samples);
    if (stored)
        stored->encoded().set(band);
    return band;
}

using EncodedBands = std::vector<std::shared_ptr<const TiffBand>>;

/// All bands with the same samples: three when the whole picture is opaque, else four.
EncodedBands encodedBands(const Image& image) {
    EncodedBands bands(static_cast<std::size_t>(image.bandCount()));
    parallelFor(image.bandCount(),
                [&](int index) { bands[static_cast<std::size_t>(index)] = encodedBand(image, index, 0); });
    const bool opaque = std::ranges::all_of(bands, [](const auto& band) { return band->opaque; });
    const std::size_t samples = opaque ? 3 : 4;
    parallelFor(image.bandCount(), [&](int index) {
        auto& band = bands[static_cast<std::size_t>(index)];
        if (band->samples != samples)
            band = encodedBand(image, index, samples);
    });
    return bands;
}

/// The directory of the file's one picture, with the values that do not fit into its entries behind it. The
/// entries are added in ascending order of their tags, as TIFF 6.0 asks.
class Directory {
public:
    /// A directory of `entries` entries at `offset` in the file.
    Directory(std::size_t offset, std::size_t entries) {
        append16(m_entries, static_cast<std::uint32_t>(entries));
        m_valuesAt = offset + 2 + entries * kEntrySize + 4;
    }

    void addShorts(std::uint32_t tag, const std::vector<std::uint32_t>& values) {
        Bytes bytes;
        for (const std::uint32_t value : values)
            append16(bytes, value);
        add(tag, TIFF_SHORT, values.size(), std::move(bytes));
    }
    void addLongs(std::uint32_t tag, const std::vector<std::uint32_t>& values) {
        Bytes bytes;
        for (const std::uint32_t value : values)
            append32(bytes, value);
        add(tag, TIFF_LONG, values.size(), std::move(bytes));
    }
    void addRational(std::uint32_t tag, std::uint32_t value) {
        Bytes bytes;
        append32(bytes, value);
        append32(bytes, 1);
        add(tag, TIFF_RATIONAL, 1, std::move(bytes));
    }
    void addUndefined(std::uint32_t tag, ByteView bytes) {
        add(tag, TIFF_UNDEFINED, bytes.size(), Bytes(bytes.begin(), bytes.end()));
    }

    Bytes finish() && {
        append32(m_entries, 0); // no further directory
        m_entries.insert(m_entries.end(), m_values.begin(), m_values.end());
        return std::move(m_entries);
    }

private:
    static constexpr std::size_t kEntrySize = 12;

    void add(std::uint32_t tag, std::uint32_t type, std::size_t count, Bytes value) {
        append16(m_entries, tag);
        append16(m_entries, type);
        append32(m_entries, static_cast<std::uint32_t>(count));
        if (value.size() <= 4) {
            value.resize(4);
            m_entries.insert(m_entries.end(), value.begin(), value.end());
        } else {
            append32(m_entries, static_cast<std::uint32_t>(m_valuesAt + m_values.size()));
            value.resize((value.size() + 1) / 2 * 2); // values begin at even offsets
            m_values.insert(m_values.end(), value.begin(), value.end());
        }
    }

    std::size_t m_valuesAt = 0;
    Bytes m_entries;
    Bytes m_values;
};

/// Everything before the strips, the first of which begins at `stripsAt`.
Bytes head(const Image& image, const EncodedBands& bands, std::size_t stripsAt) {
    constexpr std::size_t kDirectoryAt = 8;
    constexpr std::size_t kEntriesAlways = 13;
    constexpr std::uint32_t kBitsPerSample = 8;
    const std::size_t samples = bands.front()->samples;
    const bool alpha = samples == 4;
    const auto icc = image.profile().icc();
    std::vector<std::uint32_t> offsets;
    std::vector<std::uint32_t> counts;
    for (const auto& band : bands) {
        offsets.push_back(static_cast<std::uint32_t>(stripsAt));
        counts.push_back(static_cast<std::uint32_t>(band->bytes->size()));
        stripsAt += band->bytes->size();
    }

    Bytes bytes = {'I', 'I', 42, 0};
    append32(bytes, kDirectoryAt);
    Directory directory(kDirectoryAt, kEntriesAlways + (alpha ? 1 : 0) + (icc.empty() ? 0 : 1));
    directory.addLongs(TIFFTAG_IMAGEWIDTH, {static_cast<std::uint32_t>(image.pixelSize().width)});
    directory.addLongs(TIFFTAG_IMAGELENGTH, {static_cast<std::uint32_t>(image.pixelSize().height)});
    directory.addShorts(TIFFTAG_BITSPERSAMPLE, std::vector<std::uint32_t>(samples, kBitsPerSample));
    directory.addShorts(TIFFTAG_COMPRESSION, {COMPRESSION_NONE});
    directory.addShorts(TIFFTAG_PHOTOMETRIC, {PHOTOMETRIC_RGB});
    directory.addLongs(TIFFTAG_STRIPOFFSETS, offsets);
    directory.addShorts(TIFFTAG_SAMPLESPERPIXEL, {static_cast<std::uint32_t>(samples)});
    directory.addLongs(TIFFTAG_ROWSPERSTRIP, {Tile::kHeight});
    directory.addLongs(TIFFTAG_STRIPBYTECOUNTS, counts);
    directory.addRational(TIFFTAG_XRESOLUTION, kPixelsPerInch);
    directory.addRational(TIFFTAG_YRESOLUTION, kPixelsPerInch);
    directory.addShorts(TIFFTAG_PLANARCONFIG, {PLANARCONFIG_CONTIG});
    directory.addShorts(TIFFTAG_RESOLUTIONUNIT, {RESUNIT_INCH});
    if (alpha)
        directory.addShorts(TIFFTAG_EXTRASAMPLES, {EXTRASAMPLE_ASSOCALPHA});
    if (!icc.empty())
        directory.addUndefined(TIFFTAG_ICCPROFILE, icc);
    const Bytes entries = std::move(directory).finish();
    bytes.insert(bytes.end(), entries.begin(), entries.end());
    return bytes;
}

} // namespace

Result<FileContents> encodeTiff(const Image& image) {
    if (!image.hasPixels())
        return Error{"a TIFF file needs pixels", ErrorKind::FormatCannotHold};
    const auto icc = image.profile().icc();
    constexpr std::uint64_t kRoomForHead = std::uint64_t{16} << 20;
    const std::uint64_t most = static_cast<std::uint64_t>(image.pixelSize().area()) * 4 + icc.size() +
                               kRoomForHead + static_cast<std::uint64_t>(image.bandCount()) * 8;
    if (most > std::numeric_limits<std::uint32_t>::max())
        return Error{"the picture is too large for a TIFF file of 4 GB", ErrorKind::FormatCannotHold};

    const EncodedBands bands = encodedBands(image);
    FileContents contents;
    const std::size_t headSize = head(image, bands, 0).size();
    contents.append(head(image, bands, headSize));
    for (const auto& band : bands)
        contents.parts.push_back(band->bytes);
    return contents;
}

} // namespace complexion
