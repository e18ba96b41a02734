// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"
#include "tests/imaging/plain_repair.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <random>

namespace complexion {
namespace {

constexpr RgbColor kRed = {1, 0, 0};

Image repaired(const Image& image, std::int64_t row, std::int64_t column, std::int64_t radius,
               std::int64_t threshold, std::int64_t colorType = 1, RgbColor color = kRed) {
    return ImageTools::RemovePimpleFromImage(image, centreOf({row, column}, image.size()), radius, colorType,
                                             color, threshold)
        .value();
}

TEST(RemovePimple, PaintsADarkSpotInTheMeanColorOfTheSkinAround) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180);
    const Image result = repaired(image, 30, 30, 10, 20);
    EXPECT_EQ(pixelsOf(result), pixelsOf(filled({60, 60}, grey(180))));
}

TEST(RemovePimple, PaintsALightSpot) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 240, 120);
    EXPECT_EQ(pixelsOf(repaired(image, 30, 30, 10, 20)), pixelsOf(filled({60, 60}, grey(120))));
}

TEST(RemovePimple, EqualsTheOracleForRandomPicturesAndSettings) {
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        const PixelSize size{static_cast<int>(40 + random() % 300), static_cast<int>(40 + random() % 100)};
        const int skin = static_cast<int>(80 + random() % 120);
        const Image image = painted(size, [&](int row, int column) {
            const int wave = (row * 7 + column * 3) % 23 + static_cast<int>(random() % 9);
            const int spot = (row % 37 < 6 && column % 41 < 6) ? -50 : 0;
            return RGBA32(static_cast<std::uint8_t>(skin + wave + spot),
                          static_cast<std::uint8_t>(skin + spot),
                          static_cast<std::uint8_t>(skin - wave + spot), 255);
        });
        const auto r = static_cast<std::int64_t>(1 + random() % 20);
        const auto cy =
            static_cast<std::int64_t>(r + random() % static_cast<unsigned>(size.height - 2 * r + 1));
        const auto cx =
            static_cast<std::int64_t>(r + random() % static_cast<unsigned>(size.width - 2 * r + 1));
        const auto threshold = static_cast<std::int64_t>(random() % 20);
        const Point point{static_cast<double>(cx), image.size().height - static_cast<double>(cy)};
        const Image result = ImageTools::RemovePimpleFromImage(image, point, r, 1, kRed, threshold).value();
        std::vector<RGBA32> expected = pixelsOf(image);
        repairPlainly(expected, size, cy, cx, r, threshold);
        ASSERT_EQ(pixelsOf(result), expected) << "round " << round << " radius " << r;
    }
}

TEST(RemovePimple, DoesNotChangeTheInputImage) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180);
    const std::vector<RGBA32> before = pixelsOf(image);
    repaired(image, 30, 30, 10, 20);
    EXPECT_EQ(pixelsOf(image), before);
}

TEST(RemovePimple, ChangesNoPixelOutsideTheRepairList) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180);
    const PimplePixels pixels = ImageTools::FindPimplePixels(centreOf({30, 30}, image.size()), image, 10, 20);
    const Image result = repaired(image, 30, 30, 10, 20, kCustomColor);
    for (int row = 0; row < 60; ++row)
        for (int column = 0; column < 60; ++column) {
            const bool listed =
                std::ranges::find(pixels.repair, PixelPosition{row, column}) != pixels.repair.end();
            EXPECT_EQ(result.pixel(row, column), listed ? RGBA32(0xFF0000FF) : image.pixel(row, column));
        }
}

