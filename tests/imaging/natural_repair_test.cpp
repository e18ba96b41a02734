// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

namespace complexion {
namespace {

constexpr PixelSize kSize{200, 160};
constexpr PixelPosition kCenter{80, 100};
constexpr std::int64_t kRadius = 20;
constexpr std::int64_t kThreshold = 10;

/// The middle of a pixel of an image of one point per pixel, bottom-left origin.
Point at(const Image& image, PixelPosition position) {
    return {static_cast<double>(position.column) + 0.5,
            image.size().height - static_cast<double>(position.row) - 0.5};
}

Image healed(const Image& image, PixelPosition position = kCenter, std::int64_t radius = kRadius,
             std::int64_t threshold = kThreshold) {
    return ImageTools::HealPimpleInImage(image, at(image, position), radius, threshold).value();
}

std::uint8_t byteOf(double value) {
    return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0));
}

/// Noise of a place, -1 to 1, the same at every run.
double grainAt(int row, int column) {
    auto hash = static_cast<std::uint32_t>(row * 7919 + column * 104729 + 17);
    hash = (hash ^ (hash >> 15)) * 2246822519U;
    hash = (hash ^ (hash >> 13)) * 3266489917U;
    return static_cast<double>((hash ^ (hash >> 16)) & 0xFFFF) / 32767.5 - 1;
}

/// How much of a blemish of a radius is at a place: 1 in its middle, 0 outside, with a soft rim.
double stainAt(int row, int column, PixelPosition center, double radius) {
    const auto dx = static_cast<double>(column - center.column);
    const auto dy = static_cast<double>(row - center.row);
    const double distance = std::sqrt(dx * dx + dy * dy) / radius;
    const double t = std::clamp((1.15 - distance) / 0.6, 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// Shaded skin with grain of a strength, and a stain that multiplies it.
struct Skin {
    double shading = 0.15; // levels a column
    double grain = 6;      // levels
    std::array<double, 3> color{205, 160, 140};
    std::array<double, 3> stain{0.68, 0.5, 0.52};
    double radius = 12; // of the stain
    PixelPosition center = kCenter;

    Image picture(bool stained = true) const {
        return painted(kSize, [this, stained](int row, int column) {
            const double light = shading * (column - 100) + grain * grainAt(row, column);
            const double t = stained ? stainAt(row, column, center, radius) : 0;
            std::array<std::uint8_t, 3> bytes{};
            for (std::size_t c = 0; c < 3; ++c)
                bytes[c] = byteOf((color[c] + light) * (1 + t * (stain[c] - 1)));
            return RGBA32(bytes[0], bytes[1], bytes[2], 255);
        });
    }
    Image clean() const { return picture(false); }
};

/// The mean of a component over the places within `radius` of the centre.
double meanAround(const Image& image, std::uint8_t (RGBA32::*component)() const, int radius = 8) {
    double sum = 0;
    int count = 0;
    for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx <= radius; ++dx)
            if (dx * dx + dy * dy <= radius * radius) {
                const RGBA32 pixel =
                    image.pixel(static_cast<int>(kCenter.row) + dy, static_cast<int>(kCenter.column) + dx);
                sum += (pixel.*component)();
                ++count;
            }
    return sum / count;
}

/// The mean square of the difference between horizontal neighbours there.
double grainAround(const Image& image, int radius = 8) {
    double sum = 0;
    int count = 0;
    for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx < radius; ++dx) {
            const auto row = static_cast<int>(kCenter.row) + dy;
            const auto column = static_cast<int>(kCenter.column) + dx;
            const double step = image.pixel(row, column).green() - image.pixel(row, column + 1).green();
            sum += step * step;
            ++count;
        }
    return sum / count;
}

void expectSkinBack(const Skin& skin, double tolerance = 2.5) {
    const Image clean = skin.clean();
    const Image result = healed(skin.picture());
    EXPECT_NEAR(meanAround(result, &RGBA32::red), meanAround(clean, &RGBA32::red), tolerance);
    EXPECT_NEAR(meanAround(result, &RGBA32::green), meanAround(clean, &RGBA32::green), tolerance);
    EXPECT_NEAR(meanAround(result, &RGBA32::blue), meanAround(clean, &RGBA32::blue), tolerance);
    const double ratio = grainAround(result) / grainAround(clean);
    EXPECT_GT(ratio, 0.5);
    EXPECT_LT(ratio, 2.0);
}

