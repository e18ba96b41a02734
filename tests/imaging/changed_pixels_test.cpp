// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/changed_pixels.h"

#include "imaging/image_tools.h"
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

TEST(ChangedPixels, AreTheSameInEveryTile) {
    // Incomplete tiles at the right and bottom edges, and changes at the edges of tiles.
    const PixelSize size{600, 150};
    const Image image = noise(size);
    std::vector<PixelPosition> places;
    for (const std::int64_t row : {0, 5, 63, 64, 100, 127, 128, 149})
        for (const std::int64_t column : {0, 3, 255, 256, 300, 511, 512, 599}) {
            places.push_back({row, column});
            const Image changed = withPixels(image, places, RGBA32(1, 2, 3, 255));
            const PixelMask mask = changedPixels(image, changed);
            ASSERT_EQ(mask.count(), std::ssize(places));
            PixelRect box;
            for (const PixelPosition place : places) {
                ASSERT_TRUE(mask.has(static_cast<int>(place.row), static_cast<int>(place.column)));
                box = box.united({static_cast<int>(place.column), static_cast<int>(place.row), 1, 1});
            }
            ASSERT_EQ(mask.area, box);
        }
}

TEST(ChangedPixels, AreFoundInImagesThatAreComputedWhenRead) {
    const Image stored = noise({300, 100});
    const Image computed = ImageTools::convertToGrayScale(stored);
    const Image changed = withPixels(computed.materialized(), {{70, 260}}, RGBA32(1, 2, 3, 255));
    EXPECT_EQ(changedPixels(computed, changed).area, (PixelRect{260, 70, 1, 1}));
}

} // namespace
} // namespace complexion
