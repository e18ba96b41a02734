// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/color_profile.h"

#include "imaging/screen_colors.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace complexion {
namespace {

TEST(ColorProfile, IsSrgbWithoutAValidRgbProfile) {
    EXPECT_TRUE(ColorProfile().isSrgb());
    EXPECT_TRUE(ColorProfile::fromIcc({}).isSrgb());
    const Bytes noProfile(200, 7);
    EXPECT_TRUE(ColorProfile::fromIcc(noProfile).isSrgb());
    EXPECT_TRUE(ColorProfile::fromIcc(grayProfile()).isSrgb());
}

TEST(ColorProfile, KeepsAProfilesBytes) {
    const Bytes icc = wideProfile();
    const ColorProfile profile = ColorProfile::fromIcc(icc);
    ASSERT_FALSE(profile.isSrgb());
    EXPECT_TRUE(std::ranges::equal(profile.icc(), icc));
    EXPECT_EQ(profile, ColorProfile::fromIcc(icc));
    EXPECT_FALSE(profile == ColorProfile());
}

TEST(ColorProfile, SrgbColorsAreUnchangedInSrgb) {
    const RgbColor color{0.2, 0.4, 0.6};
    EXPECT_EQ(ColorProfile().fromSrgb(color), color);
}

TEST(ColorProfile, FromSrgbInvertsTheScreenTransform) {
    const ColorProfile profile = ColorProfile::fromIcc(wideProfile());
    const RgbColor inSpace = profile.fromSrgb({200 / 255.0, 120 / 255.0, 90 / 255.0});
    EXPECT_LT(inSpace.red, 200 / 255.0); // the same colour is less extreme in a wider gamut
    RGBA32 pixel(static_cast<std::uint8_t>(inSpace.red * 255 + 0.5),
                 static_cast<std::uint8_t>(inSpace.green * 255 + 0.5),
                 static_cast<std::uint8_t>(inSpace.blue * 255 + 0.5), 255);
    screenTransform(profile)->apply({&pixel, 1});
    EXPECT_NEAR(pixel.red(), 200, 2);
    EXPECT_NEAR(pixel.green(), 120, 2);
    EXPECT_NEAR(pixel.blue(), 90, 2);
    EXPECT_EQ(pixel.alpha(), 255);
}

/// Opaque pixels converted to sRGB by the colour library.
std::vector<RGBA32> byTheLibrary(const Bytes& icc, std::vector<RGBA32> pixels) {
    cmsHPROFILE from = cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size()));
    cmsHPROFILE screen = cmsCreate_sRGBProfile();
    cmsHTRANSFORM transform = cmsCreateTransform(from, TYPE_ABGR_8, screen, TYPE_ABGR_8,
                                                 INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_COPY_ALPHA);
    cmsDoTransform(transform, pixels.data(), pixels.data(), static_cast<cmsUInt32Number>(pixels.size()));
    cmsDeleteTransform(transform);
    cmsCloseProfile(screen);
    cmsCloseProfile(from);
    return pixels;
}

TEST(ScreenColors, AreWithinOneLevelOfTheColorLibrarys) {
    std::vector<RGBA32> colors;
    for (int red = 0; red < 256; red += 15)
        for (int green = 3; green < 256; green += 12)
            for (int blue = 0; blue < 256; blue += 17)
                colors.emplace_back(static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                                    static_cast<std::uint8_t>(blue), std::uint8_t{255});
    for (const Bytes& icc : {wideProfile(), tableProfile()}) {
        const auto transform = screenTransform(ColorProfile::fromIcc(icc));
        ASSERT_TRUE(transform);
        std::vector<RGBA32> shown = colors;
        transform->apply(shown);
        const std::vector<RGBA32> expected = byTheLibrary(icc, colors);
        int maxDifference = 0;
        for (std::size_t i = 0; i < shown.size(); ++i)
            maxDifference = std::max({maxDifference, std::abs(shown[i].red() - expected[i].red()),
                                      std::abs(shown[i].green() - expected[i].green()),
                                      std::abs(shown[i].blue() - expected[i].blue()),
                                      std::abs(shown[i].alpha() - expected[i].alpha())});
        EXPECT_LE(maxDifference, 1);
        EXPECT_FALSE(shown == colors);
    }
}

TEST(ColorProfile, ThatWorksOneWayOnlyIsUsedThatWay) {
    // tableProfile without its way back.
    cmsHPROFILE profile =
        cmsOpenProfileFromMem(tableProfile().data(), static_cast<cmsUInt32Number>(tableProfile().size()));
    ASSERT_NE(profile, nullptr);
    for (const cmsTagSignature tag : {cmsSigBToA0Tag, cmsSigBToA1Tag, cmsSigBToA2Tag})
        cmsWriteTag(profile, tag, nullptr);
    const Bytes icc = bytesOfProfile(profile);
    const ColorProfile oneWay = ColorProfile::fromIcc(icc);
    ASSERT_FALSE(oneWay.isSrgb());
    // The colour that is found is shown as the one that is wanted.
    const ColorProfile bothWays = ColorProfile::fromIcc(tableProfile());
    for (const RgbColor wanted : {RgbColor{0.8, 0.6, 0.5}, RgbColor{0.3, 0.4, 0.35}}) {
        const RgbColor found = oneWay.fromSrgb(wanted);
        const RgbColor expected = bothWays.fromSrgb(wanted);
        EXPECT_NEAR(found.red, expected.red, 0.02);
        EXPECT_NEAR(found.green, expected.green, 0.02);
        EXPECT_NEAR(found.blue, expected.blue, 0.02);
    }
}

TEST(ScreenColors, AnSrgbImageNeedsNoConversion) {
    EXPECT_EQ(screenTransform(ColorProfile()), nullptr);
}

} // namespace
} // namespace complexion