TEST(RemovePimple, ADiscOverTheBorderReturnsTheInputItselfSilently) {
    const Image image = spotted({60, 50}, {25, 30}, 4, 40, 180);
    testing::internal::CaptureStdout();
    for (const auto& [row, column] : {std::pair{9, 30}, {25, 9}, {41, 30}, {25, 51}}) {
        const auto result =
            ImageTools::RemovePimpleFromImage(image, centreOf({row, column}, image.size()), 10, 1, kRed, 10);
        EXPECT_TRUE(result->isSameObject(image)) << row << "," << column;
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(RemovePimple, ADiscThatTouchesTheBottomOrRightEdgeIsAccepted) {
    const Image image = filled({60, 50}, grey(100));
    EXPECT_FALSE(repaired(image, 40, 30, 10, 10).isSameObject(image));
    EXPECT_FALSE(repaired(image, 25, 50, 10, 10).isSameObject(image));
    EXPECT_FALSE(repaired(image, 40, 50, 10, 10).isSameObject(image));
}

TEST(RemovePimple, RimSamplesBeyondTheEdgeReadTheNearestPixel) {
    // The right and bottom rim samples fall on column 60 and row 50, outside the picture, and read the edge
    // pixel: if it differs by 71 levels from the opposite sample, the disc is uneven.
    for (const int difference : {70, 71}) {
        const Image right = painted({60, 50}, [&](int row, int column) {
            return grey(row == 25 && column == 59 ? 100 + difference : (row == 25 && column == 50 ? 0 : 100));
        });
        EXPECT_EQ(
            ImageTools::FindPimplePixels(centreOf({25, 50}, right.size()), right, 10, 10).repair.empty(),
            difference == 71);
        const Image bottom = painted({60, 50}, [&](int row, int column) {
            return grey(row == 49 && column == 30 ? 100 + difference : (row == 40 && column == 30 ? 0 : 100));
        });
        EXPECT_EQ(
            ImageTools::FindPimplePixels(centreOf({40, 30}, bottom.size()), bottom, 10, 10).repair.empty(),
            difference == 71);
    }
}

TEST(RemovePimple, ADiscOfRadiusOneIsTheCentrePixel) {
    const Image image =
        painted({9, 9}, [](int row, int column) { return grey(row == 4 && column == 4 ? 40 : 180); });
    const PimplePixels pixels = ImageTools::FindPimplePixels(centreOf({4, 4}, image.size()), image, 1, 10);
    // The pixel equals the disc's mean, so it does not exceed the threshold.
    EXPECT_TRUE(pixels.repair.empty());
    EXPECT_EQ(pixels.sample, (std::vector<PixelPosition>{{4, 4}}));
}

TEST(RemovePimple, AUniformAreaIsUnchangedButANewImage) {
    const Image image = filled({60, 60}, grey(150));
    for (const std::int64_t threshold : {0, 10}) {
        const Image result = repaired(image, 30, 30, 10, threshold);
        EXPECT_FALSE(result.isSameObject(image));
        EXPECT_EQ(pixelsOf(result), pixelsOf(image));
    }
}

TEST(RemovePimple, OppositeRimSamplesMayDifferByAtMost70Levels) {
    for (const int difference : {70, 71}) {
        const Image image = painted({60, 60}, [&](int row, int column) {
            const bool spot = (row - 30) * (row - 30) + (column - 30) * (column - 30) < 9;
            return grey(spot ? 20 : (row == 20 && column == 30 ? 100 + difference : 100));
        });
        const PimplePixels pixels =
            ImageTools::FindPimplePixels(centreOf({30, 30}, image.size()), image, 10, 10);
        EXPECT_EQ(pixels.repair.empty(), difference == 71);
        EXPECT_EQ(pixels.sample.empty(), difference == 71);
    }
}

TEST(RemovePimple, AnUnevenDiscIsUnchangedButANewImage) {
    const Image image = painted({60, 60}, [](int, int column) { return grey(column < 30 ? 20 : 220); });
    testing::internal::CaptureStdout();
    const Image result = repaired(image, 30, 30, 10, 10);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(result.isSameObject(image));
    EXPECT_EQ(pixelsOf(result), pixelsOf(image));
}

TEST(RemovePimple, EachPixelOfTheDiscIsInExactlyOneListInScanOrder) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180);
    const PimplePixels pixels = ImageTools::FindPimplePixels(centreOf({30, 30}, image.size()), image, 5, 20);
    std::vector<PixelPosition> all = pixels.repair;
    all.insert(all.end(), pixels.sample.begin(), pixels.sample.end());
    const auto byScan = [](PixelPosition a, PixelPosition b) {
        return std::pair(a.row, a.column) < std::pair(b.row, b.column);
    };
    EXPECT_TRUE(std::ranges::is_sorted(pixels.repair, byScan));
    EXPECT_TRUE(std::ranges::is_sorted(pixels.sample, byScan));
    std::ranges::sort(all, byScan);
    std::vector<PixelPosition> disc;
    for (std::int64_t row = 25; row < 35; ++row)
        for (std::int64_t column = 25; column < 35; ++column)
            if ((row - 30) * (row - 30) + (column - 30) * (column - 30) < 25)
                disc.push_back({row, column});
    EXPECT_EQ(all, disc);
}

TEST(RemovePimple, AThresholdOf255RepairsNothing) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 0, 255);
    EXPECT_EQ(pixelsOf(repaired(image, 30, 30, 10, 255)), pixelsOf(image));
    EXPECT_EQ(pixelsOf(repaired(image, 30, 30, 10, 100'000)), pixelsOf(image));
}

TEST(RemovePimpleDeathTest, ANegativeThresholdThatLeavesNoSkinIsFatal) {
    const Image image = filled({60, 60}, grey(100));
    EXPECT_DEATH(repaired(image, 30, 30, 10, -1), "no skin");
    // A custom colour needs no skin.
    EXPECT_EQ(repaired(image, 30, 30, 10, -1, kCustomColor).pixel(30, 30), RGBA32(0xFF0000FF));
}

TEST(RemovePimple, AnUnknownColorTypePaintsNothing) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180);
    const Image result = repaired(image, 30, 30, 10, 20, 2);
    EXPECT_FALSE(result.isSameObject(image));
    EXPECT_EQ(pixelsOf(result), pixelsOf(image));
}

