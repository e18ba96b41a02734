// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/image.h"

#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

const std::vector<PixelSize> kOddSizes = {{1, 1},    {1, 200},  {300, 1},   {255, 63},
                                          {256, 64}, {257, 65}, {513, 129}, {700, 200}};

class Inverted final : public PixelTransform {
public:
    void apply(std::span<RGBA32> pixels) const override {
        for (RGBA32& pixel : pixels)
            pixel.color ^= 0xFFFFFF00;
    }
};

RGBA32 meanOfFour(const Image& image, int row, int column) {
    const PixelSize size = image.pixelSize();
    const int right = std::min(column + 1, size.width - 1);
    const int below = std::min(row + 1, size.height - 1);
    const RGBA32 a = image.pixel(row, column);
    const RGBA32 b = image.pixel(row, right);
    const RGBA32 c = image.pixel(below, column);
    const RGBA32 d = image.pixel(below, right);
    const auto mean = [&](auto component) {
        return static_cast<std::uint8_t>((component(a) + component(b) + component(c) + component(d) + 2) / 4);
    };
    return {mean([](RGBA32 p) { return p.red(); }), mean([](RGBA32 p) { return p.green(); }),
            mean([](RGBA32 p) { return p.blue(); }), mean([](RGBA32 p) { return p.alpha(); })};
}

TEST(Image, HasThePixelsItWasMadeOf) {
    for (const PixelSize size : kOddSizes) {
        std::vector<RGBA32> pixels;
        for (std::int64_t i = 0; i < size.area(); ++i)
            pixels.emplace_back(static_cast<std::uint32_t>(i * 2654435761U));
        EXPECT_EQ(pixelsOf(Image::fromPixels(size, pixels)), pixels) << size.width << "x" << size.height;
    }
}

TEST(Image, HasOnePointPerPixelByDefault) {
    const Image image = filled({300, 200}, grey(9));
    EXPECT_EQ(image.size(), (PointSize{300, 200}));
    EXPECT_EQ(image.withSize({150, 100}).size(), (PointSize{150, 100}));
    EXPECT_EQ(image.withSize({150, 100}).pixelSize(), (PixelSize{300, 200}));
}

TEST(Image, ReadsAnyRectangleAcrossTiles) {
    const Image image = noise({600, 150});
    const std::vector<RGBA32> all = pixelsOf(image);
    for (const PixelRect rect :
         {PixelRect{250, 60, 20, 10}, PixelRect{0, 0, 600, 1}, PixelRect{599, 0, 1, 150}}) {
        std::vector<RGBA32> part(static_cast<std::size_t>(rect.width * rect.height));
        image.read(rect, part.data(), rect.width);
        for (int y = 0; y < rect.height; ++y)
            for (int x = 0; x < rect.width; ++x)
                ASSERT_EQ(part[static_cast<std::size_t>(y * rect.width + x)],
                          all[static_cast<std::size_t>((rect.y + y) * 600 + rect.x + x)]);
    }
}

TEST(ImageDeathTest, ReadingOutsideThePictureIsFatal) {
    const Image image = filled({10, 10}, grey(1));
    RGBA32 pixel;
    EXPECT_DEATH(image.read({10, 0, 1, 1}, &pixel, 1), "outside the picture");
}

TEST(Image, HalvesToTheRoundedMeanOfFourPixels) {
    for (const PixelSize size : kOddSizes) {
        const Image image = noise(size);
        const PixelSize half = image.levelSize(1);
        ASSERT_EQ(half, (PixelSize{(size.width + 1) / 2, (size.height + 1) / 2}));
        std::vector<RGBA32> pixels(static_cast<std::size_t>(half.area()));
        image.readLevel(1, {0, 0, half.width, half.height}, pixels.data(), half.width);
        for (int row = 0; row < half.height; ++row)
            for (int column = 0; column < half.width; ++column)
                ASSERT_EQ(pixels[static_cast<std::size_t>(row * half.width + column)],
                          meanOfFour(image, 2 * row, 2 * column))
                    << size.width << "x" << size.height << " at " << row << "," << column;
    }
}

TEST(Image, MipmapLevelsDoNotDependOnTheOrderOfComputation) {
    const PixelSize size{700, 200};
    const Image inOrder = noise(size);
    const Image atOnce = noise(size);
    for (int level = 1; level <= Tile::kLastLevel; ++level) {
        const PixelSize levelSize = inOrder.levelSize(level);
        std::vector<RGBA32> a(static_cast<std::size_t>(levelSize.area()));
        inOrder.readLevel(level, {0, 0, levelSize.width, levelSize.height}, a.data(), levelSize.width);
        if (level < 4)
            continue;
        std::vector<RGBA32> b(a.size());
        atOnce.readLevel(level, {0, 0, levelSize.width, levelSize.height}, b.data(), levelSize.width);
        EXPECT_EQ(a, b) << "level " << level;
    }
}

