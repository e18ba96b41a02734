// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/resample.h"

#include "tests/fakes/pictures.h"

#include <vector>

namespace complexion {
namespace {

TEST(Resampled, TheSameSizeSharesThePixelsAtOnePointPerPixel) {
    const Image image = filled({300, 70}, RGBA32(10, 20, 30, 255)).withSize({72, 16.8});
    const Image same = resampled(image, {300, 70});
    EXPECT_EQ(same.size(), (PointSize{300, 70}));
    EXPECT_EQ(same.bands(), image.bands());
}

TEST(Resampled, AUniformPictureStaysUniformAtEverySize) {
    const RGBA32 half(100, 50, 3, 127);
    const Image image = filled({97, 131}, half);
    for (const PixelSize size : {PixelSize{1, 1}, {96, 130}, {98, 132}, {255, 65}, {40, 700}, {700, 3}}) {
        const Image other = resampled(image, size);
        ASSERT_EQ(other.pixelSize(), size);
        EXPECT_EQ(other.size(),
                  (PointSize{static_cast<double>(size.width), static_cast<double>(size.height)}));
        EXPECT_THAT(pixelsOf(other), testing::Each(half)) << size.width << " x " << size.height;
    }
}

TEST(Resampled, ShrinkingAveragesTheCoveredArea) {
    const std::vector<RGBA32> pixels = {RGBA32(10, 0, 0, 255), RGBA32(20, 0, 0, 255), RGBA32(60, 0, 0, 255),
                                        RGBA32(30, 0, 0, 255), RGBA32(40, 0, 0, 255), RGBA32(90, 0, 0, 255)};
    const Image image = Image::fromPixels({3, 2}, pixels);
    EXPECT_EQ(resampled(image, {1, 1}).pixel(0, 0), RGBA32(42, 0, 0, 255)); // 250 / 6
    // The middle column counts half on each side.
    const Image two = resampled(image, {2, 2});
    EXPECT_EQ(two.pixel(0, 0).red(), 13); // (10 + 20 / 2) / 1.5
    EXPECT_EQ(two.pixel(1, 1).red(), 73); // (40 / 2 + 90) / 1.5
}

TEST(Resampled, DoesNotKeepTheAspectRatio) {
    std::vector<RGBA32> pixels;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 400; ++x)
            pixels.push_back(x < 200 ? RGBA32(255, 0, 0, 255) : RGBA32(0, 0, 255, 255));
    const Image squeezed = resampled(Image::fromPixels({400, 200}, pixels), {100, 100});
    EXPECT_EQ(squeezed.pixel(0, 49), RGBA32(255, 0, 0, 255));
    EXPECT_EQ(squeezed.pixel(99, 50), RGBA32(0, 0, 255, 255));
}

TEST(Resampled, AnEnlargedEdgeHasNoComponentAboveItsAlpha) {
    const std::vector<RGBA32> pixels = {RGBA32(0, 0, 0, 0), RGBA32(0, 0, 0, 0), RGBA32(128, 64, 128, 128),
                                        RGBA32(255, 255, 255, 255)};
    const Image wide = resampled(Image::fromPixels({4, 1}, pixels), {61, 5});
    for (const RGBA32 pixel : pixelsOf(wide)) {
        EXPECT_LE(pixel.red(), pixel.alpha());
        EXPECT_LE(pixel.green(), pixel.alpha());
        EXPECT_LE(pixel.blue(), pixel.alpha());
    }
    EXPECT_EQ(wide.pixel(2, 0), RGBA32(0, 0, 0, 0));
    EXPECT_EQ(wide.pixel(2, 60).alpha(), 255);
}

TEST(Resampled, AnEnlargedRampStaysARamp) {
    std::vector<RGBA32> pixels;
    for (int x = 0; x < 20; ++x)
        pixels.push_back(RGBA32(static_cast<std::uint8_t>(10 * x), 0, 0, 255));
    const Image wide = resampled(Image::fromPixels({20, 1}, pixels), {100, 1});
    for (int x = 10; x < 90; ++x)
        EXPECT_NEAR(wide.pixel(0, x).red(), 2 * x - 4, 1) << x;
}

TEST(Resampled, BandsJoinWithoutSeams) {
    std::vector<RGBA32> pixels;
    for (int y = 0; y < 250; ++y)
        pixels.push_back(RGBA32(static_cast<std::uint8_t>(y), 0, 0, 255));
    const Image tall = resampled(Image::fromPixels({1, 250}, pixels), {1, 500});
    for (int y = 4; y < 495; ++y)
        EXPECT_NEAR(tall.pixel(y, 0).red(), (y - 0.5) / 2, 0.76) << y;
}

TEST(Resampled, APictureWithoutPixelsBecomesTransparent) {
    EXPECT_THAT(pixelsOf(resampled(Image::empty({4, 4}), {3, 2})), testing::Each(RGBA32()));
    EXPECT_FALSE(resampled(filled({3, 3}, RGBA32(1, 1, 1, 255)), {0, 5}).hasPixels());
}

} // namespace
} // namespace complexion
