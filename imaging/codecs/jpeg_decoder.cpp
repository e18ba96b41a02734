// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_decoder.h"

#include "imaging/base/orientation.h"
#include "imaging/base/parallel_parts.h"
#include "imaging/base/picture_limits.h"
#include "imaging/base/pixel_block.h"
#include "imaging/base/row_receiver.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/device_colors.h"
#include "imaging/codecs/jpeg_block_rows.h"
#include "imaging/codecs/jpeg_decompressor.h"
#include "imaging/codecs/jpeg_first_scan.h"
#include "imaging/codecs/jpeg_original.h"

#include <algorithm>
#include <array>
#include <span>

namespace complexion::jpeg {

namespace {

/// A block of 64 pixels takes at least one bit per component for its DC coefficient, except in a
/// single-colour picture with arithmetic coding.
constexpr std::int64_t kMaxPixelsPerByte = 512;
/// What the library outputs for missing data: all coefficients 0.
constexpr RGBA32 kMissingPixel(128, 128, 128, 255);

/// Reads the header and rejects implausible sizes.
Result<PixelSize> readCheckedHeader(Decompressor& decompressor, ByteView file) {
    if (!decompressor.readHeader())
        return decompressor.error();
    const PixelSize size = decompressor.size();
    if (!isPlausibleArea(size.width, size.height, file.size(), kMaxPixelsPerByte))
        return Error{"JPEG: the picture is too large, or the file too short for it"};
    return size;
}

/// Reads the rows of a started decompressor into an image.
class RowReader {
public:
    RowReader(Decompressor& decompressor, PixelSize size) : m_decompressor(decompressor), m_size(size) {}

    /// Reads the picture. `convert` converts decoded rows to pixels in place. Fails if not even one row can
    /// be read.
    template <class Convert>
    Result<Image> read(const Convert& convert) {
        ImageBuilder builder(m_size);
        bool readable = true;
        for (int y = 0; y < m_size.height; y += kRowsAtOnce) {
            const int count = std::min(kRowsAtOnce, m_size.height - y);
            RGBA32* const rows = memoryFor(count);
            const auto row = [&](int index) { return rows + std::ptrdiff_t{index} * m_size.width; };
            std::array<JSAMPROW, kRowsAtOnce> pointers = {};
            for (int index = 0; index < count; ++index)
                pointers[static_cast<std::size_t>(index)] = reinterpret_cast<JSAMPROW>(row(index));
            readable = readable && m_decompressor.readRows(pointers.data(), count);
            const int read = std::clamp(m_decompressor.nextRow() - y, 0, count);
            if (y == 0 && read == 0)
                return m_decompressor.error();
            convert(std::span(rows, row(read)));
            std::fill(row(read), row(count), kMissingPixel);
            builder.setRows(y, count, rows);
        }
        return builder.finish();
    }

private:
    /// Whole MCU rows that fit in a core's cache.
    static constexpr int kRowsAtOnce = Tile::kHeight / 2;

    RGBA32* memoryFor(int count) {
        RowReceiver* const receiver = RowReceiver::installed();
        if (RGBA32* const memory = receiver ? receiver->memoryForRows(count) : nullptr)
            return memory;
        if (!m_rows.pixels)
            m_rows = PixelBlock::uninitialized({m_size.width, std::min(kRowsAtOnce, m_size.height)});
        return m_rows.row(0);
    }

