// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"
#include "imaging/codecs/bmp_codec.h"
#include "imaging/containers/bmp_format.h"
#include "imaging/containers/byte_order.h"
#include "imaging/containers/resolution.h"

#include <limits>

namespace complexion::bmp {

namespace {

using little_endian::append16;
using little_endian::append32;

constexpr std::size_t kHeadersSize = kFileHeaderSize + kV5HeaderSize;
constexpr std::uint32_t kBitsPerPixel = 32;
constexpr std::uint32_t kIntentPerceptual = 4; // LCS_GM_IMAGES
constexpr std::size_t kEndpointsAndGammasSize = 9 * 4 + 3 * 4;

/// A band's encoded rows: bottom row first, BGRA with straight alpha.
struct EncodedBand : Memo::Value {
    explicit EncodedBand(Bytes encoded) : bytes(std::make_shared<const Bytes>(std::move(encoded))) {}
    std::shared_ptr<const Bytes> bytes;
};

Bytes encodedRows(const Image& image, PixelRect rect) {
    const auto width = static_cast<std::size_t>(rect.width);
    Bytes bytes(width * static_cast<std::size_t>(rect.height) * 4);
    std::vector<RGBA32> row(width);
    std::uint8_t* out = bytes.data();
    for (int y = rect.bottom() - 1; y >= rect.y; --y) {
        image.read({rect.x, y, rect.width, 1}, row.data(), rect.width);
        for (const RGBA32 pixel : row) {
            const std::uint8_t alpha = pixel.alpha();
            const bool opaque = alpha == 255;
            *out++ = opaque ? pixel.blue() : unpremultiplied(pixel.blue(), alpha);
            *out++ = opaque ? pixel.green() : unpremultiplied(pixel.green(), alpha);
            *out++ = opaque ? pixel.red() : unpremultiplied(pixel.red(), alpha);
            *out++ = alpha;
        }
    }
    return bytes;
}

std::shared_ptr<const Bytes> encodedBand(const Image& image, int index) {
    const std::shared_ptr<const Band> stored = image.storedBand(index);
    if (stored)
        if (const auto cached = stored->encoded().get<EncodedBand>())
            return cached->bytes;
    const auto band = std::make_shared<const EncodedBand>(encodedRows(image, image.bandRect(index)));
    if (stored)
        stored->encoded().set(band);
    return band->bytes;
}

/// The BITMAPFILEHEADER and BITMAPV5HEADER.
Bytes headers(PixelSize size, std::uint32_t pixelBytes, std::uint32_t profileBytes) {
    Bytes bytes = {'B', 'M'};
    append32(bytes, static_cast<std::uint32_t>(kHeadersSize) + pixelBytes + profileBytes);
    append32(bytes, 0); // reserved
    append32(bytes, kHeadersSize);

    append32(bytes, kV5HeaderSize);
    append32(bytes, static_cast<std::uint32_t>(size.width));
    append32(bytes, static_cast<std::uint32_t>(size.height)); // positive: bottom row first
    append16(bytes, 1);                                       // planes
    append16(bytes, kBitsPerPixel);
    append32(bytes, static_cast<std::uint32_t>(Compression::BitFields));
    append32(bytes, pixelBytes);
    append32(bytes, kDefaultPixelsPerMetre);
    append32(bytes, kDefaultPixelsPerMetre);
    append32(bytes, 0); // palette entries
    append32(bytes, 0); // important colours
    append32(bytes, 0x00FF0000);
    append32(bytes, 0x0000FF00);
    append32(bytes, 0x000000FF);
    append32(bytes, 0xFF000000);
    append32(bytes, profileBytes > 0 ? kColorSpaceEmbedded : kColorSpaceSrgb);
    bytes.resize(bytes.size() + kEndpointsAndGammasSize); // used by calibrated spaces only
    append32(bytes, kIntentPerceptual);
    append32(bytes,
             profileBytes > 0 ? kV5HeaderSize + pixelBytes : 0); // from the start of the V5 header
    append32(bytes, profileBytes);
    append32(bytes, 0); // reserved
    return bytes;
}

} // namespace

Result<FileContents> encode(const Image& image) {
    if (!image.hasPixels())
        return Error{"a BMP file needs pixels", ErrorKind::FormatCannotHold};
    const auto pixelBytes = static_cast<std::uint64_t>(image.pixelSize().area()) * 4;
    const auto icc = image.profile().icc();
    if (kHeadersSize + pixelBytes + icc.size() > std::numeric_limits<std::uint32_t>::max())
        return Error{"the picture is too large for a BMP file", ErrorKind::FormatCannotHold};

    const int count = image.bandCount();
    FileContents contents;
    contents.append(headers(image.pixelSize(), static_cast<std::uint32_t>(pixelBytes),
                            static_cast<std::uint32_t>(icc.size())));
    contents.parts.resize(1 + static_cast<std::size_t>(count));
    parallelFor(count, [&](int index) {
        contents.parts[static_cast<std::size_t>(count - index)] = encodedBand(image, index);
    });
    if (!icc.empty())
        contents.append(Bytes(icc.begin(), icc.end()));
    return contents;
}

} // namespace complexion::bmp
