// SPDX-License-Identifier: GPL-3.0-or-later

// Decoding every supported pixel format and layout of TIFF files.
#include "imaging/codecs/codec.h"
#include "tests/imaging/codec_pictures.h"
#include "tests/imaging/tiff_writer.h"

#include <cmath>

namespace complexion {
namespace {

using test::byteOf;
using test::colorful;
using test::decoded;
using test::expectSamePixels;
using test::picture;
using test::rgbTiff;
using test::TiffWriter;

TEST(TiffCodec, ReadsEveryByteOrderSizeAndLosslessCompression) {
    const Image image = colorful({61, 47});
    for (const char* mode : {"wl", "wb", "w8l", "w8b"})
        for (const int compression :
             {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_ADOBE_DEFLATE}) {
            const Bytes file = rgbTiff(
                image, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 47); }, mode, compression);
            EXPECT_EQ(codecForContent(file), &kTiffCodec);
            expectSamePixels(decoded(kTiffCodec, file), image);
        }
}

TEST(TiffCodec, ReadsTilesThatReachOverTheEdge) {
    const Image image = colorful({61, 47});
    const std::vector<RGBA32> pixels = pixelsOf(image);
    TiffWriter writer;
    writer.begin({61, 47}, 3, 8, PHOTOMETRIC_RGB, COMPRESSION_LZW);
    TIFFSetField(writer.handle(), TIFFTAG_TILEWIDTH, 16);
    TIFFSetField(writer.handle(), TIFFTAG_TILELENGTH, 32);
    for (std::uint32_t top = 0; top < 47; top += 32)
        for (std::uint32_t left = 0; left < 61; left += 16) {
            Bytes tile(std::size_t{16} * 32 * 3);
            for (std::uint32_t y = top; y < std::min(top + 32, 47U); ++y)
                for (std::uint32_t x = left; x < std::min(left + 16, 61U); ++x) {
                    std::uint8_t* out = tile.data() + ((y - top) * 16 + (x - left)) * 3;
                    const RGBA32 pixel = pixels[y * 61 + x];
                    out[0] = pixel.red();
                    out[1] = pixel.green();
                    out[2] = pixel.blue();
                }
            TIFFWriteTile(writer.handle(), tile.data(), left, top, 0, 0);
        }
    expectSamePixels(decoded(kTiffCodec, writer.finish()), image);
}

TEST(TiffCodec, ReadsSeparatePlanes) {
    const Image image = colorful({61, 47});
    TiffWriter writer;
    writer.begin({61, 47}, 3, 8, PHOTOMETRIC_RGB);
    TIFFSetField(writer.handle(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
    TIFFSetField(writer.handle(), TIFFTAG_ROWSPERSTRIP, 10);
    const Bytes samples = rgbSamples(image);
    for (std::uint16_t plane = 0; plane < 3; ++plane)
        for (std::uint32_t y = 0; y < 47; ++y) {
            Bytes row(61);
            for (std::size_t x = 0; x < row.size(); ++x)
                row[x] = samples[(y * 61 + x) * 3 + plane];
            TIFFWriteScanline(writer.handle(), row.data(), y, plane);
        }
    expectSamePixels(decoded(kTiffCodec, writer.finish()), image);
}

TEST(TiffCodec, ReadsAssociatedAndStraightAlpha) {
    const Bytes samples = {100, 50, 25, 128, 200, 100, 50, 128};
    const auto file = [&](std::uint16_t kind) {
        TiffWriter writer;
        writer.begin({2, 1}, 4, 8, PHOTOMETRIC_RGB);
        writer.extraSample(kind);
        writer.strip(samples.data(), samples.size());
        return decoded(kTiffCodec, writer.finish());
    };
    const Image associated = file(EXTRASAMPLE_ASSOCALPHA);
    EXPECT_EQ(associated.pixel(0, 0), RGBA32(100, 50, 25, 128));
    EXPECT_EQ(associated.pixel(0, 1), RGBA32(128, 100, 50, 128)); // red is clamped to alpha
    const Image straight = file(EXTRASAMPLE_UNASSALPHA);
    EXPECT_EQ(straight.pixel(0, 0), RGBA32(50, 25, 13, 128));
    EXPECT_EQ(file(EXTRASAMPLE_UNSPECIFIED).pixel(0, 0), RGBA32(100, 50, 25, 255));
}

TEST(TiffCodec, ReadsGreysOfEveryDepth) {
    for (const int bits : {1, 2, 4, 8, 12, 16, 32})
        for (const int photometric : {PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE}) {
            TiffWriter writer;
            writer.begin({2, 1}, 1, bits, photometric);
            const Bytes lowThenHigh = [&]() -> Bytes {
                switch (bits) {
                case 1:
                    return {0x40};
                case 2:
                    return {0x30};
                case 4:
                    return {0x0F};
                case 12:
                    return {0x00, 0x0F, 0xFF};
                default: {
                    Bytes bytes(static_cast<std::size_t>(bits) / 8);
                    bytes.resize(bytes.size() * 2, 0xFF);
                    return bytes;
                }
                }
            }();
            writer.strip(lowThenHigh.data(), lowThenHigh.size());
            const Image image = decoded(kTiffCodec, writer.finish());
            const bool inverted = photometric == PHOTOMETRIC_MINISWHITE;
            EXPECT_EQ(image.pixel(0, 0), RGBA32(inverted ? 0xFFFFFFFF : 0x000000FF)) << bits;
            EXPECT_EQ(image.pixel(0, 1), RGBA32(inverted ? 0x000000FF : 0xFFFFFFFF)) << bits;
        }
}

TEST(TiffCodec, SixteenBitsAreRoundedInEitherByteOrder) {
    const std::vector<std::uint16_t> samples = {0, 257 * 100, 65535, 257 * 10 + 129, 257 * 10 + 128, 300};
    for (const char* mode : {"wl", "wb"}) {
        TiffWriter writer(mode);
        writer.begin({2, 1}, 3, 16, PHOTOMETRIC_RGB);
        writer.strip(samples.data(), samples.size() * 2);
        const Image image = decoded(kTiffCodec, writer.finish());
        EXPECT_EQ(image.pixel(0, 0), RGBA32(0, 100, 255, 255));
        EXPECT_EQ(image.pixel(0, 1), RGBA32(11, 10, 1, 255));
    }
}

TEST(TiffCodec, ReadsFloatingPointFromZeroToOne) {
    const std::vector<float> samples = {0.0F, 0.5F, 1.0F, -1.0F, 2.0F, NAN};
    TiffWriter writer;
    writer.begin({2, 1}, 3, 32, PHOTOMETRIC_RGB);
    TIFFSetField(writer.handle(), TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    writer.strip(samples.data(), samples.size() * sizeof(float));
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(0, 128, 255, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 255, 0, 255));
}

TEST(TiffCodec, ReadsPalettes) {
    std::vector<std::uint16_t> red(16);
    std::vector<std::uint16_t> green(16);
    std::vector<std::uint16_t> blue(16);
    red[3] = 0xFF00; // some encoders leave the low byte zero
    green[5] = 0x8080;
    TiffWriter writer;
    writer.begin({2, 1}, 1, 4, PHOTOMETRIC_PALETTE);
    TIFFSetField(writer.handle(), TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
    const std::uint8_t indices = 0x35;
    writer.strip(&indices, 1);
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 0, 0, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 128, 0, 255));
}

TEST(TiffCodec, ReadsCmykWithoutAProfileMultiplicatively) {
    const Bytes samples = {0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255, 128, 0, 0, 128};
    TiffWriter writer;
    writer.begin({4, 1}, 4, 8, PHOTOMETRIC_SEPARATED);
    writer.strip(samples.data(), samples.size());
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 255, 255, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 255, 255, 255));
    EXPECT_EQ(image.pixel(0, 2), RGBA32(0, 0, 0, 255));
    EXPECT_EQ(image.pixel(0, 3), RGBA32(63, 127, 127, 255));
}

