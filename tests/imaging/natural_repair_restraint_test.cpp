// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

TEST(NaturalRepair, NothingOutsideADiscThatCoversTheBlemishIsChanged) {
    const Image image = Skin{}.picture();
    for (const std::int64_t radius : {18, 20, 33, 41}) {
        SCOPED_TRACE(radius);
        const Image result = healed(image, kCenter, radius);
        EXPECT_GT(changedPixelCount(image, result), 0);
        expectUntouchedOutsideDisc(image, result, kCenter, radius);
    }
}

TEST(NaturalRepair, NothingBeyondTheReachOfASmallDiscIsChanged) {
    const Image image = Skin{}.picture();
    for (const std::int64_t radius : {1, 2, 5, 8, 12}) {
        SCOPED_TRACE(radius);
        expectUntouchedOutsideDisc(image, healed(image, kCenter, radius), kCenter, reachOf(radius));
    }
}

TEST(NaturalRepair, TheSourceIsUnchangedAndUntouchedTilesAreShared) {
    const Image image = Skin{}.picture();
    const std::vector<RGBA32> before = pixelsOf(image);
    const Image result = healed(image);
    EXPECT_EQ(before, pixelsOf(image));
    EXPECT_FALSE(result.isSameObject(image));
    EXPECT_EQ(image.storedBand(0)->tiles()[0], result.storedBand(0)->tiles()[0]);
    EXPECT_NE(image.storedBand(1)->tiles()[0], result.storedBand(1)->tiles()[0]);
}

TEST(NaturalRepair, MostCleanPixelsOfTheDiscAreKeptExactly) {
    const Skin skin{.radius = 8};
    const Image clean = skin.clean();
    const Image image = skin.picture();
    const Image result = healed(image);
    int kept = 0;
    int count = 0;
    for (int row = 60; row < 100; ++row)
        for (int column = 80; column < 120; ++column)
            if (std::hypot(row - 80, column - 100) < 20 &&
                image.pixel(row, column) == clean.pixel(row, column)) {
                ++count;
                kept += result.pixel(row, column) == clean.pixel(row, column) ? 1 : 0;
            }
    EXPECT_GT(kept, count * 7 / 10);
}

TEST(NaturalRepair, CleanSkinIsLeftAlone) {
    const Image image = Skin{}.clean();
    EXPECT_TRUE(samePixels(healed(image), image));
}

TEST(NaturalRepair, MostOfTheMottleOfUnevenSkinIsLeftAlone) {
    // Value noise in cells of 8 pixels, with heavy tails.
    const Image image = painted({400, 400}, [](int row, int column) {
        double mottle = 0;
        for (const int y : {row / 8, row / 8 + 1})
            for (const int x : {column / 8, column / 8 + 1})
                mottle += (1 - std::abs(row / 8.0 - y)) * (1 - std::abs(column / 8.0 - x)) *
                          std::pow(grainAt(y, x), 3);
        const double light = 1 + 0.4 * mottle + 0.08 * grainAt(row, column);
        return RGBA32(byteOf(90 * light), byteOf(52 * light), byteOf(38 * light), 255);
    });
    int repaired = 0;
    for (int row = 60; row < 350; row += 20)
        for (int column = 60; column < 350; column += 20)
            repaired += samePixels(healed(image, {row, column}, 45), image) ? 0 : 1;
    EXPECT_LT(repaired, 20) << "of 225";
}

TEST(NaturalRepair, AFlushThatExtendsToTheHairlineIsLeftAlone) {
    const PixelPosition middle{160, 160};
    const Image image = painted({320, 320}, [&](int row, int column) {
        const double flush = stainAt(row, column, middle, 44);
        const double hair = std::clamp((column + 0.2 * row - 230) / 6, 0.0, 1.0);
        const double light = (1 + 0.03 * grainAt(row, column)) * (1 - 0.8 * hair);
        return RGBA32(byteOf(225 * light * (1 - 0.05 * flush)), byteOf(190 * light * (1 - 0.12 * flush)),
                      byteOf(180 * light * (1 - 0.11 * flush)), 255);
    });
    EXPECT_TRUE(samePixels(healed(image, middle, 45), image));
}

TEST(NaturalRepair, AFlatColourIsLeftAlone) {
    const Image image = filled(kSkinSize, {190, 150, 130, 255});
    EXPECT_TRUE(samePixels(healed(image), image));
}

TEST(NaturalRepair, ABlemishInAFlatColourBecomesThatColour) {
    const Image image = skinWithBlemishes(kSkinSize, {kCenter});
    EXPECT_TRUE(samePixels(healed(image, kCenter, 10), filled(kSkinSize, kSkin)));
}

