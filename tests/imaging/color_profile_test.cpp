// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/color_profile.h"

#include "imaging/screen_colors.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

TEST(ColorProfile, IsSrgbWhenThereIsNoUsableRgbProfile) {
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

TEST(ColorProfile, AColorOfSrgbIsItselfInSrgb) {
    const RgbColor color{0.2, 0.4, 0.6};
    EXPECT_EQ(ColorProfile().fromSrgb(color), color);
}

TEST(ColorProfile, AScreenColorBroughtIntoAWideSpaceAndBackIsTheSameOnTheScreen) {
    const ColorProfile profile = ColorProfile::fromIcc(wideProfile());
    const RgbColor inSpace = profile.fromSrgb({200 / 255.0, 120 / 255.0, 90 / 255.0});
    EXPECT_LT(inSpace.red, 200 / 255.0); // a wider space needs less of a colour
    RGBA32 pixel(static_cast<std::uint8_t>(inSpace.red * 255 + 0.5),
                 static_cast<std::uint8_t>(inSpace.green * 255 + 0.5),
                 static_cast<std::uint8_t>(inSpace.blue * 255 + 0.5), 255);
    screenTransform(profile)->apply({&pixel, 1});
    EXPECT_NEAR(pixel.red(), 200, 2);
    EXPECT_NEAR(pixel.green(), 120, 2);
    EXPECT_NEAR(pixel.blue(), 90, 2);
    EXPECT_EQ(pixel.alpha(), 255);
}

TEST(ScreenColors, AnSrgbImageNeedsNoConversion) {
    EXPECT_EQ(screenTransform(ColorProfile()), nullptr);
}

} // namespace
} // namespace complexion
