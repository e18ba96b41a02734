// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/imaging/deep_files.h"

#include <algorithm>
#include <memory>

namespace complexion::test {

namespace {

constexpr std::uint32_t kTileSide = 32;

std::uint16_t noiseAt(int row, int column, int sample) {
    auto value = static_cast<std::uint32_t>((row * 7919 + column) * 5 + sample) * 2654435761U;
    value ^= value >> 15;
    value *= 2246822519U;
    return static_cast<std::uint16_t>(value >> 16);
}

bool isInBlemish(PixelSize size, int row, int column) {
    const int x = column - size.width / 2;
    const int y = row - size.height / 2;
    return x * x + y * y <= kBlemishRadius * kBlemishRadius;
}

/// Alpha 0 to 65535 in the picture's left quarter, opaque elsewhere.
std::uint16_t alphaAt(PixelSize size, int row, int column) {
    return column < size.width / 4 ? noiseAt(row, column, 9) : std::uint16_t{UINT16_MAX};
}

std::vector<std::uint8_t> bigEndian(const FileSamples& samples) {
    std::vector<std::uint8_t> bytes;
    for (const std::uint16_t value : samples.values) {
        bytes.push_back(static_cast<std::uint8_t>(value >> 8));
        bytes.push_back(static_cast<std::uint8_t>(value & 255));
    }
    return bytes;
}

/// The samples of a rectangle, of one plane or of all (-1); 0 outside the picture.
std::vector<std::uint16_t> part(const FileSamples& samples, std::uint32_t left, std::uint32_t top,
                                std::uint32_t width, std::uint32_t height, int plane) {
    std::vector<std::uint16_t> out;
    for (std::uint32_t y = top; y < top + height; ++y)
        for (std::uint32_t x = left; x < left + width; ++x)
            for (int s = 0; s < samples.perPixel; ++s)
                if (plane < 0 || plane == s) {
                    const bool inside = x < static_cast<std::uint32_t>(samples.size.width) &&
                                        y < static_cast<std::uint32_t>(samples.size.height);
                    out.push_back(inside ? samples.pixel(static_cast<int>(y), static_cast<int>(x))[s] : 0);
                }
    return out;
}

void writePlane(TIFF* tiff, const FileSamples& samples, const DeepKind& kind, int plane) {
    const auto width = static_cast<std::uint32_t>(samples.size.width);
    const auto height = static_cast<std::uint32_t>(samples.size.height);
    const auto index = static_cast<std::uint16_t>(std::max(plane, 0));
    for (std::uint32_t y = 0; y < height; y += kind.isTiled ? kTileSide : 1)
        if (kind.isTiled) {
            for (std::uint32_t x = 0; x < width; x += kTileSide) {
                std::vector<std::uint16_t> tile = part(samples, x, y, kTileSide, kTileSide, plane);
                TIFFWriteTile(tiff, tile.data(), x, y, 0, index);
            }
        } else {
            std::vector<std::uint16_t> row = part(samples, 0, y, width, 1, plane);
            TIFFWriteScanline(tiff, row.data(), y, index);
        }
}

Bytes deepTiff(const FileSamples& samples, const DeepKind& kind) {
    TiffWriter writer(kind.mode.c_str());
    const int grey = kind.isBlackZero ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_MINISWHITE;
    writer.begin(samples.size, samples.perPixel, samples.bits, kind.isGrey ? grey : PHOTOMETRIC_RGB,
                 kind.compression);
    if (kind.hasAlpha)
        writer.extraSample(kind.alphaKind);
    TIFF* const tiff = writer.handle();
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, kind.orientation);
    if (kind.isTiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTileSide);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTileSide);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kind.rowsPerStrip);
    }
    if (kind.isPlanar)
        TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
    for (int plane = kind.isPlanar ? 0 : -1; plane < (kind.isPlanar ? samples.perPixel : 0); ++plane)
        writePlane(tiff, samples, kind, plane);
    return writer.finish();
}

Bytes deepPng(const FileSamples& samples, const DeepKind& kind) {
    PngRecipe recipe{.size = samples.size, .depth = samples.bits, .interlaced = kind.isInterlaced};
    recipe.colorType = (kind.isGrey ? 0 : PNG_COLOR_MASK_COLOR) | (kind.hasAlpha ? PNG_COLOR_MASK_ALPHA : 0);
    return pngFile(recipe, bigEndian(samples));
}

} // namespace

FileSamples skinSamples(PixelSize size, const DeepKind& kind) {
    constexpr int kSkinLevel = 46'000;
    constexpr int kBlemishLevel = 12'000;
    constexpr int kSpread = 1500;
    FileSamples samples{.size = size, .bits = 16, .perPixel = kind.perPixel(), .values = {}};
    const int colors = kind.isGrey ? 1 : 3;
    for (int row = 0; row < size.height; ++row)
        for (int column = 0; column < size.width; ++column) {
            const int level = isInBlemish(size, row, column) ? kBlemishLevel : kSkinLevel;
            const std::uint32_t alpha = kind.hasAlpha ? alphaAt(size, row, column) : UINT16_MAX;
            for (int s = 0; s < colors; ++s) {
                auto value = static_cast<std::uint32_t>(level + 2000 * s + noiseAt(row, column, s) % kSpread);
                if (kind.alphaKind == EXTRASAMPLE_ASSOCALPHA)
                    value = value * alpha / UINT16_MAX;
                samples.values.push_back(static_cast<std::uint16_t>(value));
            }
            if (kind.hasAlpha)
                samples.values.push_back(static_cast<std::uint16_t>(alpha));
        }
    return samples;
}

Bytes deepFile(const FileSamples& samples, const DeepKind& kind) {
    return kind.isPng ? deepPng(samples, kind) : deepTiff(samples, kind);
}

FileSamples samplesOfTiff(const std::filesystem::path& path) {
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "r"), TIFFClose);
    FileSamples samples;
    if (!tiff)
        return samples;
    std::uint16_t bits = 1;
    std::uint16_t perPixel = 1;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &samples.size.width);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &samples.size.height);
    TIFFGetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &perPixel);
    samples.bits = bits;
    samples.perPixel = perPixel;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(TIFFScanlineSize(tiff.get())));
    for (int y = 0; y < samples.size.height; ++y) {
        EXPECT_EQ(TIFFReadScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(y), 0), 1);
        for (int i = 0; i < samples.size.width * perPixel; ++i) {
            std::uint16_t value = row[static_cast<std::size_t>(i)];
            if (bits == 16)
                std::memcpy(&value, row.data() + std::ptrdiff_t{2} * i, sizeof value);
            samples.values.push_back(value);
        }
    }
    return samples;
}

} // namespace complexion::test
