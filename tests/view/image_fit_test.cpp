// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/image_fit.h"

#include <gtest/gtest.h>

namespace complexion {

namespace {

TEST(ImageFit, AWideImageFillsTheFramesWidth) {
    const ImageFit fit = fitImage({1000, 500}, {600, 600});
    EXPECT_DOUBLE_EQ(fit.scale, 0.6);
    EXPECT_DOUBLE_EQ(fit.offsetX, 0);
    EXPECT_DOUBLE_EQ(fit.offsetY, 150);
}

TEST(ImageFit, ATallImageFillsTheFramesHeight) {
    const ImageFit fit = fitImage({500, 1000}, {600, 500});
    EXPECT_DOUBLE_EQ(fit.scale, 0.5);
    EXPECT_DOUBLE_EQ(fit.offsetX, 175);
    EXPECT_DOUBLE_EQ(fit.offsetY, 0);
}

TEST(ImageFit, AnImageOfTheSameAspectRatioFillsTheFrame) {
    EXPECT_EQ(fitImage({400, 300}, {800, 600}), (ImageFit{2, 0, 0}));
}

TEST(ImageFit, TheScaleIsNotRounded) {
    EXPECT_DOUBLE_EQ(fitImage({3000, 2000}, {1001, 5000}).scale, 1001.0 / 3000);
}

TEST(ImageFit, TheCentreOfTheFrameIsTheCentreOfTheImage) {
    const Point point = imagePointAt({300, 300}, {1000, 500}, {0, 0, 600, 600});
    EXPECT_DOUBLE_EQ(point.x, 500);
    EXPECT_DOUBLE_EQ(point.y, 250);
}

TEST(ImageFit, YIsUpward) {
    const Point point = imagePointAt({0, 150}, {1000, 500}, {0, 0, 600, 600});
    EXPECT_DOUBLE_EQ(point.x, 0);
    EXPECT_DOUBLE_EQ(point.y, 0);
    EXPECT_DOUBLE_EQ(imagePointAt({600, 450}, {1000, 500}, {0, 0, 600, 600}).y, 500);
}

TEST(ImageFit, TheFramesOriginIsSubtracted) {
    const Point point = imagePointAt({100, 100}, {400, 300}, {-300, -200, 1600, 1200});
    EXPECT_DOUBLE_EQ(point.x, 100);
    EXPECT_DOUBLE_EQ(point.y, 75);
}

TEST(ImageFit, PointsInTheMarginAreOutsideTheImage) {
    EXPECT_LT(imagePointAt({300, 10}, {1000, 500}, {0, 0, 600, 600}).y, 0);
    EXPECT_GT(imagePointAt({300, 590}, {1000, 500}, {0, 0, 600, 600}).y, 500);
    EXPECT_LT(imagePointAt({10, 100}, {500, 1000}, {0, 0, 600, 500}).x, 0);
}

} // namespace

} // namespace complexion
