// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

TEST(NaturalRepair, ADarkStainIsReplacedBySkinWithGrain) {
    expectSkinRestored({});
}

TEST(NaturalRepair, AFaintStainOnDarkSkinIsReplacedBySkin) {
    expectSkinRestored({.shading = 0.05, .grain = 2, .color = {72, 48, 38}, .stain = {0.95, 0.78, 0.8}}, 1.5);
}

TEST(NaturalRepair, ALightScarIsReplacedBySkin) {
    expectSkinRestored({.stain = {1.15, 1.3, 1.3}});
}

TEST(NaturalRepair, AStainClickedOffCentreIsReplacedBySkin) {
    expectSkinRestored({.radius = 11, .center = {77, 103}});
}

TEST(NaturalRepair, ShadingContinuesAcrossTheRepair) {
    const Skin skin{.shading = 0.7, .grain = 0};
    const Image result = healed(skin.picture());
    EXPECT_TRUE(nearlySamePixels(result, skin.clean(), 3));
}

TEST(NaturalRepair, AMottledBlemishGetsTheGrainOfCleanSkin) {
    const Skin skin{.grain = 4};
    const Image clean = skin.clean();
    const Image blemished = mottled(clean, kCenter);
    const Image result = healed(blemished);
    EXPECT_GT(grainAround(blemished), 20 * grainAround(clean));
    EXPECT_LT(grainAround(result), 2 * grainAround(clean));
    EXPECT_GT(grainAround(result), 0.4 * grainAround(clean));
    EXPECT_NEAR(meanAround(result, &RGBA32::green), meanAround(clean, &RGBA32::green), 3);
}

TEST(NaturalRepair, ALargeDiscIsRepairedAsASmallOne) {
    static constexpr PixelSize kLargeSize{700, 600};
    static constexpr PixelPosition kMiddle{300, 350};
    const auto picture = [](double strength) {
        return painted(kLargeSize, [strength](int row, int column) {
            const double t = strength * stainAt(row, column, kMiddle, 60);
            const double light = 0.04 * column + 5 * grainAt(row, column);
            return RGBA32(byteOf((190 + light) * (1 - 0.3 * t)), byteOf((150 + light) * (1 - 0.5 * t)),
                          byteOf((130 + light) * (1 - 0.5 * t)), 255);
        });
    };
    const Image clean = picture(0);
    const Image result = healed(picture(1), kMiddle, 92);
    double worst = 0;
    for (int row = 240; row < 360; row += 12)
        for (int column = 290; column < 410; column += 12) {
            double off = 0;
            for (int dy = 0; dy < 12; ++dy)
                for (int dx = 0; dx < 12; ++dx)
                    off += result.pixel(row + dy, column + dx).green() -
                           clean.pixel(row + dy, column + dx).green();
            worst = std::max(worst, std::abs(off) / 144);
        }
    EXPECT_LT(worst, 4);
}

TEST(NaturalRepair, TheGrainOfALargeDiscMatchesThePixelsAround) {
    static constexpr PixelSize kLargeSize{420, 400};
    static constexpr PixelPosition kMiddle{200, 210};
    const auto picture = [](double strength) {
        return painted(kLargeSize, [strength](int row, int column) {
            const double t = strength * stainAt(row, column, kMiddle, 40);
            double light = 0; // pores of four pixels
            for (int i = 0; i < 16; ++i)
                light += 2 * grainAt(row + i / 4, column + i % 4);
            return RGBA32(byteOf((200 + light) * (1 - 0.3 * t)), byteOf((150 + light) * (1 - 0.5 * t)),
                          byteOf((130 + light) * (1 - 0.5 * t)), 255);
        });
    };
    const auto grainOf = [](const Image& image) {
        double sum = 0;
        for (int row = 170; row < 230; ++row)
            for (int column = 180; column < 240; ++column) {
                const double step = image.pixel(row, column).green() - image.pixel(row, column + 1).green();
                sum += step * step;
            }
        return sum;
    };
    const double ratio = grainOf(healed(picture(1), kMiddle, 62)) / grainOf(picture(0));
    EXPECT_GT(ratio, 0.8);
    EXPECT_LT(ratio, 1.2);
}

/// Skin whose grain varies in hue, with a blemish that alternates between red and brown.
Image motley(double strength, double hue, double turns) {
    return painted(kSkinSize, [=](int row, int column) {
        const double t = strength * stainAt(row, column, kCenter, 12);
        const double turn = hue * std::sin(row * turns) * std::sin(column * turns);
        const double light = 4 * grainAt(row, column);
        return RGBA32(byteOf((205 + light + 3 * grainAt(row + 500, column)) * (1 + t * (-0.3 + turn))),
                      byteOf((160 + light + 3 * grainAt(row + 900, column)) * (1 - 0.5 * t)),
                      byteOf((140 + light + 3 * grainAt(row + 1500, column)) * (1 + t * (-0.45 - turn))),
                      255);
    });
}

/// The largest deviation of a block of 4 × 4 pixels near the centre from that skin's hue, in levels of red
/// minus blue.
double largestHueDeviation(const Image& image) {
    double worst = 0;
    for (int row = 70; row < 90; row += 4)
        for (int column = 90; column < 110; column += 4) {
            double off = 0;
            for (int i = 0; i < 16; ++i) {
                const RGBA32 pixel = image.pixel(row + i / 4, column + i % 4);
                off += pixel.red() - pixel.blue() - 65;
            }
            worst = std::max(worst, std::abs(off) / 16);
        }
    return worst;
}

TEST(NaturalRepair, ABlemishOfSeveralHuesLeavesNoneOfThem) {
    EXPECT_LT(largestHueDeviation(motley(0, 0, 1)), 2);
    for (const double turns : {0.35, 0.5, 0.7, 0.9}) {
        SCOPED_TRACE(turns);
        EXPECT_GT(largestHueDeviation(motley(1, 0.15, turns)), 15);
        EXPECT_LT(largestHueDeviation(healed(motley(1, 0.15, turns))), 3);
    }
}

TEST(NaturalRepair, ABlemishOfNearlyOneHueLeavesLittleOfTheOther) {
    EXPECT_GT(largestHueDeviation(motley(1, 0.06, 0.35)), 15);
    EXPECT_LT(largestHueDeviation(healed(motley(1, 0.06, 0.35))), 6);
}

TEST(NaturalRepair, AStainThatKeepsItsDetailLosesItsFineHues) {
    // The hues vary more finely than the brightness that is removed with the stain.
    EXPECT_LT(largestHueDeviation(healed(motley(1, 0.04, 0.35))), 4.5);
    EXPECT_LT(largestHueDeviation(healed(motley(1, 0.03, 0.5))), 5);
}

} // namespace
} // namespace complexion
