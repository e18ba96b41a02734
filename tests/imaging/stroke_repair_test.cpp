// SPDX-License-Identifier: GPL-3.0-or-later

// Natural repairs along strokes: lines on the skin disappear, everything else stays.
#include "tests/imaging/natural_repair_skin.h"

#include "imaging/repairs.h"

namespace complexion {
namespace {

constexpr std::int64_t kWidth = 6; // radius of the strokes

/// How much of a pixel a line of this width covers, along a slightly bent path across the picture.
double lineAt(int row, int column, double width) {
    const double middle = 80 + 0.1 * (column - 100) + 0.0015 * (column - 100) * (column - 100);
    return std::clamp(width / 2 + 0.5 - std::abs(row - middle), 0.0, 1.0);
}

/// The points of the line between two columns.
std::vector<Point> pathBetween(int from, int to, PointSize size) {
    std::vector<Point> path;
    for (int column = from; column <= to; column += 4)
        path.push_back(
            {column + 0.5,
             size.height - (80 + 0.1 * (column - 100) + 0.0015 * (column - 100) * (column - 100)) - 0.5});
    return path;
}

/// Skin with the line, and something else that `shade` multiplies.
Image skinWith(double width, double strength, const std::function<double(int, int)>& shade) {
    return painted(kSkinSize, [&](int row, int column) {
        const double light = (0.15 * (column - 100) + 6 * grainAt(row, column)) / 160 + 1;
        const double kept = (1 - strength * lineAt(row, column, width)) * light * shade(row, column);
        return RGBA32(byteOf(205 * kept), byteOf(160 * kept), byteOf(140 * kept), 255);
    });
}
Image skin(const std::function<double(int, int)>& shade) {
    return skinWith(1, 0, shade);
}
double plain(int, int) {
    return 1;
}

Repaired repaired(const Image& image, int from = 20, int to = 180, std::int64_t threshold = 10) {
    return *repairAlong(image, pathBetween(from, to, image.size()), kWidth, threshold);
}

/// The mean difference of the green component over the line's pixels between two columns.
double differenceOnLine(const Image& one, const Image& other, int from, int to) {
    double sum = 0;
    int count = 0;
    for (int row = 0; row < kSkinSize.height; ++row)
        for (int column = from; column < to; ++column)
            if (lineAt(row, column, 3) > 0.5) {
                sum += std::abs(one.pixel(row, column).green() - other.pixel(row, column).green());
                ++count;
            }
    return sum / count;
}

TEST(StrokeRepair, AHairDisappears) {
    const Image image = skinWith(2, 0.6, plain);
    const Repaired result = repaired(image);
    EXPECT_EQ(result.outcome, RepairOutcome::Repaired);
    const Image clean = skin(plain);
    EXPECT_GT(differenceOnLine(image, clean, 30, 170), 40);
    EXPECT_LT(differenceOnLine(result.image, clean, 30, 170), 9); // the grain's own is 4 to 8
}

TEST(StrokeRepair, OnlyTheStrokeIsPainted) {
    const Image image = skinWith(2, 0.6, plain);
    const Repaired result = repaired(image, 60, 140);
    for (int row = 0; row < kSkinSize.height; ++row)
        for (int column = 0; column < kSkinSize.width; ++column)
            if (column < 60 - kWidth - 1 || column > 140 + kWidth + 1 ||
                lineAt(row, column, 4 * kWidth) == 0) {
                ASSERT_EQ(result.image.pixel(row, column), image.pixel(row, column)) << row << " " << column;
            }
    EXPECT_LT(result.repainted.count(), std::int64_t{10} * 100) << "and of it mostly the hair";
}

TEST(StrokeRepair, TheSkinKeepsItsTexture) {
    const Image result = repaired(skinWith(2, 0.6, plain)).image;
    const auto roughness = [](const Image& image) {
        double sum = 0;
        for (int column = 40; column < 160; ++column) {
            const int row =
                static_cast<int>(80 + 0.1 * (column - 100) + 0.0015 * (column - 100) * (column - 100));
            const double step = image.pixel(row, column).green() - image.pixel(row, column + 1).green();
            sum += step * step;
        }
        return sum;
    };
    const double ratio = roughness(result) / roughness(skin(plain));
    EXPECT_GT(ratio, 0.4);
    EXPECT_LT(ratio, 2.5);
}

TEST(StrokeRepair, ALineThatCrossesTheStrokeContinuesThroughIt) {
    const auto crease = [](int, int column) { return std::abs(column - 100) <= 2 ? 0.75 : 1; };
    const Repaired result = repaired(skinWith(2, 0.6, crease));
    ASSERT_EQ(result.outcome, RepairOutcome::Repaired);
    double beside = 0;
    double on = 0;
    for (int row = 78; row <= 82; ++row) {
        on += result.image.pixel(row, 100).green();
        beside += (result.image.pixel(row, 90).green() + result.image.pixel(row, 110).green()) / 2.0;
    }
    EXPECT_NEAR(on / beside, 0.75, 0.07);
}

TEST(StrokeRepair, WhatReachesIntoTheStrokeFromBesideStays) {
    // A dark area whose edge is a little inside the stroke.
    const auto brow = [](int row, int column) { return lineAt(row + 14, column, 20) > 0 ? 0.4 : 1; };
    const Image image = skinWith(2, 0.6, brow);
    const Repaired result = repaired(image);
    ASSERT_EQ(result.outcome, RepairOutcome::Repaired);
    int kept = 0;
    int all = 0;
    for (int column = 30; column < 170; ++column)
        for (int row = 0; row < kSkinSize.height; ++row)
            if (brow(row, column) < 1 && lineAt(row, column, 2 * kWidth) > 0) {
                ++all;
                kept += result.image.pixel(row, column) == image.pixel(row, column);
            }
    ASSERT_GT(all, 100);
    EXPECT_GT(kept, 9 * all / 10);
}

TEST(StrokeRepair, CleanSkinStays) {
    const Image image = skin(plain);
    const Repaired result = repaired(image);
    EXPECT_EQ(result.outcome, RepairOutcome::NothingToRepair);
    EXPECT_TRUE(result.image.isSameObject(image));
}

TEST(StrokeRepair, AHigherThresholdRepairsLess) {
    const Image image = skinWith(2, 0.15, plain);
    EXPECT_EQ(repaired(image, 20, 180, 10).outcome, RepairOutcome::Repaired);
    EXPECT_EQ(repaired(image, 20, 180, 100).outcome, RepairOutcome::NothingToRepair);
}

TEST(StrokeRepair, MayLeaveThePicture) {
    const Image image = skinWith(2, 0.6, plain);
    EXPECT_EQ(repaired(image, -100, 300).outcome, RepairOutcome::Repaired);
    EXPECT_EQ(repaired(image, 400, 600).outcome, RepairOutcome::NothingToRepair);
    EXPECT_EQ(repairAlong(image, std::vector<Point>{{-50, -50}}, kWidth, 10)->outcome,
              RepairOutcome::NothingToRepair);
}

TEST(StrokeRepair, IsDeterministic) {
    const Image image = skinWith(2, 0.6, plain);
    EXPECT_TRUE(samePixels(repaired(image).image, repaired(image).image));
}

} // namespace
} // namespace complexion
