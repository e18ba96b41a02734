// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/photo_effects.h"

#include "tests/fakes/pictures.h"
#include "tests/imaging/effect_pictures.h"

#include <gtest/gtest.h>

#include <set>

namespace complexion {

namespace {

using namespace test;

TEST(PhotoEffects, AGreyRampStaysMonotonicWithoutBanding) {
    for (const std::string effect : kEffects) {
        SCOPED_TRACE(effect);
        const std::vector<RGBA32> ramp = through(effect, greyRamp());
        std::set<int> levels[3];
        for (std::size_t index = 0; index < ramp.size(); ++index) {
            levels[0].insert(ramp[index].red());
            levels[1].insert(ramp[index].green());
            levels[2].insert(ramp[index].blue());
            if (index == 0)
                continue;
            EXPECT_GE(ramp[index].red(), ramp[index - 1].red());
            EXPECT_GE(ramp[index].green(), ramp[index - 1].green());
            EXPECT_GE(ramp[index].blue(), ramp[index - 1].blue());
        }
        for (const std::set<int>& channel : levels)
            EXPECT_GE(channel.size(), 180U);
    }
}

TEST(PhotoEffects, ARampOfOneComponentStaysMonotonicInThatComponent) {
    for (const std::string effect : kEffects) {
        SCOPED_TRACE(effect);
        std::vector<RGBA32> red;
        std::vector<RGBA32> blue;
        for (int level = 0; level < 256; ++level) {
            red.push_back(opaque(level, 120, 90));
            blue.push_back(opaque(200, 150, level));
        }
        EXPECT_TRUE(std::ranges::is_sorted(through(effect, red), {}, &RGBA32::red));
        EXPECT_TRUE(std::ranges::is_sorted(through(effect, blue), {}, &RGBA32::blue));
    }
}

TEST(PhotoEffects, OnAMipmapLevelEqualTheHalvedResult) {
    // A soft gradient, without details finer than the level, must not differ at all.
    constexpr int kSide = 300;
    std::vector<RGBA32> pixels;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x)
            pixels.push_back(
                opaque(20 + 0.75 * x, 0.8 * y, 0.4 * (x + y) * (0.7 + 0.3 * std::sin(x / 40.0))));
    const Image picture = Image::fromPixels({kSide, kSide}, pixels);
    for (const std::string effect : kEffects)
        for (const int level : {1, 2, 3, 4})
            EXPECT_EQ(shareFarFromExact(picture, effect, level), 0) << effect << ", level " << level;
}

TEST(PhotoEffects, KeepAlphaAndChangeTheStraightColor) {
    for (const std::string effect : kEffects)
        for (const int alpha : {1, 60, 128, 254}) {
            SCOPED_TRACE(effect + " at alpha " + std::to_string(alpha));
            const RGBA32 color = kSkins[2];
            const auto part = [&](int component) { return static_cast<double>(component) * alpha / 255; };
            const RGBA32 translucent(premultiplied(color.red(), static_cast<std::uint32_t>(alpha)),
                                     premultiplied(color.green(), static_cast<std::uint32_t>(alpha)),
                                     premultiplied(color.blue(), static_cast<std::uint32_t>(alpha)),
                                     static_cast<std::uint8_t>(alpha));
            // An opaque and a translucent pixel side by side must not be confused.
            const std::vector<RGBA32> result = through(effect, {color, translucent});
            EXPECT_EQ(result[0], through(effect, {color}).front());
            EXPECT_EQ(result[1].alpha(), alpha);
            EXPECT_NEAR(result[1].red(), part(result[0].red()), 1.5);
            EXPECT_NEAR(result[1].green(), part(result[0].green()), 1.5);
            EXPECT_NEAR(result[1].blue(), part(result[0].blue()), 1.5);
            EXPECT_LE(std::max({result[1].red(), result[1].green(), result[1].blue()}), alpha);
        }
}

TEST(PhotoEffects, TransparentPixelsAreUnchanged) {
    // Even with invalid colours above their alpha, as in damaged files.
    for (const std::string effect : kEffects)
        for (const RGBA32 nothing : {RGBA32(), RGBA32(10, 20, 30, 0)})
            EXPECT_EQ(through(effect, {nothing}).front(), nothing) << effect;
}

TEST(PhotoEffects, AreSingletons) {
    std::set<const PixelTransform*> effects;
    for (const std::string effect : kEffects) {
        ASSERT_NE(photoEffect(effect), nullptr) << effect;
        EXPECT_EQ(photoEffect(effect), photoEffect(effect));
        effects.insert(photoEffect(effect).get());
    }
    EXPECT_EQ(effects.size(), kEffects.size());
}

TEST(PhotoEffects, UnknownNamesHaveNone) {
    for (const char* name : {"mono", "Normal", "", "Monochrome", "Chrome "})
        EXPECT_EQ(photoEffect(name), nullptr) << name;
}

TEST(ApplyEffectOnImage, KeepsTheSizesTheProfileAndTheSource) {
    const Image source = colorChart().withSize({144, 72});
    const Image result = ImageTools::ApplyEffectOnImage(source, "Mono");
    EXPECT_EQ(result.pixelSize(), source.pixelSize());
    EXPECT_EQ(result.size(), source.size());
    EXPECT_EQ(result.profile(), source.profile());
    EXPECT_EQ(pixelsOf(source), pixelsOf(colorChart()));
    EXPECT_EQ(pixelsOf(result), through("Mono", pixelsOf(source)));
}

TEST(ApplyEffectOnImageDeathTest, AnUnknownNameIsFatal) {
    EXPECT_DEATH((void)ImageTools::ApplyEffectOnImage(colorChart(), "mono"), "no photo effect");
    EXPECT_DEATH((void)ImageTools::ApplyEffectOnImage(colorChart(), "Normal"), "no photo effect");
}

TEST(ApplyEffectOnImageDeathTest, AnImageWithoutPixelsIsFatal) {
    EXPECT_DEATH((void)ImageTools::ApplyEffectOnImage(Image::empty({10, 10}), "Mono"), "with pixels");
}

} // namespace

} // namespace complexion
