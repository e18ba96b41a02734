// SPDX-License-Identifier: GPL-3.0-or-later

// The limits in the flat repair's rule, tested on both sides.
#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace complexion {
namespace {

constexpr PixelSize kPictureSize{60, 60};
constexpr std::int64_t kRow = 30;
constexpr std::int64_t kColumn = 30;
constexpr std::int64_t kRadius = 10;
constexpr Point kCentre{30.5, 29.5};
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

/// The samples on the rim of the disc, clockwise from the top; each is compared with the opposite one. The
/// diagonal offset is the truncated root of half the squared radius: 7 for a radius of 10.
constexpr std::array<PixelPosition, 8> kRim = {
    {{20, 30}, {23, 37}, {30, 40}, {37, 37}, {40, 30}, {37, 23}, {30, 20}, {23, 23}}};

/// Skin of grey 100 with a dark spot in the centre of the disc, and pixels of another grey at `places`.
Image skinWith(std::initializer_list<PixelPosition> places, int level) {
    return withPixels(spotted(kPictureSize, {kRow, kColumn}, 3, 20, 100), places, grey(level));
}

bool isRepaired(const Image& image) {
    return !ImageTools::FindPimplePixels(kCentre, image, kRadius, 10).repair.empty();
}

TEST(RepairBounds, OppositeRimSamplesMayDifferByAtMost70Levels) {
    for (const PixelPosition place : kRim) {
        SCOPED_TRACE(testing::Message() << "row " << place.row << ", column " << place.column);
        EXPECT_TRUE(isRepaired(skinWith({place}, 170)));
        EXPECT_FALSE(isRepaired(skinWith({place}, 171)));
        EXPECT_TRUE(isRepaired(skinWith({place}, 30)));
        EXPECT_FALSE(isRepaired(skinWith({place}, 29)));
    }
}

TEST(RepairBounds, OnlyOppositeRimSamplesAreCompared) {
    for (std::size_t i = 0; i < kRim.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_EQ(isRepaired(skinWith({kRim[i], kRim[j]}, 250)), i - j == 4) << i << " and " << j;
}

TEST(RepairBounds, ASpotIsDarkIfTheRimIsBrighterThanTheCore) {
    // A difference of one grey level between the means decides; equal means count as a light spot. The core
    // has 3 by 3 pixels; one darker and one brighter pixel are outside the rim and the core.
    const auto picture = [](int core) {
        const Image skin = withPixels(withPixels(filled(kPictureSize, grey(100)), {{25, 30}}, grey(60)),
                                      {{35, 30}}, grey(140));
        std::vector<PixelPosition> middle;
        for (std::int64_t row = 29; row <= 31; ++row)
            for (std::int64_t column = 29; column <= 31; ++column)
                middle.push_back({row, column});
        return withPixels(skin, middle, grey(core));
    };
    const auto repaired = [&](int core) {
        return ImageTools::FindPimplePixels(kCentre, picture(core), kRadius, 30).repair;
    };
    EXPECT_EQ(repaired(99), (std::vector<PixelPosition>{{25, 30}}));
    EXPECT_EQ(repaired(100), (std::vector<PixelPosition>{{35, 30}}));
    EXPECT_EQ(repaired(101), (std::vector<PixelPosition>{{35, 30}}));
}

TEST(RepairBounds, TheMeansOfRimAndCoreAreTruncated) {
    // The rim's sum exceeds eight times 100 by 7, or by 8. The core's sum is nine times 100.
    const auto picture = [](int extra) {
        return withPixels(withPixels(filled(kPictureSize, grey(100)), {{25, 30}}, grey(60)), {kRim[1]},
                          grey(100 + extra));
    };
    const auto isDark = [&](int extra) {
        return !ImageTools::FindPimplePixels(kCentre, picture(extra), kRadius, 30).repair.empty();
    };
    EXPECT_FALSE(isDark(7));
    EXPECT_TRUE(isDark(8));
    // The core's sum exceeds nine times 100 by 8, so that its truncated mean is still 100, or by 9.
    const auto coreOf = [&](int extra) { return withPixels(picture(8), {{29, 31}}, grey(100 + extra)); };
    EXPECT_FALSE(ImageTools::FindPimplePixels(kCentre, coreOf(8), kRadius, 30).repair.empty());
    EXPECT_TRUE(ImageTools::FindPimplePixels(kCentre, coreOf(9), kRadius, 30).repair.empty());
}

TEST(RepairBounds, APixelExactlyAtTheThresholdIsSkin) {
    // Two darker pixels lower the truncated mean of the disc's 305 pixels to 99.
    for (const int level : {80, 79}) {
        const Image dark = withPixels(withPixels(filled(kPictureSize, grey(100)), {{25, 30}}, grey(level)),
                                      {{30, 30}, {30, 31}}, grey(91));
        ASSERT_EQ(ImageTools::FindPimplePixels(kCentre, dark, kRadius, 19).repair.size(),
                  level < 99 - 19 ? 1U : 0U);
    }
    for (const int level : {119, 120}) {
        const Image light = withPixels(withPixels(filled(kPictureSize, grey(100)), {{25, 30}}, grey(level)),
                                       {{30, 30}, {30, 31}}, grey(109));
        ASSERT_EQ(ImageTools::FindPimplePixels(kCentre, light, kRadius, 19).repair.size(),
                  level > 100 + 19 ? 1U : 0U);
    }
}

TEST(RepairBounds, TheDiscMayTouchTheEdge) {
    const Image image = filled(kPictureSize, grey(100));
    const auto isAccepted = [&](double x, double y) {
        return !ImageTools::RemovePimpleFromImage(image, {x, y}, kRadius, 1, {}, 10)->isSameObject(image);
    };
    EXPECT_TRUE(isAccepted(10, 30));
    EXPECT_FALSE(isAccepted(9.9, 30));
    EXPECT_TRUE(isAccepted(50.9, 30));
    EXPECT_FALSE(isAccepted(51, 30));
    EXPECT_TRUE(isAccepted(30, 50));
    EXPECT_FALSE(isAccepted(30, 50.1));
    EXPECT_TRUE(isAccepted(30, 9.1));
    EXPECT_FALSE(isAccepted(30, 9));
}

TEST(RepairBounds, RowsAreCountedInPoints) {
    // 40 by 40 pixels at 40 by 20 points: row 10 is 10 points below the top.
    const Image image = spotted({40, 40}, {10, 20}, 3, 40, 180).withSize({40, 20});
    const PimplePixels pixels = ImageTools::FindPimplePixels({20.5, 9.5}, image, 8, 20);
    ASSERT_FALSE(pixels.repair.empty());
    EXPECT_EQ(pixels.repair.front(), (PixelPosition{8, 18}));
    const auto result = ImageTools::RemovePimpleFromImage(image, {20.5, 9.5}, 8, 1, {}, 20);
    EXPECT_TRUE(samePixels(*result, filled({40, 40}, grey(180)).withSize({40, 20})));
}

TEST(RepairBounds, ACustomColorMayRoundDownFromJustBelow256) {
    const Image image = spotted(kPictureSize, {kRow, kColumn}, 3, 40, 180);
    const auto painted = [&](RgbColor color) {
        return ImageTools::RemovePimpleFromImage(image, kCentre, kRadius, kCustomColor, color, 20)
            ->pixel(kRow, kColumn);
    };
    EXPECT_EQ(painted({1.0038, 1.001, 255.9 / 255}), RGBA32(255, 255, 255, 255));
    EXPECT_EQ(painted({-0.0038, -0.9 / 255, 0.9 / 255}), RGBA32(0, 0, 0, 255));
    EXPECT_DEATH(painted({256.0 / 255, 0, 0}), "custom colour");
    EXPECT_DEATH(painted({0, -1.0 / 255, 0}), "custom colour");
    EXPECT_DEATH(painted({0, 0, std::numeric_limits<double>::infinity()}), "custom colour");
    EXPECT_DEATH(painted({0, 0, -std::numeric_limits<double>::infinity()}), "custom colour");
}

TEST(RepairBounds, TheCustomColorIsNotReadIfThereIsNothingToRepair) {
    const Image image = filled(kPictureSize, grey(100));
    const auto result =
        ImageTools::RemovePimpleFromImage(image, kCentre, kRadius, kCustomColor, {std::nan(""), 7, -7}, 10);
    ASSERT_TRUE(result);
    EXPECT_TRUE(samePixels(*result, image));
}

TEST(RepairBounds, ANegativeThresholdRepairsEvenPixelsEqualToTheMean) {
    const Image image = filled(kPictureSize, grey(100));
    EXPECT_EQ(ImageTools::FindPimplePixels(kCentre, image, kRadius, 0).repair.size(), 0U);
    EXPECT_EQ(ImageTools::FindPimplePixels(kCentre, image, kRadius, -1).sample.size(), 0U);
}

TEST(RepairBoundsDeathTest, AThresholdThatOverflowsIsFatal) {
    const Image dark = spotted(kPictureSize, {kRow, kColumn}, 3, 40, 180);
    EXPECT_DEATH((void)ImageTools::FindPimplePixels(kCentre, dark, kRadius, kMin), "overflow");
    EXPECT_TRUE(ImageTools::FindPimplePixels(kCentre, dark, kRadius, kMax).repair.empty());
    const Image light = spotted(kPictureSize, {kRow, kColumn}, 3, 200, 100);
    EXPECT_DEATH((void)ImageTools::FindPimplePixels(kCentre, light, kRadius, kMax), "overflow");
    EXPECT_TRUE(ImageTools::FindPimplePixels(kCentre, light, kRadius, kMin).sample.empty());
}

TEST(RepairBounds, EachComponentOfTheMeanColorIsTruncated) {
    // One pixel to repair, in the centre, among 304 skin pixels of two colours in nearly equal numbers.
    const Image image = painted(kPictureSize, [](int row, int column) {
        if (row == kRow && column == kColumn)
            return RGBA32(10, 10, 10, 255);
        return column < kColumn ? RGBA32(151, 121, 91, 255) : RGBA32(150, 120, 90, 255);
    });
    const auto result = ImageTools::RemovePimpleFromImage(image, kCentre, kRadius, 1, {}, 50);
    EXPECT_EQ(result->pixel(kRow, kColumn), RGBA32(150, 120, 90, 255));
}

} // namespace
} // namespace complexion