TEST(RemovePimple, ACustomColorIsTruncatedToBytes) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180);
    EXPECT_EQ(repaired(image, 30, 30, 10, 20, kCustomColor, {1, 0, 0}).pixel(30, 30).color, 0xFF0000FFU);
    EXPECT_EQ(repaired(image, 30, 30, 10, 20, kCustomColor, {0.5, 0.999, -0.001}).pixel(30, 30),
              RGBA32(127, 254, 0, 255));
}

TEST(RemovePimpleDeathTest, ACustomColorOutOfRangeIsFatal) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180);
    EXPECT_DEATH(repaired(image, 30, 30, 10, 20, kCustomColor, {1.004, 0, 0}), "custom colour");
    EXPECT_DEATH(repaired(image, 30, 30, 10, 20, kCustomColor, {0, -0.004, 0}), "custom colour");
    EXPECT_DEATH(repaired(image, 30, 30, 10, 20, kCustomColor, {0, 0, std::nan("")}), "custom colour");
}

TEST(RemovePimple, TheMeanIsOfPremultipliedComponentsAndPaintedOpaque) {
    const RGBA32 skin(90, 80, 70, 128); // premultiplied
    const Image image = painted({60, 60}, [&](int row, int column) {
        return (row - 30) * (row - 30) + (column - 30) * (column - 30) < 9 ? RGBA32(0, 0, 0, 128) : skin;
    });
    EXPECT_EQ(repaired(image, 30, 30, 10, 5).pixel(30, 30), RGBA32(90, 80, 70, 255));
}

TEST(RemovePimple, TheGreyMapHasRowsOfTheWidthInPoints) {
    // 40 by 40 pixels at 20 by 40 points: position (r, c) of the grey map is the picture's pixel with index
    // r * 20 + c. The spot is round in the map.
    const auto inSpot = [](std::int64_t row, std::int64_t column) {
        return (row - 15) * (row - 15) + (column - 10) * (column - 10) < 9;
    };
    const Image image = painted({40, 40}, [&](int row, int column) {
                            const int index = row * 40 + column;
                            return grey(inSpot(index / 20, index % 20) ? 40 : 180);
                        }).withSize({20, 40});
    const PimplePixels pixels = ImageTools::FindPimplePixels({10, 40 - 15}, image, 6, 20);
    EXPECT_EQ(pixels.repair.size(), 25U);
    for (const PixelPosition position : pixels.repair)
        EXPECT_TRUE(inSpot(position.row, position.column));
    // The same positions are painted in the picture's rows of 40 pixels.
    const Image result = ImageTools::RemovePimpleFromImage(image, {10, 40 - 15}, 6, 0, kRed, 20).value();
    for (int row = 0; row < 40; ++row)
        for (int column = 0; column < 40; ++column)
            EXPECT_EQ(result.pixel(row, column) == RGBA32(0xFF0000FF), inSpot(row, column));
}

TEST(RemovePimple, AnImageWithMorePointsThanPixelsIsNotReadOutOfBounds) {
    const Image image = spotted({60, 60}, {30, 30}, 4, 40, 180).withSize({600, 600});
    const auto result = ImageTools::RemovePimpleFromImage(image, {30, 600 - 30}, 10, 1, kRed, 10);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->size(), (PointSize{600, 600}));
}

TEST(RemovePimple, AnImageWithoutPixelsIsReported) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(ImageTools::RemovePimpleFromImage(Image(), {5, 5}, 1, 1, kRed, 10));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "unable to get cgImage\n");
}

TEST(RemovePimpleDeathTest, AnInvalidDiscIsFatal) {
    const Image image = filled({60, 60}, grey(100));
    EXPECT_DEATH(repaired(image, 30, 30, 0, 10), "no pixel");
    EXPECT_DEATH(repaired(image, 30, 30, -3, 10), "negative radius");
    EXPECT_DEATH((void)ImageTools::RemovePimpleFromImage(image, {std::nan(""), 5}, 1, 1, kRed, 10),
                 "out of range");
    EXPECT_DEATH((void)ImageTools::RemovePimpleFromImage(image, {5, 1e300}, 1, 1, kRed, 10), "out of range");
    EXPECT_DEATH(repaired(image, 30, 30, std::numeric_limits<std::int64_t>::min(), 10), "overflow");
    EXPECT_DEATH(repaired(image, 30, 30, 5, std::numeric_limits<std::int64_t>::max()), "overflow");
}

TEST(RemovePimple, ASpotAcrossFourTilesIsRepairedCompletely) {
    const Image image = spotted({520, 140}, {64, 256}, 6, 40, 180);
    EXPECT_EQ(pixelsOf(repaired(image, 64, 256, 12, 20)), pixelsOf(filled({520, 140}, grey(180))));
}

} // namespace
} // namespace complexion
