// SPDX-License-Identifier: GPL-3.0-or-later

// How much of a photo is lost when its JPEG file is decoded and coded again.
#include "imaging/codecs/codec.h"
#include "tests/fakes/jpeg_files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace complexion {
namespace {

constexpr PixelSize kSize{320, 256};

/// A photo's file: shading under noise, the colours at half resolution.
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

TEST_P(JpegLoss, APhotoCodedAgainLosesLittle) {
    const Bytes source = noisyFile(GetParam());
    const Result<Image> image = kJpegCodec.decode(source);
    ASSERT_TRUE(image);
    const Result<FileContents> file = kJpegCodec.encode(*image);
    ASSERT_TRUE(file);
    EXPECT_LT(meanDifference(jpegSamples(file->joined(), JCS_RGB), jpegSamples(source, JCS_RGB)), 0.15);
}

TEST_P(JpegLoss, IsLessThanThatOfTheLibrarysOwnSettings) {
    const Bytes source = noisyFile(GetParam());
    const std::vector<std::uint8_t> samples = jpegSamples(source, JCS_RGB);
    const Bytes plain = jpegFile({.size = kSize, .exif = {}, .icc = {}}, samples);
    const Result<FileContents> file = kJpegCodec.encode(*kJpegCodec.decode(source));
    ASSERT_TRUE(file);
    EXPECT_LT(meanDifference(jpegSamples(file->joined(), JCS_RGB), samples),
              0.95 * meanDifference(jpegSamples(plain, JCS_RGB), samples));
}

} // namespace
} // namespace complexion