int countOfChanged(const Image& before, const Image& after) {
    const std::vector<RGBA32> a = pixelsOf(before);
    const std::vector<RGBA32> b = pixelsOf(after);
    int count = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        count += a[i] == b[i] ? 0 : 1;
    return count;
}

void expectUntouchedOutsideDisc(const Image& before, const Image& after, PixelPosition center,
                                std::int64_t radius) {
    for (int row = 0; row < before.pixelSize().height; ++row)
        for (int column = 0; column < before.pixelSize().width; ++column) {
            const std::int64_t dx = column - center.column;
            const std::int64_t dy = row - center.row;
            if (dx * dx + dy * dy >= radius * radius) {
                ASSERT_EQ(before.pixel(row, column), after.pixel(row, column)) << row << ", " << column;
            }
        }
}

// What it is for.

TEST(NaturalRepair, ADarkStainGivesTheSkinBackWithItsGrain) {
    expectSkinBack({});
}

TEST(NaturalRepair, AFaintStainOnDarkSkinGivesTheSkinBack) {
    expectSkinBack({.shading = 0.05, .grain = 2, .color = {72, 48, 38}, .stain = {0.95, 0.78, 0.8}}, 1.5);
}

TEST(NaturalRepair, ALightScarGivesTheSkinBack) {
    expectSkinBack({.stain = {1.15, 1.3, 1.3}});
}

TEST(NaturalRepair, AStainClickedBesideItsMiddleGivesTheSkinBack) {
    expectSkinBack({.radius = 11, .center = {77, 103}});
}

TEST(NaturalRepair, ShadingGoesOnAcrossTheRepair) {
    Skin skin{.shading = 0.7, .grain = 0};
    const Image result = healed(skin.picture());
    EXPECT_TRUE(nearlySamePixels(result, skin.clean(), 3));
}

TEST(NaturalRepair, AMottledBlemishGetsTheGrainOfCleanSkin) {
    const Skin skin{.grain = 4};
    const Image clean = skin.clean();
    const Image mottled = painted(kSize, [&clean](int row, int column) {
        const RGBA32 pixel = clean.pixel(row, column);
        const double t = stainAt(row, column, kCenter, 12);
        const double mottle = (row / 2 + column / 2) % 2 == 0 ? 0.3 : 0.9;
        const double factor = 1 + t * (mottle - 1);
        return RGBA32(byteOf(pixel.red() * factor), byteOf(pixel.green() * factor),
                      byteOf(pixel.blue() * factor), 255);
    });
    const Image result = healed(mottled);
    EXPECT_GT(grainAround(mottled), 20 * grainAround(clean));
    EXPECT_LT(grainAround(result), 2 * grainAround(clean));
    EXPECT_GT(grainAround(result), 0.4 * grainAround(clean));
    EXPECT_NEAR(meanAround(result, &RGBA32::green), meanAround(clean, &RGBA32::green), 3);
}

