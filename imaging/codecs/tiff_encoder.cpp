// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"
#include "imaging/codecs/tiff_codec.h"
#include "imaging/containers/tiff_resolution.h"

#include <tiff.h>

#include <algorithm>
#include <limits>

namespace complexion::tiff {

namespace {

constexpr double kPixelsPerInch = 72;

/// A band encoded as a strip: RGB or, unless all bands are opaque, RGBA with premultiplied alpha.
struct EncodedBand : Memo::Value {
    std::shared_ptr<const Bytes> bytes;
    std::size_t samples = 0;
    bool opaque = false;
};

/// Encodes with `samples` per pixel; 0 chooses as few as the band needs.
std::shared_ptr<const EncodedBand> encodedRows(const Image& image, PixelRect rect, std::size_t samples) {
    std::vector<RGBA32> pixels(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height));
    image.read(rect, pixels.data(), rect.width);
    auto band = std::make_shared<EncodedBand>();
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

/// The cached band if it has `samples` per pixel (0 accepts any); otherwise encodes it.
std::shared_ptr<const EncodedBand> encodedBand(const Image& image, int index, std::size_t samples) {
    const std::shared_ptr<const Band> stored = image.storedBand(index);
    if (stored)
        if (auto cached = stored->encoded().get<EncodedBand>();
            cached && (samples == 0 || cached->samples == samples))
            return cached;
    auto band = encodedRows(image, image.bandRect(index), samples);
    if (stored)
        stored->encoded().set(band);
    return band;
}

using EncodedBands = std::vector<std::shared_ptr<const EncodedBand>>;

/// All bands with the same number of samples per pixel: 3 if the picture is opaque, otherwise 4.
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

/// The header and directory. The first strip begins at offset `stripsAt`.
Bytes head(const Image& image, const EncodedBands& bands, std::size_t stripsAt) {
    constexpr std::uint64_t kBitsPerSample = 8;
    const std::size_t samples = bands.front()->samples;
    const bool alpha = samples == 4;
    const auto icc = image.profile().icc();
    std::vector<std::uint64_t> offsets;
    std::vector<std::uint64_t> counts;
    for (const auto& band : bands) {
        offsets.push_back(stripsAt);
        counts.push_back(band->bytes->size());
        stripsAt += band->bytes->size();
    }

    constexpr ByteOrder kOrder = ByteOrder::LittleEndian;
    Directory directory;
    const auto add = [&directory](unsigned tag, unsigned type, const std::vector<std::uint64_t>& numbers) {
        directory.entries.push_back(entryOfNumbers(tag, type, numbers, kOrder));
    };
    add(TIFFTAG_IMAGEWIDTH, type::kLong, {static_cast<std::uint64_t>(image.pixelSize().width)});
    add(TIFFTAG_IMAGELENGTH, type::kLong, {static_cast<std::uint64_t>(image.pixelSize().height)});
    add(TIFFTAG_BITSPERSAMPLE, type::kShort, std::vector<std::uint64_t>(samples, kBitsPerSample));
    add(TIFFTAG_COMPRESSION, type::kShort, {COMPRESSION_NONE});
    add(TIFFTAG_PHOTOMETRIC, type::kShort, {PHOTOMETRIC_RGB});
    add(TIFFTAG_STRIPOFFSETS, type::kLong, offsets);
    add(TIFFTAG_SAMPLESPERPIXEL, type::kShort, {samples});
    add(TIFFTAG_ROWSPERSTRIP, type::kLong, {Tile::kHeight});
    add(TIFFTAG_STRIPBYTECOUNTS, type::kLong, counts);
    add(TIFFTAG_PLANARCONFIG, type::kShort, {PLANARCONFIG_CONTIG});
    setResolution(directory, kOrder, {kPixelsPerInch, kPixelsPerInch, Resolution::Unit::Inch});
    if (alpha)
        add(TIFFTAG_EXTRASAMPLES, type::kShort, {EXTRASAMPLE_ASSOCALPHA});
    if (!icc.empty())
        directory.entries.push_back(entryOfBytes(TIFFTAG_ICCPROFILE, type::kUndefined, icc));
    Layout layout(kOrder, false);
    Bytes bytes = layout.finish(layout.placeDirectory(directory));
    bytes.resize((bytes.size() + 1) / 2 * 2); // strips begin at even offsets, as directory values do
    return bytes;
}

} // namespace

Result<FileContents> encode(const Image& image) {
    if (!image.hasPixels())
        return Error{"a TIFF file needs pixels", ErrorKind::FormatCannotHold};
    const auto icc = image.profile().icc();
    constexpr std::uint64_t kRoomForHead = std::uint64_t{16} << 20;
    const std::uint64_t maxSize = static_cast<std::uint64_t>(image.pixelSize().area()) * 4 + icc.size() +
                                  kRoomForHead + static_cast<std::uint64_t>(image.bandCount()) * 8;
    if (maxSize > std::numeric_limits<std::uint32_t>::max())
        return Error{"the picture is too large for a TIFF file of 4 GB", ErrorKind::FormatCannotHold};

    const EncodedBands bands = encodedBands(image);
    FileContents contents;
    const std::size_t headSize = head(image, bands, 0).size();
    contents.append(head(image, bands, headSize));
    for (const auto& band : bands)
        contents.parts.push_back(band->bytes);
    return contents;
}

} // namespace complexion::tiff
