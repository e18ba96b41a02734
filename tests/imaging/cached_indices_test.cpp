// SPDX-License-Identifier: GPL-3.0-or-later

// A quantised picture keeps its colour table from edit to edit, as long as the colours fit.
#include "imaging/codecs/cached_indices.h"

#include "imaging/base/pixel_buffer.h"
#include "tests/fakes/pictures.h"
#include "tests/imaging/codec_pictures.h"

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {
namespace {

/// Skin with shading and grain, in thousands of colours.
Image skin(PixelSize size) {
    return painted(size, [](int row, int column) {
        const int grain = (row * 37 + column * 101 + row * column) % 13;
        return RGBA32(static_cast<std::uint8_t>(150 + column / 4 % 90 + grain),
                      static_cast<std::uint8_t>(110 + column / 5 % 80 + row / 7 % 9),
                      static_cast<std::uint8_t>(90 + row / 4 % 70 + grain / 2), 255);
    });
}

Image withPatch(const Image& image, PixelRect patch, RGBA32 color) {
    Result<PixelBuffer> buffer = PixelBuffer::open(image);
    for (int row = patch.y; row < patch.bottom(); ++row)
        buffer->paintRow({row, patch.x}, std::vector<RGBA32>(static_cast<std::size_t>(patch.width), color));
    return std::move(*buffer).close();
}

IndexedImage remembered(const Image& image) {
    const auto indexed = cachedIndexedImage(image);
    EXPECT_TRUE(indexed);
    return **indexed;
}

RGBA32 colorAt(const IndexedImage& image, int row, int column) {
    return image.palette[image.indices[static_cast<std::size_t>(row * image.size.width + column)]];
}

bool areEqual(const IndexedImage& one, const IndexedImage& other) {
    return one.palette == other.palette && one.indices == other.indices &&
           one.hasTransparency == other.hasTransparency;
}

constexpr PixelSize kSize{300, 130};
constexpr PixelRect kPatch{250, 55, 20, 18};   // in four tiles
constexpr RGBA32 kFitting(201, 152, 121, 255); // close to the picture's own colours

TEST(RememberedIndices, AreThoseOfIndexedImageAtFirst) {
    EXPECT_TRUE(areEqual(remembered(skin(kSize)), *indexedImage(skin(kSize))));
}

TEST(RememberedIndices, AnEditInFittingColorsChangesOnlyItsPixels) {
    const Image image = skin(kSize);
    const IndexedImage before = remembered(image);
    const RGBA32 color = kFitting;
    const IndexedImage after = remembered(withPatch(image, kPatch, color));
    EXPECT_EQ(after.palette, before.palette);
    for (int row = 0; row < kSize.height; ++row)
        for (int column = 0; column < kSize.width; ++column)
            if (!(PixelRect{column, row, 1, 1}.intersected(kPatch) == PixelRect{column, row, 1, 1})) {
                ASSERT_EQ(colorAt(after, row, column), colorAt(before, row, column)) << row << ", " << column;
            }
    // The patch is dithered: its mean is the right colour, and no pixel is far off.
    double red = 0;
    double green = 0;
    double blue = 0;
    for (int row = kPatch.y; row < kPatch.bottom(); ++row)
        for (int column = kPatch.x; column < kPatch.right(); ++column) {
            const RGBA32 shown = colorAt(after, row, column);
            red += shown.red();
            green += shown.green();
            blue += shown.blue();
            EXPECT_LT(std::abs(shown.red() - color.red()) + std::abs(shown.green() - color.green()) +
                          std::abs(shown.blue() - color.blue()),
                      60);
        }
    const double count = kPatch.width * kPatch.height;
    EXPECT_NEAR(red / count, color.red(), 1.5);
    EXPECT_NEAR(green / count, color.green(), 1.5);
    EXPECT_NEAR(blue / count, color.blue(), 1.5);
}

TEST(RememberedIndices, EditAfterEditIsRemembered) {
    Image image = skin(kSize);
    const IndexedImage first = remembered(image);
    for (int i = 0; i < 5; ++i) {
        image = withPatch(image, {40 * i, 25 * i, 12, 12}, kFitting);
        EXPECT_EQ(remembered(image).palette, first.palette);
    }
    // An undo is an edit like any other.
    const Image back = withPatch(image, {160, 90, 12, 12}, kFitting);
    EXPECT_EQ(remembered(back).palette, first.palette);
    EXPECT_EQ(remembered(image).palette, first.palette);
}

TEST(RememberedIndices, ColorsThatDoNotFitCauseANewColorTable) {
    const Image image = skin(kSize);
    (void)remembered(image);
    const Image painted = withPatch(image, kPatch, RGBA32(20, 60, 250, 255));
    EXPECT_TRUE(areEqual(remembered(painted), *indexedImage(painted)));
}

TEST(RememberedIndices, ALargeChangeCausesANewColorTable) {
    const Image image = skin(kSize);
    (void)remembered(image);
    const Image painted = withPatch(image, {0, 0, 100, 100}, kFitting);
    EXPECT_TRUE(areEqual(remembered(painted), *indexedImage(painted)));
}

TEST(RememberedIndices, AddingOrRemovingTransparencyCausesANewColorTable) {
    const Image image = skin(kSize);
    (void)remembered(image);
    const Image holed = withPatch(image, {10, 10, 2, 2}, RGBA32());
    EXPECT_TRUE(areEqual(remembered(holed), *indexedImage(holed)));
    EXPECT_TRUE(areEqual(remembered(image), *indexedImage(image)));
}

TEST(RememberedIndices, TransparentPixelsStayTransparentAfterAnEdit) {
    const Image holed = withPatch(skin(kSize), {10, 10, 30, 2}, RGBA32());
    const IndexedImage before = remembered(holed);
    const Image smaller = withPatch(holed, {12, 8, 5, 5}, kFitting);
    const IndexedImage after = remembered(withPatch(smaller, {100, 100, 4, 1}, RGBA32()));
    EXPECT_EQ(after.palette, before.palette);
    EXPECT_EQ(colorAt(after, 10, 10), RGBA32());
    EXPECT_EQ(colorAt(after, 10, 13).alpha(), 255);
    EXPECT_EQ(colorAt(after, 100, 103), RGBA32());
    EXPECT_EQ(colorAt(after, 100, 104).alpha(), 255);
}

TEST(RememberedIndices, AnEditThatLeavesFewColorsGivesAnExactPicture) {
    const Image image = skin(kSize);
    (void)remembered(image);
    const Image plain = withPatch(image, {0, 0, kSize.width, kSize.height}, RGBA32(1, 2, 3, 255));
    EXPECT_EQ(remembered(plain).palette, (std::vector{RGBA32(1, 2, 3, 255)}));
}

} // namespace
} // namespace complexion