TEST(NaturalRepair, ALargeDiscIsRepairedAsASmallOne) {
    constexpr PixelSize kLargeSize{700, 600};
    constexpr PixelPosition kMiddle{300, 350};
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

// What stays as it is.

TEST(NaturalRepair, NothingOutsideTheDiscIsTouched) {
    const Skin skin;
    const Image image = skin.picture();
    for (const std::int64_t radius : {2, 5, 12, 20, 33, 41}) {
        SCOPED_TRACE(radius);
        expectUntouchedOutsideDisc(image, healed(image, kCenter, radius), kCenter, radius);
    }
}

TEST(NaturalRepair, TheGivenImageStaysAndUntouchedTilesAreShared) {
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

TEST(NaturalRepair, AFlatColourIsLeftAlone) {
    const Image image = filled(kSize, {190, 150, 130, 255});
    EXPECT_TRUE(samePixels(healed(image), image));
}

TEST(NaturalRepair, ABlemishInAFlatColourBecomesThatColour) {
    const Image image = skinWithBlemishes(kSize, {kCenter});
    EXPECT_TRUE(samePixels(healed(image, kCenter, 10), filled(kSize, kSkin)));
}

TEST(NaturalRepair, ADiscThatIsAllBlemishIsLeftAlone) {
    const Skin skin{.grain = 3, .radius = 60};
    const Image image = skin.picture();
    EXPECT_TRUE(samePixels(healed(image, kCenter, 12), image));
}

TEST(NaturalRepair, AThresholdOfAllLevelsRepairsNothing) {
    const Image image = Skin{.grain = 0}.picture();
    EXPECT_TRUE(samePixels(healed(image, kCenter, kRadius, 255), image));
    EXPECT_TRUE(samePixels(healed(image, kCenter, kRadius, 100'000'000'000), image));
}

TEST(NaturalRepair, ALargerThresholdRepairsNoMorePixels) {
    const Skin skin;
    const Image image = skin.picture();
    int previous = countOfChanged(image, healed(image, kCenter, kRadius, 0));
    EXPECT_GT(previous, 400);
    for (const std::int64_t threshold : {10, 30, 60, 100, 254}) {
        const int changed = countOfChanged(image, healed(image, kCenter, kRadius, threshold));
        EXPECT_LE(changed, previous + 10) << threshold;
        previous = changed;
    }
    EXPECT_LT(previous, 100);
}

TEST(NaturalRepair, AThresholdBelowZeroIsTakenAsZero) {
    const Image image = Skin{}.picture();
    EXPECT_TRUE(samePixels(healed(image, kCenter, kRadius, -5), healed(image, kCenter, kRadius, 0)));
}

TEST(NaturalRepair, HairOverTheDiscIsLeftAlone) {
    const Image hair = painted(kSize, [](int row, int column) {
        const double strand =
            std::sin((column + 0.6 * row) * 0.9) + 0.5 * std::sin((column + 0.5 * row) * 2.1);
        return RGBA32(byteOf(60 + 30 * strand), byteOf(45 + 24 * strand), byteOf(35 + 18 * strand), 255);
    });
    EXPECT_TRUE(samePixels(healed(hair), hair));
}

TEST(NaturalRepair, HairBesideABlemishStaysAndDoesNotRunIntoTheSkin) {
    const Skin skin{.grain = 3, .radius = 9};
    const auto withHair = [](const Image& picture) {
        return painted(kSize, [&picture](int row, int column) {
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

TEST(NaturalRepair, TheRepairDoesNotRepeatItselfWhenThePlaceIsClickedAgain) {
    const Skin skin;
    const Image once = healed(skin.picture());
    const Image twice = healed(once);
    // What is skin now stays, or next to all of it.
    EXPECT_LT(countOfChanged(once, twice), 60);
}

TEST(NaturalRepair, ASecondBlemishInTheSamePlaceGetsOtherDetail) {
    const Skin skin{.grain = 5};
    const Image clean = skin.clean();
    // A blot without any detail of its own, twice in one place.
    const auto blotted = [](const Image& picture) {
        return painted(kSize, [&picture](int row, int column) {
            return std::hypot(row - 80, column - 100) < 10 ? RGBA32(90, 40, 40, 255)
                                                           : picture.pixel(row, column);
        });
    };
    const Image once = healed(blotted(clean));
    const Image twice = healed(once);
    EXPECT_LT(countOfChanged(once, twice), 60);
    EXPECT_GT(grainAround(once, 6), 0.4 * grainAround(clean, 6));
}

// Where the disc lies.

TEST(NaturalRepair, ADiscOverTheBorderGivesTheVeryImageAsTheFlatRepairDoes) {
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
        const Point point = at(image, place);
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

TEST(NaturalRepair, DiscsOfAFewPixelsAreDefined) {
    const Image image = skinWithBlemishes(kSize, {kCenter});
    for (const std::int64_t radius : {1, 2, 3, 4, 5, 6}) {
        SCOPED_TRACE(radius);
        expectUntouchedOutsideDisc(image, healed(image, kCenter, radius), kCenter, radius);
    }
    EXPECT_TRUE(samePixels(healed(image, kCenter, 1), image));
}

TEST(NaturalRepair, APictureThatTheDiscFillsIsDefined) {
    for (const int side : {2, 3, 7, 20, 66}) {
        SCOPED_TRACE(side);
        const Image image = noise({side, side});
        const PixelPosition middle{side / 2, side / 2};
        const Image result = healed(image, middle, side / 2);
        expectUntouchedOutsideDisc(image, result, middle, side / 2);
    }
}

TEST(NaturalRepair, ADiscWithoutPixelsAndAPointOutOfAllRangeAreFatal) {
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

TEST(NaturalRepair, ChaosIsSurvived) {
    const Image image = noise(kSize, 5);
    for (const std::int64_t radius : {3, 17, 40, 79})
        for (const std::int64_t threshold : {0, 10, 100})
            expectUntouchedOutsideDisc(image, healed(image, kCenter, radius, threshold), kCenter, radius);
}

// Pixels of other kinds.

TEST(NaturalRepair, AlphaStaysAndColourIsPremultipliedByIt) {
    const Skin skin{.grain = 0};
    const Image opaque = skin.picture();
    const auto translucent = [](const Image& picture) {
        return painted(kSize, [&picture](int row, int column) {
            const RGBA32 pixel = picture.pixel(row, column);
            const auto alpha = static_cast<std::uint8_t>(row < 80 ? 128 : 255);
            return RGBA32(premultiplied(pixel.red(), alpha), premultiplied(pixel.green(), alpha),
                          premultiplied(pixel.blue(), alpha), alpha);
        });
    };
    const Image result = healed(translucent(opaque));
    EXPECT_TRUE(nearlySamePixels(result, translucent(healed(opaque)), 3));
    EXPECT_EQ(result.pixel(79, 100).alpha(), 128);
    EXPECT_EQ(result.pixel(81, 100).alpha(), 255);
}

TEST(NaturalRepair, TransparentPixelsStayTransparent) {
    const Image opaque = Skin{}.picture();
    const Image image = painted(kSize, [&opaque](int row, int column) {
        return (row + column) % 7 == 0 || column > 112 ? RGBA32() : opaque.pixel(row, column);
    });
    const Image result = healed(image);
    for (int row = 60; row < 100; ++row)
        for (int column = 80; column < 120; ++column)
            EXPECT_EQ(result.pixel(row, column).alpha(), image.pixel(row, column).alpha());
    EXPECT_NE(result.pixel(80, 101), image.pixel(80, 101));
    EXPECT_TRUE(samePixels(healed(filled(kSize, {})), filled(kSize, {})));
}

TEST(NaturalRepair, TheProfileAndTheSizeInPointsStay) {
    const ColorProfile profile = ColorProfile::fromIcc(wideProfile());
    const Image image = Skin{}.picture().withProfile(profile).withSize({100, 80});
    const auto result = ImageTools::HealPimpleInImage(image, {50, 40}, 8, kThreshold);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->size(), (PointSize{100, 80}));
    EXPECT_EQ(result->profile(), profile);
}

// The same everywhere.

TEST(NaturalRepair, TheSameClickGivesTheSamePixelsOnEveryThread) {
    const Image image = Skin{}.picture();
    const Image expected = healed(image);
    std::vector<Image> results(4);
    {
        std::vector<std::jthread> threads;
        for (Image& result : results)
            threads.emplace_back([&] { result = healed(image); });
    }
    for (const Image& result : results)
        EXPECT_TRUE(samePixels(result, expected));
}

TEST(NaturalRepair, TheSameClickGivesTheSamePixelsOnEveryMachine) {
    // FNV-1a of the pixels, as first computed: another compiler or processor must come to the same.
    const Skin skin{.shading = 0.25, .grain = 8};
    std::uint32_t hash = 2166136261U;
    for (const RGBA32 pixel : pixelsOf(healed(skin.picture())))
        hash = (hash ^ pixel.color) * 16777619U;
    EXPECT_EQ(hash, 1857082309U);
}

} // namespace
} // namespace complexion
