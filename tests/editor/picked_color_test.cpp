// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/picked_color.h"

#include "imaging/base/color_profile.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"

namespace complexion {
namespace {

TEST(PickedColor, IsTheMeanOfFiveByFivePixels) {
    // One of the 25 pixels is lighter by 125, which adds 5 to the mean.
    const Image image = painted({40, 40}, [](int row, int column) {
        return row == 21 && column == 18 ? RGBA32(225, 225, 100, 255) : RGBA32(100, 100, 100, 255);
    });
    EXPECT_EQ(pickedColor(image, {20, 20}, 0.2), QColor(105, 105, 100));
    EXPECT_EQ(pickedColor(image, {23, 20}, 0.2), QColor(105, 105, 100));
    EXPECT_EQ(pickedColor(image, {24, 20}, 0.2), QColor(100, 100, 100));
    EXPECT_EQ(pickedColor(image, {20, 21}, 0.2), QColor(100, 100, 100));
}

TEST(PickedColor, IsTheMeanOfMorePixelsWhenZoomedOut) {
    const Image image =
        painted({200, 200}, [](int row, int column) { return (row + column) % 2 ? grey(0) : grey(200); });
    const QColor color = pickedColor(image, {100, 100}, 10);
    EXPECT_NEAR(color.red(), 100, 1);
}

TEST(PickedColor, IsInSrgbWhateverThePhotosColorSpace) {
    const ColorProfile wide = ColorProfile::fromIcc(wideProfile());
    const RgbColor skin = wide.fromSrgb({200 / 255.0, 150 / 255.0, 100 / 255.0});
    const auto byte = [](double component) { return static_cast<std::uint8_t>(component * 255 + 0.5); };
    const Image image = filled({40, 40}, {byte(skin.red), byte(skin.green), byte(skin.blue), 255});
    const QColor color = pickedColor(image.withProfile(wide), {20, 20}, 1);
    EXPECT_NEAR(color.red(), 200, 2);
    EXPECT_NEAR(color.green(), 150, 2);
    EXPECT_NEAR(color.blue(), 100, 2);
}

TEST(PickedColor, UsesOnlyPixelsInsideThePhoto) {
    EXPECT_EQ(pickedColor(filled({40, 40}, kSkin), {0, 39}, 4), QColor(180, 180, 180));
    EXPECT_EQ(pickedColor(filled({1, 1}, kSkin), {0, 0}, 4), QColor(180, 180, 180));
}

TEST(PickedColor, WeightsPixelsByTheirAlpha) {
    const Image image = painted({40, 40}, [](int, int column) {
        return column < 20 ? RGBA32(0, 0, 0, 0) : RGBA32(200, 100, 50, 255);
    });
    EXPECT_EQ(pickedColor(image, {20, 20}, 0.2), QColor(200, 100, 50));
}

} // namespace
} // namespace complexion
