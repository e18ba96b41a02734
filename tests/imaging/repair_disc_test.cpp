// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/repair_disc.h"

#include "imaging/image_tools.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <new>

namespace complexion {
namespace {

constexpr PixelSize kPhotoSize{60, 50};
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

RepairDisc discAt(Point point, std::int64_t radius = 3) {
    return RepairDisc::at(point, filled(kPhotoSize, kSkin), radius);
}

TEST(RepairDisc, ConvertsThePointToARowFromTheTop) {
    const RepairDisc disc = discAt({12.9, 50 - 20.9}, 7);
    EXPECT_EQ(disc.row, 20);
    EXPECT_EQ(disc.column, 12);
    EXPECT_EQ(disc.radius, 7);
}

TEST(RepairDisc, TruncatesNegativeCoordinatesTowardsZero) {
    EXPECT_EQ(discAt({-0.5, 10}).column, 0);
    EXPECT_EQ(discAt({-1.5, 10}).column, -1);
    EXPECT_EQ(discAt({10, 50.5}).row, 0);
    EXPECT_EQ(discAt({10, 51.5}).row, -1);
    // With a radius of 0, such a disc counts as inside the picture, but contains no pixel.
    const Image image = filled(kPhotoSize, kSkin);
    EXPECT_DEATH((void)ImageTools::RemovePimpleFromImage(image, {-0.5, 10}, 0, 1, {}, 10), "no pixel");
    EXPECT_DEATH((void)ImageTools::RemovePimpleFromImage(image, {10, 50.5}, 0, 1, {}, 10), "no pixel");
}

TEST(RepairDisc, CountsRowsInPoints) {
    const Image flat = filled({40, 40}, kSkin).withSize({40, 20});
    EXPECT_EQ(RepairDisc::at({8, 15}, flat, 3).row, 5);
    const Image tall = filled({40, 40}, kSkin).withSize({40, 90});
    EXPECT_EQ(RepairDisc::at({8, 15}, tall, 3).row, 75);
}

TEST(RepairDiscDeathTest, ACoordinateThatOverflowsIsFatal) {
    EXPECT_DEATH(discAt({std::numeric_limits<double>::infinity(), 5}), "column is out of range");
    EXPECT_DEATH(discAt({5, -std::numeric_limits<double>::infinity()}), "row is out of range");
}

TEST(RepairDisc, FitsInsideUpToTheEdgeOnEachSide) {
    const auto fits = [](std::int64_t row, std::int64_t column) {
        return RepairDisc{.row = row, .column = column, .radius = 10}.fitsInside(kPhotoSize);
    };
    EXPECT_TRUE(fits(25, 30));
    EXPECT_TRUE(fits(25, 10));
    EXPECT_FALSE(fits(25, 9));
    EXPECT_TRUE(fits(10, 30));
    EXPECT_FALSE(fits(9, 30));
    EXPECT_TRUE(fits(40, 30));
    EXPECT_FALSE(fits(41, 30));
    EXPECT_TRUE(fits(25, 50));
    EXPECT_FALSE(fits(25, 51));
}

TEST(RepairDiscDeathTest, AnEdgeThatOverflowsIsFatal) {
    const auto fits = [](RepairDisc disc) { return disc.fitsInside(kPhotoSize); };
    EXPECT_DEATH(fits({.row = 5, .column = kLowest, .radius = 1}), "overflow");
    EXPECT_DEATH(fits({.row = kLowest, .column = 5, .radius = 1}), "overflow");
    EXPECT_DEATH(fits({.row = kHighest, .column = 5, .radius = 1}), "overflow");
    EXPECT_DEATH(fits({.row = 5, .column = kHighest, .radius = 1}), "overflow");
}

TEST(RepairDisc, RowsContainTheDistancesBelowTheRadius) {
    for (std::int64_t radius = 0; radius <= 60; ++radius)
        for (std::int64_t dy = -radius - 2; dy <= radius + 2; ++dy) {
            std::int64_t half = -1;
            while ((half + 1) * (half + 1) + dy * dy < radius * radius)
                ++half;
            EXPECT_EQ((RepairDisc{.row = 0, .column = 0, .radius = radius}.halfLength(dy)), half)
                << "radius " << radius << ", row " << dy;
        }
}

TEST(RepairDisc, RowsOfHugeDiscsAreExact) {
    // These squares exceed the 53 bits of a double, whose square root would be one too large.
    for (const std::int64_t radius : {94'906'267LL, 1'000'000'007LL, 3'037'000'499LL}) {
        const RepairDisc disc{.row = 0, .column = 0, .radius = radius};
        EXPECT_EQ(disc.halfLength(0), radius - 1);
        const std::int64_t half = disc.halfLength(radius / 3);
        const std::int64_t rest = radius * radius - (radius / 3) * (radius / 3) - 1;
        EXPECT_LE(half * half, rest);
        EXPECT_GT((half + 1) * (half + 1), rest);
    }
}

TEST(RepairDiscDeathTest, ARadiusWhoseSquareOverflowsIsFatal) {
    const RepairDisc disc{.row = 0, .column = 0, .radius = 3'037'000'500};
    EXPECT_DEATH((void)disc.halfLength(0), "overflow");
}

TEST(RepairInDisc, ReturnsWhatTheRepairPaints) {
    const Image image = filled(kPhotoSize, kSkin);
    const auto result = repairInDisc(image, {20, 25}, 5, [](const RepairDisc& disc, PixelBuffer& buffer) {
        const std::vector<PixelPosition> centre = {{disc.row, disc.column}};
        buffer.paint(centre, kBlemish);
    });
    ASSERT_TRUE(result);
    EXPECT_TRUE(samePixels(*result, withPixels(image, {{25, 20}}, kBlemish)));
}

TEST(RepairInDisc, DoesNothingIfTheDiscDoesNotFit) {
    const Image image = filled(kPhotoSize, kSkin);
    bool isCalled = false;
    const auto result =
        repairInDisc(image, {2, 25}, 5, [&](const RepairDisc&, PixelBuffer&) { isCalled = true; });
    EXPECT_TRUE(result->isSameObject(image));
    EXPECT_FALSE(isCalled);
}

TEST(RepairInDisc, AnImageWithoutPixelsIsReported) {
    bool isCalled = false;
    std::optional<Image> result;
    const std::string printed = printedBy([&] {
        result =
            repairInDisc(Image(), {20, 25}, 5, [&](const RepairDisc&, PixelBuffer&) { isCalled = true; });
    });
    EXPECT_FALSE(result);
    EXPECT_FALSE(isCalled);
    EXPECT_EQ(printed, "unable to get cgImage\n");
}

TEST(RepairInDisc, ALackOfMemoryIsReported) {
    std::optional<Image> result;
    const std::string printed = printedBy([&] {
        result = repairInDisc(filled(kPhotoSize, kSkin), {20, 25}, 5,
                              [](const RepairDisc&, PixelBuffer&) { throw std::bad_alloc(); });
    });
    EXPECT_FALSE(result);
    EXPECT_EQ(printed, "unable to get context data\n");
}

} // namespace
} // namespace complexion
