// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {
namespace {

TEST(ConvertToGrayScale, WeighsTheComponentsAsDeviceGrayDoes) {
    const Image image = painted({3, 1}, [](int, int column) {
        return std::array{RGBA32(255, 0, 0, 255), RGBA32(0, 255, 0, 255),
                          RGBA32(0, 0, 255, 255)}[static_cast<std::size_t>(column)];
    });
    const Image grayImage = ImageTools::convertToGrayScale(image);
    EXPECT_EQ(grayImage.pixel(0, 0), grey((77 * 255 + 128) >> 8));
    EXPECT_EQ(grayImage.pixel(0, 1), grey((151 * 255 + 128) >> 8));
    EXPECT_EQ(grayImage.pixel(0, 2), grey((28 * 255 + 128) >> 8));
}

TEST(ConvertToGrayScale, RoundsTheWeightedSumHalfUp) {
    const Image image = noise({300, 70});
    const std::vector<RGBA32> colors = pixelsOf(image);
    const std::vector<RGBA32> greys = pixelsOf(ImageTools::convertToGrayScale(image));
    ASSERT_EQ(greys.size(), colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i) {
        const double sum =
            (77.0 * colors[i].red() + 151.0 * colors[i].green() + 28.0 * colors[i].blue()) / 256;
        ASSERT_EQ(greys[i], grey(static_cast<int>(std::floor(sum + 0.5)))) << i;
    }
}

TEST(ConvertToGrayScale, KeepsGreys) {
    const Image image = painted({256, 1}, [](int, int column) { return grey(column); });
    EXPECT_EQ(pixelsOf(ImageTools::convertToGrayScale(image)), pixelsOf(image));
}

TEST(ConvertToGrayScale, KeepsTheSizesInPixelsAndPoints) {
    const Image grayImage = ImageTools::convertToGrayScale(noise({400, 200}).withSize({200, 100}));
    EXPECT_EQ(grayImage.pixelSize(), (PixelSize{400, 200}));
    EXPECT_EQ(grayImage.size(), (PointSize{200, 100}));
}

TEST(ConvertToGrayScale, CompositesTransparentPixelsOverBlack) {
    const Image grayImage = ImageTools::convertToGrayScale(
        painted({2, 1}, [](int, int column) { return column == 0 ? RGBA32() : RGBA32(100, 100, 100, 100); }));
    EXPECT_EQ(grayImage.pixel(0, 0), grey(0));
    EXPECT_EQ(grayImage.pixel(0, 1), grey(100));
}

TEST(ConvertToGrayScaleDeathTest, AnImageWithoutPixelsIsFatal) {
    EXPECT_DEATH(ImageTools::convertToGrayScale(Image()), "without pixels");
}

} // namespace
} // namespace complexion
