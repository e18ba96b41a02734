// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/changed_pixels.h"

#include "tests/fakes/pictures.h"

namespace complexion {
namespace {

TEST(ChangedPixels, AreNoneForTheSameObject) {
    const Image image = noise({300, 200});
    EXPECT_EQ(changedPixels(image, image), PixelMask{});
}

TEST(ChangedPixels, AreNoneIfTheSameValuesWereWritten) {
    const Image image = filled({300, 200}, kSkin);
    EXPECT_EQ(changedPixels(image, withPixels(image, {{10, 10}}, kSkin)), PixelMask{});
}

TEST(ChangedPixels, HaveTheSmallestBoundingBox) {
    const Image image = filled({600, 300}, kSkin);
    // Across tile borders: tiles have 256 by 64 pixels.
    const std::vector<PixelPosition> places = {{63, 255}, {64, 256}, {70, 250}};
    const PixelMask mask = changedPixels(image, withPixels(image, places, kBlemish));
    EXPECT_EQ(mask.area, (PixelRect{250, 63, 7, 8}));
    EXPECT_EQ(mask.count(), 3);
    for (const PixelPosition place : places)
        EXPECT_TRUE(mask.has(static_cast<int>(place.row), static_cast<int>(place.column)));
    EXPECT_FALSE(mask.has(63, 254));
    EXPECT_FALSE(mask.has(62, 255));
    EXPECT_FALSE(mask.has(0, 0));
    EXPECT_FALSE(mask.has(200, 300));
}

} // namespace
} // namespace complexion
