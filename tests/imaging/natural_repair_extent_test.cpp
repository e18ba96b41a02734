// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

using Located = std::variant<BlemishPlace, BlemishRefusal>;

Located located(const Image& image, PixelPosition position, std::int64_t radius,
                std::int64_t threshold = kThreshold) {
    return ImageTools::LocateBlemish(image, centreOf(position, image.size()), radius, threshold);
}

TEST(NaturalRepairExtent, ADiscSmallerThanTheBlemishRepairsAllOfIt) {
    const Skin skin{.grain = 4, .radius = 10};
    const Image clean = skin.clean();
    const Image image = skin.picture();
    for (const std::int64_t radius : {6, 8, 10, 12}) {
        SCOPED_TRACE(radius);
        const Image result = healed(image, kCenter, radius);
        for (const int around : {4, 8, 11})
            EXPECT_NEAR(meanAround(result, &RGBA32::green, around), meanAround(clean, &RGBA32::green, around),
                        2.5)
                << around;
    }
}

TEST(NaturalRepairExtent, ABlemishClickedOnItsOutlineIsRepairedAsAWhole) {
    const Skin skin{.grain = 4, .radius = 10};
    const Image clean = skin.clean();
    const Image image = skin.picture();
    for (const PixelPosition click : {PixelPosition{80, 110}, {70, 100}, {87, 93}}) {
        SCOPED_TRACE(testing::Message() << click.row << ", " << click.column);
        const Image result = healed(image, click, 17);
        EXPECT_NEAR(meanAround(result, &RGBA32::green, 10), meanAround(clean, &RGBA32::green, 10), 2.5);
    }
}

TEST(NaturalRepairExtent, TheBlemishIsFoundAtItsPlaceWhateverTheDisc) {
    const Skin skin{.grain = 4, .radius = 10};
    const Image image = skin.picture();
    for (const std::int64_t radius : {7, 10, 17, 25, 40}) {
        SCOPED_TRACE(radius);
        const Located place = located(image, {82, 98}, radius);
        ASSERT_TRUE(std::holds_alternative<BlemishPlace>(place));
        const auto& blemish = std::get<BlemishPlace>(place);
        EXPECT_NEAR(static_cast<double>(blemish.middle.row), 80, 2);
        EXPECT_NEAR(static_cast<double>(blemish.middle.column), 100, 2);
        EXPECT_GT(blemish.radius, 9);
        EXPECT_LT(blemish.radius, 15);
    }
}

TEST(NaturalRepairExtent, ARefusedRepairReportsTheReason) {
    const Image clean = Skin{}.clean();
    EXPECT_EQ(located(clean, kCenter, kClickRadius), Located(BlemishRefusal::NothingDiffers));
    EXPECT_EQ(located(clean, {5, 100}, kClickRadius), Located(BlemishRefusal::OverBorder));
    EXPECT_EQ(located(filled(kSkinSize, {0, 0, 0, 0}), kCenter, kClickRadius),
              Located(BlemishRefusal::NoSkin));
}

TEST(NaturalRepairExtent, ALowerThresholdNeverLosesABlemish) {
    const Image image = Skin{.grain = 5, .radius = 10}.picture();
    for (const std::int64_t radius : {7, 10, 12, 14, 20}) {
        bool isRepaired = true;
        for (const std::int64_t threshold : {0, 1, 3, 5, 10, 20, 40, 80, 160, 255}) {
            const bool isFound =
                std::holds_alternative<BlemishPlace>(located(image, kCenter, radius, threshold));
            EXPECT_TRUE(isRepaired || !isFound) << "radius " << radius << ", threshold " << threshold;
            isRepaired = isFound;
        }
        EXPECT_FALSE(isRepaired);
    }
}

/// Skin with a blemish beside a dark line, such as a hair.
Image skinBesideALine(const Skin& skin, double distance) {
    const Image picture = skin.picture();
    return painted(kSkinSize, [&](int row, int column) {
        const RGBA32 pixel = picture.pixel(row, column);
        const double across = column + 0.3 * row - 100 - 0.3 * 80 - distance;
        const double light = 1 - 0.6 * std::exp(-across * across / 3);
        return RGBA32(byteOf(pixel.red() * light), byteOf(pixel.green() * light),
                      byteOf(pixel.blue() * light), 255);
    });
}

/// The radius that is repaired; 0 if nothing is.
double repairedRadius(const Image& image, std::int64_t disc, std::int64_t threshold) {
    const Located place = located(image, kCenter, disc, threshold);
    const auto* blemish = std::get_if<BlemishPlace>(&place);
    return blemish ? blemish->radius : 0;
}

