// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/fit.h"

#include "imaging/image_tools.h"
#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

Repair repairOf(std::int64_t radius, RepairStyle style = RepairStyle::Natural) {
    return {
        .radius = radius, .colorType = kAutodetectColor, .customColor = {}, .style = style, .threshold = 10};
}

Image blemished() {
    return Skin{.grain = 4, .radius = 10}.picture();
}

TEST(Fit, TheRingFitsTheBlemishFromAnyPreviousSize) {
    const Image image = blemished();
    for (const std::int64_t radius : {6, 10, 15, 30, 45}) {
        SCOPED_TRACE(radius);
        const auto ring = fitRing(repairOf(radius), image, kCenter);
        ASSERT_TRUE(ring.has_value());
        EXPECT_GE(ring->radius, 11);
        EXPECT_LE(ring->radius, 18);
    }
}

TEST(Fit, TheRingMovesToTheCentreOfTheBlemish) {
    const auto ring = fitRing(repairOf(17), blemished(), {85, 94});
    ASSERT_TRUE(ring.has_value());
    EXPECT_NEAR(static_cast<double>(ring->middle.row), 80, 1.5);
    EXPECT_NEAR(static_cast<double>(ring->middle.column), 100, 1.5);
}

TEST(Fit, TheRingIsLargerForAFlatColor) {
    const Image image = blemished();
    EXPECT_GT(fitRing(repairOf(17, RepairStyle::FlatColor), image, kCenter)->radius,
              fitRing(repairOf(17), image, kCenter)->radius + 3);
}

TEST(Fit, ReturnsNoRingOnCleanSkin) {
    const Image image = Skin{}.clean();
    EXPECT_EQ(fitRing(repairOf(12), image, kCenter), std::nullopt);
    EXPECT_EQ(fitNextRing(repairOf(12), image, FittedRing{kCenter, 12, 9}), std::nullopt);
}

TEST(Fit, TheNextRingEnclosesTheFlushAroundASpeck) {
    const Image image = painted(kSkinSize, [](int row, int column) {
        const double flush = stainAt(row, column, kCenter, 26);
        const double speck = stainAt(row, column, kCenter, 5);
        const double light = 3 * grainAt(row, column);
        const auto level = [&](double skin, double pale, double dark) {
            return byteOf((skin + light) * (1 - flush * pale) * (1 - speck * dark));
        };
        return RGBA32(level(205, 0.05, 0.4), level(160, 0.3, 0.6), level(140, 0.3, 0.6), 255);
    });
    const auto speck = fitRing(repairOf(8), image, kCenter);
    ASSERT_TRUE(speck.has_value());
    EXPECT_LT(speck->radius, 12);
    const auto next = fitNextRing(repairOf(speck->radius), image, *speck);
    ASSERT_TRUE(next.has_value());
    EXPECT_GT(next->radius, 20);
}

TEST(Fit, ReturnsNoRingForADiscAcrossTheBorder) {
    EXPECT_EQ(fitRing(repairOf(20), blemished(), {3, 3}), std::nullopt);
    EXPECT_EQ(fitRing(repairOf(0), blemished(), kCenter), std::nullopt);
}

} // namespace
} // namespace complexion
