// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/pictures.h"
#include "imaging/image_tools.h"

#include <gtest/gtest.h>

namespace complexion::test {
namespace {

TEST(ConvertToGrayScale, WeighsTheComponentsAsDeviceGrayDoes) {
    const Image image = picture({3, 1}, [](int, int column) {
        return std::array{RGBA32(255, 0, 0, 255), RGBA32(0, 255, 0, 255), RGBA32(0, 0, 255, 255)}[static_cast<std::size_t>(column)];
    });
    const Image grayImage = ImageTools::convertToGrayScale(image);
    EXPECT_EQ(grayImage.pixel(0, 0), gray((77 * 255 + 128) >> 8));
    EXPECT_EQ(grayImage.pixel(0, 1), gray((151 * 255 + 128) >> 8));
    EXPECT_EQ(grayImage.pixel(0, 2), gray((28 * 255 + 128) >> 8));
}

TEST(ConvertToGrayScale, GivesEveryGrayItself) {
    const Image image = picture({256, 1}, [](int, int column) { return gray(column); });
    EXPECT_EQ(pixelsOf(ImageTools::convertToGrayScale(image)), pixelsOf(image));
}

TEST(ConvertToGrayScale, KeepsThePixelsAndThePointsOfA144DpiImage) {
    const Image grayImage = ImageTools::convertToGrayScale(noise({400, 200}).withSize({200, 100}));
    EXPECT_EQ(grayImage.pixelSize(), (PixelSize{400, 200}));
    EXPECT_EQ(grayImage.size(), (PointSize{200, 100}));
}

TEST(ConvertToGrayScale, ShowsTransparentPixelsOverBlackAndIsOpaque) {
    const Image grayImage = ImageTools::convertToGrayScale(
        picture({2, 1}, [](int, int column) { return column == 0 ? RGBA32() : RGBA32(100, 100, 100, 100); }));
    EXPECT_EQ(grayImage.pixel(0, 0), gray(0));
    EXPECT_EQ(grayImage.pixel(0, 1), gray(100));
}

TEST(ConvertToGrayScaleDeathTest, AnImageWithoutPixelsIsFatal) {
    EXPECT_DEATH(ImageTools::convertToGrayScale(Image()), "without pixels");
}

} // namespace
} // namespace complexion::test