TEST(NaturalRepair, ADiscThatIsAllBlemishIsLeftAlone) {
    const Skin skin{.grain = 3, .radius = 60};
    const Image image = skin.picture();
    EXPECT_TRUE(samePixels(healed(image, kCenter, 12), image));
}

TEST(NaturalRepair, AThresholdOfAllLevelsRepairsNothing) {
    const Image image = Skin{.grain = 0}.picture();
    EXPECT_TRUE(samePixels(healed(image, kCenter, kClickRadius, 255), image));
    EXPECT_TRUE(samePixels(healed(image, kCenter, kClickRadius, 100'000'000'000), image));
}

TEST(NaturalRepair, ALargerThresholdRepairsNoMorePixels) {
    const Skin skin;
    const Image image = skin.picture();
    int previous = changedPixelCount(image, healed(image, kCenter, kClickRadius, 0));
    EXPECT_GT(previous, 400);
    for (const std::int64_t threshold : {10, 30, 60, 100, 254}) {
        const int changed = changedPixelCount(image, healed(image, kCenter, kClickRadius, threshold));
        EXPECT_LE(changed, previous + 10) << threshold;
        previous = changed;
    }
    EXPECT_LT(previous, 100);
}

TEST(NaturalRepair, ANegativeThresholdCountsAsZero) {
    const Image image = Skin{}.picture();
    EXPECT_TRUE(
        samePixels(healed(image, kCenter, kClickRadius, -5), healed(image, kCenter, kClickRadius, 0)));
}

TEST(NaturalRepair, HairOverTheDiscIsLeftAlone) {
    const Image hair = painted(kSkinSize, [](int row, int column) {
        const double strand =
            std::sin((column + 0.6 * row) * 0.9) + 0.5 * std::sin((column + 0.5 * row) * 2.1);
        return RGBA32(byteOf(60 + 30 * strand), byteOf(45 + 24 * strand), byteOf(35 + 18 * strand), 255);
    });
    EXPECT_TRUE(samePixels(healed(hair), hair));
}

TEST(NaturalRepair, HairBesideABlemishIsKeptAndDoesNotBleedIntoTheSkin) {
    const Skin skin{.grain = 3, .radius = 9};
    const auto withHair = [](const Image& picture) {
        return painted(kSkinSize, [&picture](int row, int column) {
            return column >= 115 ? RGBA32(30, 22, 18, 255) : picture.pixel(row, column);
        });
    };
    const Image before = withHair(skin.picture());
    const Image result = healed(before);
    for (int row = 60; row < 100; ++row)
        for (int column = 117; column < 120; ++column)
            EXPECT_EQ(result.pixel(row, column), before.pixel(row, column)) << row << ", " << column;
    const Image clean = withHair(skin.clean());
    EXPECT_NEAR(meanAround(result, &RGBA32::green), meanAround(clean, &RGBA32::green), 3);
}

TEST(NaturalRepair, ASecondClickChangesAlmostNothing) {
    const Skin skin;
    const Image once = healed(skin.picture());
    const Image twice = healed(once);
    // Almost all of the repaired skin is left unchanged.
    EXPECT_LT(changedPixelCount(once, twice), 60);
}

TEST(NaturalRepair, ASecondBlemishAtTheSamePositionGetsDifferentDetail) {
    const Skin skin{.grain = 5};
    const Image clean = skin.clean();
    // A blemish without detail, twice at the same position.
    const auto blotted = [](const Image& picture) {
        return painted(kSkinSize, [&picture](int row, int column) {
            return std::hypot(row - 80, column - 100) < 10 ? RGBA32(90, 40, 40, 255)
                                                           : picture.pixel(row, column);
        });
    };
    const Image once = healed(blotted(clean));
    const Image twice = healed(once);
    EXPECT_LT(changedPixelCount(once, twice), 60);
    EXPECT_GT(grainAround(once, 6), 0.4 * grainAround(clean, 6));
}

TEST(NaturalRepair, HairBesideABlemishDoesNotPreventItsRepair) {
    // Very even skin that darkens gradually towards the hair, which the blemish almost touches.
    for (const int middle : {104, 107}) {
        SCOPED_TRACE(middle);
        const auto picture = [middle](double strength) {
            return painted(kSkinSize, [=](int row, int column) {
                const double t = strength * stainAt(row, column, {80, middle}, 11);
                const double hair = std::clamp((column - (middle == 104 ? 106 : 110)) / 16.0, 0.0, 1.0);
                const double light = 1 - 0.9 * hair * hair + 0.004 * grainAt(row, column);
                return RGBA32(byteOf(190 * light * (1 - 0.225 * t)), byteOf(140 * light * (1 - 0.45 * t)),
                              byteOf(105 * light * (1 - 0.45 * t)), 255);
            });
        };
        EXPECT_NEAR(meanAround(healed(picture(1)), &RGBA32::green), meanAround(picture(0), &RGBA32::green),
                    6);
    }
}

/// The largest change of green outside the stain, beyond its soft edge.
int largestChangeBeside(const Image& image, const Image& result, double radius) {
    int largest = 0;
    for (int row = 0; row < kSkinSize.height; ++row)
        for (int column = 0; column < kSkinSize.width; ++column) {
            const double distance = std::hypot(row - static_cast<double>(kCenter.row),
                                               column - static_cast<double>(kCenter.column));
            if (distance > radius)
                largest = std::max(
                    largest, std::abs(result.pixel(row, column).green() - image.pixel(row, column).green()));
        }
    return largest;
}

/// A line of this brightness from the blemish's middle to the right.
Image withRidge(const Image& image, double light) {
    return painted(kSkinSize, [&](int row, int column) {
        const RGBA32 pixel = image.pixel(row, column);
        const double across = row - static_cast<double>(kCenter.row);
        const double along = column - static_cast<double>(kCenter.column);
        const double factor = std::abs(across) <= 2 && along > 0 && along < 18 ? light : 1;
        return RGBA32(byteOf(pixel.red() * factor), byteOf(pixel.green() * factor),
                      byteOf(pixel.blue() * factor), 255);
    });
}

TEST(NaturalRepair, AFaintRidgeThatTouchesTheBlemishIsKept) {
    const Skin skin{.grain = 3, .radius = 8};
    const Image image = withRidge(skin.picture(), 0.88);
    EXPECT_LT(largestChangeBeside(image, healed(image), 14), 8); // the ridge: 19 levels
}

TEST(NaturalRepair, AStrongLineThatIsPartOfTheBlemishIsRepairedWithIt) {
    const Skin skin{.grain = 3, .radius = 8};
    const Image result = healed(withRidge(skin.picture(), 0.5));
    EXPECT_LT(largestChangeBeside(skin.clean(), result, 14), 30); // the line: 80 levels
}

TEST(NaturalRepair, AHighlightBesideTheBlemishIsKept) {
    const auto picture = [](double strength) {
        return painted(kSkinSize, [strength](int row, int column) {
            const double t = strength * stainAt(row, column, kCenter, 11);
            const double shine = 60 * std::exp(-std::pow(std::hypot(row - 58, column - 92) / 14, 2));
            const double light = shine + 2 * grainAt(row, column);
            return RGBA32(byteOf((180 + light) * (1 - 0.3 * t)), byteOf((135 + light) * (1 - 0.5 * t)),
                          byteOf((115 + light) * (1 - 0.5 * t)), 255);
        });
    };
    const Image clean = picture(0);
    const Image result = healed(picture(1));
    double worst = 0;
    for (int row = 61; row < 99; row += 3)
        for (int column = 81; column < 119; column += 3) {
            double off = 0;
            for (int i = 0; i < 9; ++i)
                off += result.pixel(row + i / 3, column + i % 3).green() -
                       clean.pixel(row + i / 3, column + i % 3).green();
            worst = std::max(worst, std::abs(off) / 9);
        }
    EXPECT_LT(worst, 9);
}

/// A dark spot with a sharp outline, and a reflection that touches it on the right.
Image spotBesideReflection(bool isStained, double size, double brightness) {
    return painted(kSkinSize, [=](int row, int column) {
        const bool isSpot = std::hypot(row - 80, column - 100) < 8;
        const bool isReflection = std::hypot(row - 80, column - 111) < size;
        const double light = 2 * grainAt(row, column);
        const double stain = isStained ? 0.55 : 1;
        const double factor = isSpot ? stain : isReflection ? brightness : 1;
        return RGBA32(byteOf((170 + light) * factor), byteOf((130 + light) * factor),
                      byteOf((110 + light) * factor), 255);
    });
}

TEST(NaturalRepair, AReflectionThatTouchesTheSpotIsKept) {
    for (const double size : {4.0, 5.0})
        for (const double brightness : {1.2, 1.35}) {
            SCOPED_TRACE(testing::Message() << size << ", " << brightness);
            const Image clean = spotBesideReflection(false, size, brightness);
            const Image result = healed(spotBesideReflection(true, size, brightness));
            const auto meanOff = [&](int left, int right) {
                double sum = 0;
                for (int row = 77; row < 83; ++row)
                    for (int column = left; column < right; ++column)
                        sum += result.pixel(row, column).green() - clean.pixel(row, column).green();
                return sum / (6 * (right - left));
            };
            EXPECT_NEAR(meanOff(109, 112), 0, 9);
            EXPECT_NEAR(meanOff(97, 103), 0, 5);
        }
}

} // namespace
} // namespace complexion
