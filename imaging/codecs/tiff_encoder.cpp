// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"
#include "imaging/codecs/sample_rows.h"
#include "imaging/codecs/tiff_codec.h"
#include "imaging/codecs/tiff_strips.h"
#include "imaging/containers/tiff_resolution.h"

#include <tiff.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <iterator>
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

bool areGrey(const EncodedBands& bands) {
    std::atomic<bool> isGrey = true;
    parallelFor(static_cast<int>(bands.size()), [&](int index) {
        const EncodedBand& band = *bands[static_cast<std::size_t>(index)];
        for (auto at = band.bytes->begin(); isGrey && at != band.bytes->end();
             at += static_cast<std::ptrdiff_t>(band.samples))
            if (at[0] != at[1] || at[0] != at[2])
                isGrey = false;
    });
    return isGrey;
}

/// One sample for red, green and blue.
Bytes greySamples(const EncodedBand& band) {
    Bytes samples;
    samples.reserve(band.bytes->size() / band.samples * (band.samples - 2));
    for (std::size_t i = 0; i < band.bytes->size(); i += band.samples) {
        samples.push_back((*band.bytes)[i]);
        if (band.samples == 4)
            samples.push_back((*band.bytes)[i + 3]);
    }
    return samples;
}

using Strips = std::vector<std::shared_ptr<const Bytes>>;

/// The properties of the strips in the directory.
struct OutputPage {
    StripCoding coding;
    bool isGrey = false;
    bool hasAlpha = false;
    DeepAlpha alpha = DeepAlpha::Premultiplied;
};

/// The header and directory. The first strip begins at offset `stripsAt`.
Bytes head(const Image& image, const OutputPage& page, const Strips& strips, std::size_t stripsAt) {
    const std::size_t samples = page.coding.samples;
    const auto icc = image.profile().icc();
    std::vector<std::uint64_t> offsets;
    std::vector<std::uint64_t> counts;
    for (const auto& strip : strips) {
        offsets.push_back(stripsAt);
        counts.push_back(strip->size());
        stripsAt += strip->size();
    }

    const ByteOrder order = page.coding.order;
    Directory directory;
    const auto add = [&](unsigned tag, unsigned type, const std::vector<std::uint64_t>& numbers) {
        directory.entries.push_back(entryOfNumbers(tag, type, numbers, order));
    };
    const auto bits = static_cast<std::uint64_t>(page.coding.bits);
    add(TIFFTAG_IMAGEWIDTH, type::kLong, {static_cast<std::uint64_t>(image.pixelSize().width)});
    add(TIFFTAG_IMAGELENGTH, type::kLong, {static_cast<std::uint64_t>(image.pixelSize().height)});
    add(TIFFTAG_BITSPERSAMPLE, type::kShort, std::vector<std::uint64_t>(samples, bits));
    add(TIFFTAG_COMPRESSION, type::kShort, {page.coding.compression});
    const std::uint64_t photometric = page.isGrey ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
    add(TIFFTAG_PHOTOMETRIC, type::kShort, {photometric});
    add(TIFFTAG_STRIPOFFSETS, type::kLong, offsets);
    add(TIFFTAG_SAMPLESPERPIXEL, type::kShort, {samples});
    add(TIFFTAG_ROWSPERSTRIP, type::kLong, {Tile::kHeight});
    add(TIFFTAG_STRIPBYTECOUNTS, type::kLong, counts);
    add(TIFFTAG_PLANARCONFIG, type::kShort, {PLANARCONFIG_CONTIG});
    setResolution(directory, order, {kPixelsPerInch, kPixelsPerInch, Resolution::Unit::Inch});
    if (page.coding.predicts())
        add(TIFFTAG_PREDICTOR, type::kShort, {PREDICTOR_HORIZONTAL});
    const std::uint64_t alpha =
        page.alpha == DeepAlpha::Premultiplied ? EXTRASAMPLE_ASSOCALPHA : EXTRASAMPLE_UNASSALPHA;
    if (page.hasAlpha)
        add(TIFFTAG_EXTRASAMPLES, type::kShort, {alpha});
    if (!icc.empty())
        directory.entries.push_back(entryOfBytes(TIFFTAG_ICCPROFILE, type::kUndefined, icc));
    Layout layout(order, false);
    Bytes bytes = layout.finish(layout.placeDirectory(directory));
    bytes.resize((bytes.size() + 1) / 2 * 2); // strips begin at even offsets, as directory values do
    return bytes;
}

