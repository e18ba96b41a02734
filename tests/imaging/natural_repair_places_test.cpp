// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

TEST(NaturalRepair, ADiscOverTheBorderReturnsTheSameImageAsTheFlatRepairDoes) {
    const Image image = Skin{}.picture();
    const std::int64_t radius = 15;
    for (const PixelPosition place : {PixelPosition{14, 100},
                                      {15, 100},
                                      {80, 14},
                                      {80, 15},
                                      {145, 100},
                                      {146, 100},
                                      {80, 185},
                                      {80, 186},
                                      {-40, 100},
                                      {80, 1000},
                                      {145, 185},
                                      {146, 186}}) {
        SCOPED_TRACE(testing::Message() << place.row << ", " << place.column);
        const Point point = centreOf(place, image.size());
        const auto flat =
            ImageTools::RemovePimpleFromImage(image, point, radius, kAutodetectColor, {}, kThreshold);
        const auto natural = ImageTools::HealPimpleInImage(image, point, radius, kThreshold);
        EXPECT_EQ(flat->isSameObject(image), natural->isSameObject(image));
    }
}

TEST(NaturalRepair, ABlemishAtThePicturesEdgeIsRepaired) {
    for (const PixelPosition place : {PixelPosition{20, 20}, {20, 180}, {140, 20}, {140, 180}}) {
        SCOPED_TRACE(testing::Message() << place.row << ", " << place.column);
        const Skin skin{.grain = 3, .center = place};
        const Image clean = skin.clean();
        const Image result = healed(skin.picture(), place);
        double off = 0;
        for (int dy = -8; dy <= 8; ++dy)
            for (int dx = -8; dx <= 8; ++dx)
                off += result.pixel(static_cast<int>(place.row) + dy, static_cast<int>(place.column) + dx)
                           .green() -
                       clean.pixel(static_cast<int>(place.row) + dy, static_cast<int>(place.column) + dx)
                           .green();
        EXPECT_LT(std::abs(off) / 289, 4);
    }
}

TEST(NaturalRepair, DiscsOfAFewPixelsAreHandled) {
    const Image image = skinWithBlemishes(kSkinSize, {kCenter});
    for (const std::int64_t radius : {1, 2, 3, 4, 5, 6}) {
        SCOPED_TRACE(radius);
        expectUntouchedOutsideDisc(image, healed(image, kCenter, radius), kCenter, reachOf(radius));
    }
    EXPECT_TRUE(samePixels(healed(image, kCenter, 1), image));
}

TEST(NaturalRepair, ADiscThatFillsThePictureIsHandled) {
    for (const int side : {2, 3, 7, 20, 66}) {
        SCOPED_TRACE(side);
        const Image image = noise({side, side});
        const PixelPosition middle{side / 2, side / 2};
        const Image result = healed(image, middle, side / 2);
        expectUntouchedOutsideDisc(image, result, middle, side / 2);
    }
}

TEST(NaturalRepair, ADiscWithoutPixelsAndAPointFarOutOfRangeAreFatal) {
    const Image image = Skin{}.picture();
    EXPECT_DEATH(healed(image, kCenter, 0), "no pixel");
    EXPECT_DEATH(healed(image, kCenter, -1), "no pixel");
    EXPECT_DEATH((void)ImageTools::HealPimpleInImage(image, {1e300, 5}, 5, 10), "out of range");
}

TEST(NaturalRepair, AnImageWithoutPixelsGivesNoImage) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(ImageTools::HealPimpleInImage(Image::empty({10, 10}), {5, 5}, 2, 10).has_value());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "unable to get cgImage\n");
}

TEST(NaturalRepair, RandomPixelsAreHandled) {
    const Image image = noise(kSkinSize, 5);
    for (const std::int64_t radius : {3, 17, 40, 79})
        for (const std::int64_t threshold : {0, 10, 100})
            expectUntouchedOutsideDisc(image, healed(image, kCenter, radius, threshold), kCenter,
                                       reachOf(radius));
}

} // namespace
} // namespace complexion
