// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/pixel_buffer.h"

#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

TEST(RGBA32, HasRedInItsHighestByteAndAlphaInItsLowest) {
    const RGBA32 pixel(0x11, 0x22, 0x33, 0x44);
    EXPECT_EQ(pixel.color, 0x11223344U);
    EXPECT_EQ(pixel.red(), 0x11);
    EXPECT_EQ(pixel.green(), 0x22);
    EXPECT_EQ(pixel.blue(), 0x33);
    EXPECT_EQ(pixel.alpha(), 0x44);
}

TEST(RGBA32, IsStoredAsAlphaBlueGreenRed) {
    const RGBA32 pixel(0x11, 0x22, 0x33, 0x44);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&pixel);
    EXPECT_EQ(bytes[0], 0x44);
    EXPECT_EQ(bytes[1], 0x33);
    EXPECT_EQ(bytes[2], 0x22);
    EXPECT_EQ(bytes[3], 0x11);
}

TEST(RGBA32, PremultiplicationRoundsToNearestAndKeepsOpaqueValues) {
    for (std::uint32_t alpha = 0; alpha <= 255; ++alpha)
        for (std::uint32_t component = 0; component <= 255; ++component) {
            const auto exact = static_cast<std::uint8_t>((component * alpha * 2 + 255) / 510);
            ASSERT_EQ(premultiplied(component, alpha), exact) << component << " at alpha " << alpha;
        }
    for (std::uint32_t component = 0; component <= 255; ++component)
        EXPECT_EQ(unpremultiplied(component, 255), component);
    EXPECT_EQ(unpremultiplied(0, 0), 0);
}

TEST(PixelBuffer, HasTheSizeOfTheImageInPixels) {
    const Image image = noise({144, 72}).withSize({72, 36});
    PixelBuffer buffer = *PixelBuffer::open(image);
    EXPECT_EQ(buffer.width(), 144);
    EXPECT_EQ(buffer.height(), 72);
    const Image closed = std::move(buffer).close();
    EXPECT_EQ(closed.pixelSize(), (PixelSize{144, 72}));
    EXPECT_EQ(closed.size(), (PointSize{72, 36}));
}

TEST(PixelBuffer, RowZeroColumnZeroIsTheTopLeftPixel) {
    const Image image = painted({3, 2}, [](int row, int column) { return grey(10 * row + column); });
    const PixelBuffer buffer = *PixelBuffer::open(image);
    EXPECT_EQ(buffer.pixel({0, 0}), grey(0));
    EXPECT_EQ(buffer.pixel({0, 2}), grey(2));
    EXPECT_EQ(buffer.pixel({1, 0}), grey(10));
}

TEST(PixelBuffer, PaintingReplacesTransparentPixels) {
    const RGBA32 halfRed(128, 0, 0, 128); // red at half opacity, premultiplied
    PixelBuffer buffer = *PixelBuffer::open(filled({4, 4}, halfRed));
    EXPECT_EQ(buffer.pixel({1, 1}), halfRed);
    const std::vector<PixelPosition> places = {{1, 1}};
    buffer.paint(places, RGBA32(10, 20, 30, 255));
    const Image closed = std::move(buffer).close();
    EXPECT_EQ(closed.pixel(1, 1), RGBA32(10, 20, 30, 255));
    EXPECT_EQ(closed.pixel(1, 2), halfRed);
}

TEST(PixelBuffer, PaintingChangesTheBufferAndNeverTheSource) {
    const Image image = noise({600, 200});
    const std::vector<RGBA32> before = pixelsOf(image);
    PixelBuffer buffer = *PixelBuffer::open(image);
    const std::vector<PixelPosition> places = {{0, 0}, {63, 255}, {64, 256}, {199, 599}};
    buffer.paint(places, grey(3));
    EXPECT_EQ(buffer.pixel({64, 256}), grey(3));
    const Image closed = std::move(buffer).close();
    EXPECT_EQ(pixelsOf(image), before);
    std::vector<RGBA32> expected = before;
    for (const PixelPosition place : places)
        expected[static_cast<std::size_t>(place.row * 600 + place.column)] = grey(3);
    EXPECT_EQ(pixelsOf(closed), expected);
}

TEST(PixelBuffer, ClosingReturnsANewImageEvenIfNothingWasPainted) {
    const Image image = noise({20, 20});
    const Image closed = std::move(*PixelBuffer::open(image)).close();
    EXPECT_FALSE(closed.isSameObject(image));
    EXPECT_EQ(pixelsOf(closed), pixelsOf(image));
}

TEST(PixelBuffer, AnImageWithoutPixelsCannotBeOpened) {
    const Result<PixelBuffer> buffer = PixelBuffer::open(Image());
    ASSERT_FALSE(buffer);
    EXPECT_EQ(buffer.error().message, "unable to get cgImage");
}

} // namespace
} // namespace complexion