Result<FileContents> fileOf(const Image& image, const OutputPage& page, Strips strips) {
    const std::size_t headSize = head(image, page, strips, 0).size();
    FileContents contents;
    contents.append(head(image, page, strips, headSize));
    std::ranges::move(strips, std::back_inserter(contents.parts));
    if (contents.size() > std::numeric_limits<std::uint32_t>::max())
        return Error{"the picture is too large for a TIFF file of 4 GB", ErrorKind::FormatCannotHold};
    return contents;
}

/// Whether an image has pixels, and not more than a file can hold uncompressed.
Result<Done> checkSize(const Image& image, std::uint64_t bytesPerPixel) {
    if (!image.hasPixels())
        return Error{"a TIFF file needs pixels", ErrorKind::FormatCannotHold};
    constexpr std::uint64_t kRoomForHead = std::uint64_t{16} << 20;
    const std::uint64_t maxSize = static_cast<std::uint64_t>(image.pixelSize().area()) * bytesPerPixel +
                                  image.profile().icc().size() + kRoomForHead +
                                  static_cast<std::uint64_t>(image.bandCount()) * 8;
    if (maxSize > std::numeric_limits<std::uint32_t>::max())
        return Error{"the picture is too large for a TIFF file of 4 GB", ErrorKind::FormatCannotHold};
    return Done();
}

/// Makes the strip of each band by `strip(index)`, on all cores.
template <class MakeStrip>
Strips stripsOf(const Image& image, const MakeStrip& strip) {
    Strips strips(static_cast<std::size_t>(image.bandCount()));
    parallelFor(image.bandCount(), [&](int index) {
        strips[static_cast<std::size_t>(index)] = std::make_shared<const Bytes>(strip(index));
    });
    return strips;
}

constexpr ByteOrder kNativeOrder =
    std::endian::native == std::endian::little ? ByteOrder::LittleEndian : ByteOrder::BigEndian;

Result<FileContents> encodeDeep(const Image& deep, const ResultForm& form) {
    const DeepSamples samples = samplesFor(deep);
    const OutputPage page = {.coding = {.compression = compressionAfter(form.photo),
                                        .order = form.order,
                                        .bits = 16,
                                        .samples = samples.perPixel()},
                             .isGrey = samples.isGrey,
                             .hasAlpha = samples.hasAlpha,
                             .alpha = *deep.deepAlpha()};
    if (const Result<Done> fits = checkSize(deep, 2 * page.coding.samples); !fits)
        return fits.error();
    return fileOf(deep, page, stripsOf(deep, [&](int index) {
                      const PixelRect rect = deep.bandRect(index);
                      return codedStrip(packedSamples(deep, rect, samples, page.alpha, kNativeOrder),
                                        {rect.width, rect.height}, page.coding);
                  }));
}

} // namespace

Result<FileContents> encode(const Image& image) {
    if (const Result<Done> fits = checkSize(image, 4); !fits)
        return fits.error();
    const EncodedBands bands = encodedBands(image);
    Strips strips;
    for (const auto& band : bands)
        strips.push_back(band->bytes);
    const std::size_t samples = bands.front()->samples;
    return fileOf(image, {.coding = {.samples = samples}, .hasAlpha = samples == 4}, std::move(strips));
}

Result<FileContents> encodeResult(const Image& image, const ResultForm& form) {
    if (image.deepAlpha())
        return encodeDeep(image, form);
    if (const Result<Done> fits = checkSize(image, 4); !fits)
        return fits.error();
    const EncodedBands bands = encodedBands(image);
    const std::size_t samples = bands.front()->samples;
    // Greys in the space of an RGB profile remain RGB.
    const bool staysGrey = isGrey(form.photo) && image.profile().isSrgb() && areGrey(bands);
    const std::uint16_t compression = compressionAfter(form.photo);
    if (compression == COMPRESSION_NONE && !staysGrey)
        return encode(image);
    const StripCoding coding = {.compression = compression, .samples = staysGrey ? samples - 2 : samples};
    const OutputPage page = {.coding = coding, .isGrey = staysGrey, .hasAlpha = samples == 4};
    return fileOf(image, page, stripsOf(image, [&](int index) {
                      const PixelRect rect = image.bandRect(index);
                      const EncodedBand& band = *bands[static_cast<std::size_t>(index)];
                      return codedStrip(staysGrey ? greySamples(band) : *band.bytes,
                                        {rect.width, rect.height}, coding);
                  }));
}

} // namespace complexion::tiff