TEST(TiffCodec, ReadsLab) {
    const Bytes samples = {255, 0, 0, 0, 0, 0, 136, 208, 36}; // white, black, a = -48 b = 36: green
    TiffWriter writer;
    writer.begin({3, 1}, 3, 8, PHOTOMETRIC_CIELAB);
    writer.strip(samples.data(), samples.size());
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 255, 255, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 0, 0, 255));
    EXPECT_GT(image.pixel(0, 2).green(), image.pixel(0, 2).red() + 60);
    EXPECT_GT(image.pixel(0, 2).green(), image.pixel(0, 2).blue() + 60);
}

TEST(TiffCodec, ReadsJpegInside) {
    const Image image =
        picture({64, 48}, [](int x, int y) { return RGBA32(byteOf(x * 2), byteOf(y * 3), 100, 255); });
    const Bytes file = [&] {
        TiffWriter writer;
        writer.begin({64, 48}, 3, 8, PHOTOMETRIC_YCBCR, COMPRESSION_JPEG);
        TIFFSetField(writer.handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        TIFFSetField(writer.handle(), TIFFTAG_JPEGQUALITY, 95);
        const Bytes samples = rgbSamples(image);
        writer.strip(samples.data(), samples.size());
        return writer.finish();
    }();
    const Image read = decoded(kTiffCodec, file);
    ASSERT_EQ(read.pixelSize(), image.pixelSize());
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x) {
            EXPECT_NEAR(read.pixel(y, x).red(), image.pixel(y, x).red(), 8);
            EXPECT_NEAR(read.pixel(y, x).green(), image.pixel(y, x).green(), 8);
        }
}

TEST(TiffCodec, ReadsSubsampledChromaWithoutJpeg) {
    // 2 by 2 pixels of one colour: four luma samples, then the shared Cb and Cr.
    const Bytes samples = {81, 81, 81, 81, 90, 240};
    TiffWriter writer;
    writer.begin({2, 2}, 3, 8, PHOTOMETRIC_YCBCR);
    TIFFSetField(writer.handle(), TIFFTAG_YCBCRSUBSAMPLING, 2, 2);
    writer.strip(samples.data(), samples.size());
    const Image image = decoded(kTiffCodec, writer.finish());
    EXPECT_NEAR(image.pixel(1, 1).red(), 238, 2); // 81 + 1.402 * 112
    EXPECT_NEAR(image.pixel(1, 1).green(), 14, 2);
}

} // namespace
} // namespace complexion