TEST(Image, TransformsAreAppliedLazilyInOrder) {
    const Image image = noise({300, 70});
    const Image inverted = image.transformed(std::make_shared<const Inverted>());
    EXPECT_EQ(inverted.pixel(65, 299).color, image.pixel(65, 299).color ^ 0xFFFFFF00);
    EXPECT_EQ(pixelsOf(inverted.transformed(std::make_shared<const Inverted>())), pixelsOf(image));
    EXPECT_EQ(pixelsOf(inverted.materialized()), pixelsOf(inverted));
}

/// Pixels that encode their position.
class Places final : public PixelSource {
public:
    void read(PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const override {
        for (int y = rect.y; y < rect.bottom(); ++y, out += stride)
            for (int x = rect.x; x < rect.right(); ++x)
                out[x - rect.x] = at(x, y);
    }
    static RGBA32 at(int x, int y) {
        return {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y),
                static_cast<std::uint8_t>(x / 256), 255};
    }
};

TEST(Image, OfAPixelSourceHasItsPixelsAndCanStoreThem) {
    for (const PixelSize size : kOddSizes) {
        const Image image = Image::fromSource(size, std::make_shared<const Places>());
        EXPECT_EQ(image.bandCount(), (size.height + Tile::kHeight - 1) / Tile::kHeight);
        EXPECT_EQ(image.storedBand(0), nullptr);
        const Image expected = painted(size, [](int row, int column) { return Places::at(column, row); });
        EXPECT_TRUE(samePixels(image, expected));
        EXPECT_TRUE(samePixels(image.materialized(), expected));
        EXPECT_NE(image.materialized().storedBand(0), nullptr);
        const auto inverted = std::make_shared<const Inverted>();
        EXPECT_TRUE(samePixels(image.transformed(inverted), expected.transformed(inverted)));
        EXPECT_TRUE(samePixels(image.withBands(filled(size, grey(7)).bands()), filled(size, grey(7))));
    }
}

TEST(ImageDeathTest, OfAPixelSourceHasNoBandsAndNoLevels) {
    const Image image = Image::fromSource({300, 100}, std::make_shared<const Places>());
    EXPECT_DEATH((void)image.bands(), "bands");
    RGBA32 pixel;
    EXPECT_DEATH(image.readLevel(1, {0, 0, 1, 1}, &pixel, 1), "levels");
}

TEST(Image, DifferenceIsTheTouchedTiles) {
    const Image before = noise({1000, 300});
    const Image after = withPixels(before, {{70, 300}}, grey(5));
    EXPECT_EQ(after.difference(before), (PixelRect{256, 64, 256, 64}));
    EXPECT_TRUE(before.difference(before.withSize({1, 1})).isEmpty());
    EXPECT_EQ(before.difference(noise({1000, 299})), (PixelRect{0, 0, 1000, 300}));
}

TEST(Image, DifferenceUnderTheSameTransformIsThatOfTheSources) {
    const auto transform = std::make_shared<const Inverted>();
    const Image image = noise({300, 70});
    EXPECT_TRUE(image.transformed(transform).difference(image.transformed(transform)).isEmpty());
    EXPECT_EQ(image.transformed(transform).difference(image), (PixelRect{0, 0, 300, 70}));
}

TEST(Image, AnEditSharesAllUntouchedTilesWithItsSource) {
    const Image before = noise({1000, 300});
    const Image after = withPixels(before, {{70, 300}}, grey(5));
    for (std::size_t band = 0; band < before.bands().size(); ++band)
        EXPECT_EQ(before.bands()[band] == after.bands()[band], band != 1) << "band " << band;
    for (std::size_t column = 0; column < 4; ++column)
        EXPECT_EQ(before.bands()[1]->tiles()[column] == after.bands()[1]->tiles()[column], column != 1);
}

TEST(ImageBuilder, RowsThatWereNeverSetAreTransparent) {
    ImageBuilder builder({300, 130});
    const std::vector<RGBA32> row(300, grey(7));
    builder.setRows(70, 1, row.data());
    const Image image = builder.finish();
    EXPECT_EQ(image.pixel(70, 299), grey(7));
    EXPECT_EQ(image.pixel(69, 299), RGBA32());
    EXPECT_EQ(image.pixel(129, 0), RGBA32());
}

} // namespace
} // namespace complexion