    Decompressor& m_decompressor;
    PixelSize m_size;
    PixelBlock m_rows; // where nobody else has memory for them
};

Result<Image> readCmyk(RowReader& reader, ByteView icc) {
    // All common encoders store inverted inks, with or without an Adobe segment.
    const InvertedCmyk inks(icc);
    return reader.read([&](std::span<RGBA32> pixels) {
        parallelForParts(pixels, [&inks](std::span<RGBA32> part) { inks.convert(part); });
    });
}

Result<Image> readGreyInProfile(RowReader& reader, const GreyTable& table) {
    return reader.read([&](std::span<RGBA32> pixels) {
        for (RGBA32& pixel : pixels)
            pixel = table[pixel.red()];
    });
}

Result<Image> readInProfile(RowReader& reader, ByteView icc) {
    Result<Image> image = reader.read([](std::span<RGBA32>) {});
    return image ? image->withProfile(ColorProfile::fromIcc(icc)) : image;
}

Result<DecodedPicture> readPixels(Decompressor& decompressor, ByteView file, PixelSize size,
                                  const std::optional<GreyTable>& grey) {
    const Bytes icc = decompressor.icc();
    if (!decompressor.isCmyk() && !grey)
        if (const std::optional<DecodedPicture> picture = decodeBlockRowsInParallel(decompressor, file))
            return DecodedPicture{picture->image.withProfile(ColorProfile::fromIcc(icc)), picture->damage};
    if (!decompressor.start())
        return decompressor.error();
    RowReader reader(decompressor, size);
    Result<Image> image = decompressor.isCmyk() ? readCmyk(reader, icc)
                          : grey                ? readGreyInProfile(reader, *grey)
                                                : readInProfile(reader, icc);
    if (!image)
        return image.error();
    return DecodedPicture{std::move(*image), decompressor.damage()};
}

/// Gives a receiver that asks for it a preview of a progressive picture.
void passFirstScanOn(Decompressor& decompressor, Orientation orientation) {
    RowReceiver* const receiver = RowReceiver::installed();
    if (receiver && receiver->wantsPreview(decompressor.size()))
        decompressor.onFirstScan([&decompressor, orientation, receiver] {
            const Bytes icc = decompressor.icc();
            receiver->preview(blockMeans(decompressor),
                              {.stored = decompressor.size(), .orientation = orientation, .icc = icc});
        });
}

Result<StoredPicture> decodePicture(Decompressor& decompressor, ByteView file) {
    const Result<PixelSize> size = readCheckedHeader(decompressor, file);
    if (!size)
        return size.error();
    if (!decompressor.hasKnownColors())
        return Error{"JPEG: the colour space of the components is unknown"};
    if (decompressor.scanData().size() <= 2)
        return Error{"JPEG: the file ends before the picture"};
    const exif::Basics exif = decompressor.exif();
    const Resolution resolution = exif.resolution.value_or(decompressor.jfifResolution());
    const std::optional<GreyTable> grey =
        decompressor.isGrey() ? greyTable(decompressor.icc()) : std::nullopt;
    if (!grey && !decompressor.isCmyk())
        passFirstScanOn(decompressor, exif.orientation);
    Result<DecodedPicture> stored = readPixels(decompressor, file, *size, grey);
    if (!stored)
        return stored.error();
    return StoredPicture{
        .upright = {.image = turnedUpright(stored->image.withSize(sizeAtResolution(*size, resolution)),
                                           exif.orientation),
                    .damage = std::move(stored->damage)},
        .orientation = exif.orientation,
        .hasPlainColors = !grey && !decompressor.isCmyk()};
}

} // namespace

Result<PixelSize> measure(ByteView file) {
    Decompressor decompressor(file);
    const Result<PixelSize> size = readCheckedHeader(decompressor, file);
    return size ? uprightSize(*size, decompressor.exif().orientation) : size;
}

Result<StoredPicture> decodeAlone(ByteView file) {
    Decompressor decompressor(file);
    return decodePicture(decompressor, file);
}

Result<Image> decodePixels(ByteView file) {
    const Result<StoredPicture> picture = decodeAlone(file);
    return picture ? Result<Image>(picture->upright.image) : picture.error();
}

Result<DecodedPicture> decode(ByteView file, CoefficientLoading loading) {
    const auto original = std::make_shared<OriginalFile>(file);
    if (loading == CoefficientLoading::Concurrent && measure(file))
        original->prepare();
    Decompressor decompressor(file);
    const Result<StoredPicture> picture = decodePicture(decompressor, file);
    if (!picture)
        return picture.error();
    if (picture->hasPlainColors && !RowReceiver::installed()) {
        original->setPicture(picture->upright.image, picture->orientation);
        picture->upright.image.encoderMemory().set(original);
    }
    return picture->upright;
}

} // namespace complexion::jpeg
