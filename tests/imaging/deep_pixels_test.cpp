// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/deep_pixels.h"

#include "imaging/base/image.h"
#include "imaging/base/pixel_buffer.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

constexpr PixelSize kTile = {Tile::kWidth, Tile::kHeight};

RGBA32 roundedPixel(RGBA64 pixel) {
    const std::uint8_t alpha = roundedTo8(pixel.alpha);
    return {premultiplied(roundedTo8(pixel.red), alpha), premultiplied(roundedTo8(pixel.green), alpha),
            premultiplied(roundedTo8(pixel.blue), alpha), alpha};
}

/// The pixels of a tile: `at` is called with each index.
std::vector<RGBA64> pixels(const std::function<RGBA64(std::uint32_t)>& at) {
    std::vector<RGBA64> all;
    for (std::uint32_t i = 0; i < kTile.area(); ++i)
        all.push_back(at(i));
    return all;
}

PixelBlock rounded(const std::vector<RGBA64>& deep) {
    PixelBlock block = PixelBlock::uninitialized(kTile);
    std::ranges::transform(deep, block.pixels.get(), roundedPixel);
    return block;
}

std::vector<RGBA64> readBack(const DeepBlock& block, const PixelBlock& pixels) {
    std::vector<RGBA64> all(static_cast<std::size_t>(kTile.area()));
    for (int row = 0; row < kTile.height; ++row)
        block.read(pixels, row, 0, kTile.width, all.data() + std::ptrdiff_t{row} * kTile.width);
    return all;
}

std::uint16_t low(std::uint32_t value) {
    return static_cast<std::uint16_t>(value);
}

Image deepImage(const std::vector<RGBA64>& deep) {
    const PixelBlock block = rounded(deep);
    ImageBuilder builder(kTile, DeepAlpha::Straight);
    builder.setRows(0, kTile.height, block.pixels.get(), deep.data());
    return builder.finish();
}

TEST(DeepPixels, AreRoundedToTheNearest8BitLevel) {
    for (std::uint32_t value = 0; value <= UINT16_MAX; ++value)
        ASSERT_EQ(roundedTo8(value), std::lround(value / 257.0)) << value;
}

TEST(DeepPixels, OfEveryValueAreRestored) {
    for (std::uint32_t first = 0; first <= UINT16_MAX; first += static_cast<std::uint32_t>(kTile.area())) {
        const auto deep = pixels([first](std::uint32_t i) {
            return RGBA64{low(first + i), low(UINT16_MAX - first - i), low((first + i) * 7), UINT16_MAX};
        });
        const PixelBlock block = rounded(deep);
        EXPECT_TRUE(readBack(*DeepBlock::create(block, deep), block) == deep);
    }
}

TEST(DeepPixels, NeedOneBytePerSampleIfOpaque) {
    const auto area = static_cast<std::size_t>(kTile.area());
    const auto color = pixels([](std::uint32_t i) { return RGBA64{low(i), low(i * 3), 9, UINT16_MAX}; });
    const auto grey = pixels([](std::uint32_t i) { return RGBA64{low(i), low(i), low(i), UINT16_MAX}; });
    const auto glass = pixels([](std::uint32_t i) { return RGBA64{low(i), low(i * 3), 9, low(i)}; });
    EXPECT_LT(DeepBlock::create(rounded(color), color)->size(), area * 3 * 11 / 10);
    EXPECT_LT(DeepBlock::create(rounded(grey), grey)->size(), area * 11 / 10);
    const PixelBlock block = rounded(glass);
    EXPECT_TRUE(readBack(*DeepBlock::create(block, glass), block) == glass);
}

TEST(DeepPixels, ChangeOnlyWherePainted) {
    for (const std::uint16_t alpha : {std::uint16_t{UINT16_MAX}, std::uint16_t{30'000}}) {
        const auto deep =
            pixels([alpha](std::uint32_t i) { return RGBA64{low(i * 5), low(i * 3), low(i), alpha}; });
        const Image image = deepImage(deep);
        const RGBA32 paint = RGBA32(3, 2, 1, roundedTo8(alpha));
        Result<PixelBuffer> buffer = PixelBuffer::open(image);
        const PixelPosition painted{5, 7};
        const PixelPosition same{6, 8};
        buffer->paint(std::vector{painted}, paint);
        buffer->paint(std::vector{same}, image.pixel(6, 8));
        const Image edited = std::move(*buffer).close();
        ASSERT_EQ(edited.deepAlpha(), DeepAlpha::Straight);
        std::vector<RGBA64> result(static_cast<std::size_t>(kTile.area()));
        edited.readDeep({0, 0, kTile.width, kTile.height}, result.data(), kTile.width);
        std::vector<RGBA64> expected = deep;
        expected[5 * Tile::kWidth + 7] = widened(paint, DeepAlpha::Straight);
        expected[5 * Tile::kWidth + 7].alpha = alpha;
        EXPECT_TRUE(result == expected);
    }
}

TEST(DeepPixels, AreKeptWhenTheSizeInPointsChanges) {
    const auto deep = pixels([](std::uint32_t i) { return RGBA64{low(i), 1, 2, UINT16_MAX}; });
    const Image image = deepImage(deep);
    EXPECT_EQ(image.withSize({10, 10}).deepAlpha(), DeepAlpha::Straight);
    EXPECT_EQ(filled({4, 4}, kSkin).deepAlpha(), std::nullopt);
}

} // namespace
} // namespace complexion
