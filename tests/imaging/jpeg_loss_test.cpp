// SPDX-License-Identifier: GPL-3.0-or-later

// The loss when a JPEG photo is decoded and encoded again.
#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_decompressor.h"
#include "imaging/containers/byte_order.h"
#include "imaging/metadata/jpeg_metadata.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/imaging/codec_pictures.h"

#include <cstdlib>
#include <random>

namespace complexion {
namespace {

using test::decoded;
using test::encoded;

constexpr PixelSize kSize{320, 256};

/// A JPEG file with shading, noise and chroma subsampling, like a photo.
Bytes noisyFile(int quality) {
    std::mt19937 engine(7);
    std::normal_distribution<double> noise(0, 6);
    std::vector<std::uint8_t> samples;
    for (int row = 0; row < kSize.height; ++row)
        for (int column = 0; column < kSize.width; ++column)
            for (const double base : {150.0, 110.0, 90.0})
                samples.push_back(
                    static_cast<std::uint8_t>(base + row / 8.0 - column / 10.0 + noise(engine)));
    return jpegFile({.size = kSize,
                     .quality = quality,
                     .exif = {},
                     .icc = {},
                     .adjust =
                         [](jpeg_compress_struct& info) {
                             info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 2;
                         }},
                    samples);
}

double meanDifference(const std::vector<std::uint8_t>& one, const std::vector<std::uint8_t>& other) {
    EXPECT_EQ(one.size(), other.size());
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < one.size(); ++i)
        sum += std::abs(one[i] - other[i]);
    return static_cast<double>(sum) / static_cast<double>(one.size());
}

class JpegLoss : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(OfQuality, JpegLoss, testing::Values(75, 90, 95, 98),
                         testing::PrintToStringParamName());

TEST_P(JpegLoss, IsSmallForAPhoto) {
    const Bytes source = noisyFile(GetParam());
    const Result<Image> image = kJpegCodec.decode(source);
    ASSERT_TRUE(image);
    const Result<FileContents> file = kJpegCodec.encode(*image);
    ASSERT_TRUE(file);
    EXPECT_LT(meanDifference(jpegSamples(file->joined(), JCS_RGB), jpegSamples(source, JCS_RGB)), 0.15);
}

TEST_P(JpegLoss, IsLessThanWithTheLibrarysDefaults) {
    const Bytes source = noisyFile(GetParam());
    const std::vector<std::uint8_t> samples = jpegSamples(source, JCS_RGB);
    const Bytes plain = jpegFile({.size = kSize, .exif = {}, .icc = {}}, samples);
    const Result<FileContents> file = kJpegCodec.encode(*kJpegCodec.decode(source));
    ASSERT_TRUE(file);
    EXPECT_LT(meanDifference(jpegSamples(file->joined(), JCS_RGB), samples),
              0.95 * meanDifference(jpegSamples(plain, JCS_RGB), samples));
}

// Pictures that YCbCr cannot represent well.

/// The colour space of the file's components.
J_COLOR_SPACE colorsOf(ByteView file) {
    jpeg::Decompressor decompressor(file);
    EXPECT_TRUE(decompressor.readHeader());
    return decompressor.isRgb() ? JCS_RGB : JCS_YCbCr;
}

/// A grey picture with a square of colour noise in its centre.
Image withStrongColors(int side) {
    const Image strong = noise(kSize);
    return painted(kSize, [&](int row, int column) {
        const bool isInside =
            std::abs(row - kSize.height / 2) < side / 2 && std::abs(column - kSize.width / 2) < side / 2;
        return isInside ? strong.pixel(row, column) : grey(90 + row / 4);
    });
}

TEST(JpegColorSpace, StrongColorsAreCodedAsRgbWithLittleLoss) {
    const Image image = noise(kSize);
    const std::vector<std::uint8_t> samples = rgbSamples(image);
    EXPECT_GT(meanDifference(jpegSamples(jpegFile({.size = kSize, .exif = {}, .icc = {}}, samples), JCS_RGB),
                             samples),
              0.15);
    const Bytes file = encoded(kJpegCodec, image);
    EXPECT_EQ(colorsOf(file), JCS_RGB);
    EXPECT_LT(meanDifference(jpegSamples(file, JCS_RGB), samples), 0.1);
    EXPECT_TRUE(nearlySamePixels(decoded(kJpegCodec, file), image, 2));
}

TEST(JpegColorSpace, AreYCbCrUnlessMuchOfThePictureHasStrongColors) {
    EXPECT_EQ(colorsOf(encoded(kJpegCodec, *kJpegCodec.decode(noisyFile(95)))), JCS_YCbCr);
    EXPECT_EQ(colorsOf(encoded(kJpegCodec, withStrongColors(40))), JCS_YCbCr);
    EXPECT_EQ(colorsOf(encoded(kJpegCodec, withStrongColors(240))), JCS_RGB);
}

TEST(JpegColorSpace, DoNotChangeWithEdits) {
    const Image image = noise(kSize);
    (void)encoded(kJpegCodec, image);
    EXPECT_EQ(colorsOf(encoded(kJpegCodec, image.withBands(filled(kSize, grey(90)).bands()))), JCS_RGB);
}

TEST(JpegColorSpace, AreYCbCrForLazilyComputedPixels) {
    EXPECT_EQ(colorsOf(encoded(kJpegCodec, noise(kSize).transformed(std::make_shared<test::Inversion>()))),
              JCS_YCbCr);
}

TEST(JpegColorSpace, AnRgbFileHasItsDensityInExif) {
    const Bytes file = encoded(kJpegCodec, noise(kSize).withSize({10, 10}));
    EXPECT_EQ(jpeg::readMetadata(file).resolution, (Resolution{72, 72, Resolution::Unit::Inch}));
    EXPECT_EQ(textOf(file).find("JFIF"), std::string_view::npos);
    EXPECT_EQ(decoded(kJpegCodec, file).size(), (PointSize{kSize.width * 1.0, kSize.height * 1.0}));
}

} // namespace
} // namespace complexion