TEST(NaturalRepairExtent, ALowerThresholdNeverRepairsLess) {
    int found = 0;
    for (int i = 0; i < 24; ++i) {
        const double strength = std::array{0.1, 0.2, 0.5}[static_cast<std::size_t>(i) % 3];
        const Image image = skinBesideALine({.grain = i / 3 % 2 == 0 ? 2.0 : 6.0,
                                             .stain = {1 - 0.6 * strength, 1 - strength, 1 - 0.95 * strength},
                                             .radius = i / 6 % 2 == 0 ? 4.0 : 9.0},
                                            i < 12 ? 12 : 16);
        for (const std::int64_t disc : {8, 20}) {
            double atHigher = 0;
            for (const std::int64_t threshold : {60, 40, 20, 15, 10, 8, 3, 0}) {
                const double repaired = repairedRadius(image, disc, threshold);
                EXPECT_GE(repaired, 0.8 * atHigher) << i << ", disc " << disc << ", at " << threshold;
                atHigher = std::max(atHigher, repaired);
            }
            found += atHigher > 0 ? 1 : 0;
        }
    }
    EXPECT_GT(found, 20);
}

TEST(NaturalRepairExtent, ANostrilThatTouchesTheBlemishStaysAsItIs) {
    const PixelPosition middle{150, 150};
    constexpr double kBlemish = 39;
    constexpr double kNostril = 45;
    const Image image = painted({300, 300}, [&](int row, int column) {
        const double t = stainAt(row, column, middle, kBlemish);
        const double across = column - 165;
        const double down = (row - 84) / 0.6;
        const double edge = std::clamp((1.15 - std::hypot(across, down) / kNostril) / 0.6, 0.0, 1.0);
        const double shade = edge * edge * (3 - 2 * edge);
        const double light = 4 * grainAt(row, column);
        return RGBA32(byteOf((205 + light) * (1 - 0.32 * t) * (1 - 0.8 * shade)),
                      byteOf((160 + light) * (1 - 0.5 * t) * (1 - 0.9 * shade)),
                      byteOf((140 + light) * (1 - 0.48 * t) * (1 - 0.92 * shade)), 255);
    });
    const Image result = healed(image, middle, 100);
    EXPECT_GT(result.pixel(150, 150).green(), 145);
    int changed = 0;
    for (int row = 0; row < 300; ++row)
        for (int column = 0; column < 300; ++column)
            changed +=
                image.pixel(row, column).green() < 45 && image.pixel(row, column) != result.pixel(row, column)
                    ? 1
                    : 0;
    EXPECT_EQ(changed, 0);
}

/// Skin with a darker, curved ellipse in its middle, such as a mouth or a closed eye.
Image skinWithMouth(double width, double height) {
    return painted({600, 600}, [&](int row, int column) {
        const double x = (column - 300) / width;
        const double y = (row - 300 - 0.15 * width * (1 - x * x)) / height;
        const double t = std::clamp((1.1 - std::hypot(x, y)) / 0.2, 0.0, 1.0);
        const double light = 1 + 0.03 * grainAt(row, column);
        return RGBA32(byteOf(225 * light * (1 - 0.3 * t)), byteOf(190 * light * (1 - 0.5 * t)),
                      byteOf(180 * light * (1 - 0.45 * t)), 255);
    });
}

TEST(NaturalRepairExtent, AMouthLargerThanTheDiscIsNoBlemish) {
    struct Mouth {
        double width;
        double height;
        std::int64_t disc;
    };
    for (const Mouth& mouth : {Mouth{40, 20, 16}, {60, 30, 24}, {60, 24, 19}, {80, 80 / 3.0, 26}}) {
        SCOPED_TRACE(testing::Message() << mouth.width << " by " << mouth.height);
        const Image image = skinWithMouth(mouth.width, mouth.height);
        EXPECT_TRUE(samePixels(healed(image, {300, 300}, mouth.disc), image));
    }
}

/// The mean brightness of the pixels between two distances from the centre.
double ringMean(const Image& image, double from, double to) {
    double sum = 0;
    int count = 0;
    for (int row = 0; row < image.pixelSize().height; ++row)
        for (int column = 0; column < image.pixelSize().width; ++column) {
            const double distance =
                std::hypot(row - image.pixelSize().height / 2.0, column - image.pixelSize().width / 2.0);
            if (distance < from || distance >= to)
                continue;
            sum += image.pixel(row, column).green();
            ++count;
        }
    return sum / count;
}

TEST(NaturalRepairExtent, ALargeStainLeavesNoRing) {
    constexpr PixelSize size{600, 600};
    const PixelPosition middle{300, 300};
    constexpr double radius = 80;
    const Image image = painted(size, [&](int row, int column) {
        const double t = stainAt(row, column, middle, radius);
        const double light = 8 * grainAt(row / 2, column / 2);
        return RGBA32(byteOf((205 + light) * (1 - 0.32 * t)), byteOf((160 + light) * (1 - 0.5 * t)),
                      byteOf((140 + light) * (1 - 0.48 * t)), 255);
    });
    const Image result = healed(image, middle, 122);
    for (double from = 0; from < 120; from += 8) {
        SCOPED_TRACE(from);
        EXPECT_NEAR(ringMean(result, from, from + 8), 160, 2.2);
    }
}

} // namespace
} // namespace complexion
