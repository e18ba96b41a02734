// SPDX-License-Identifier: GPL-3.0-or-later

// Tiling, parallel and lazy computation and caching give bit for bit the results of plain loops over packed
// rows, for sizes around those of tiles and for random edits.
#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "imaging/photo_effects.h"
#include "tests/fakes/pictures.h"
#include "tests/imaging/plain_repair.h"

#include <gtest/gtest.h>

#include <random>

namespace complexion {
namespace {

constexpr PixelSize kWide{65500, 3}; // the maximum width of all formats

std::vector<PixelSize> sizes() {
    std::vector<PixelSize> all = {{1, 1}, {300, 1}, {1, 300}, kWide};
    for (const int height : {63, 64, 65})
        for (const int width : {255, 256, 257})
            all.push_back({width, height});
    std::mt19937 random(7);
    for (int i = 0; i < 6; ++i)
        all.push_back({static_cast<int>(random() % 700) + 1, static_cast<int>(random() % 200) + 1});
    return all;
}

/// Packed rows, top row first.
struct Plain {
    PixelSize size;
    std::vector<RGBA32> pixels;

    RGBA32& at(std::int64_t row, std::int64_t column) {
        return pixels[static_cast<std::size_t>(row * size.width + column)];
    }
    const RGBA32& at(std::int64_t row, std::int64_t column) const {
        return pixels[static_cast<std::size_t>(row * size.width + column)];
    }
    Image image() const { return Image::fromPixels(size, pixels); }
};

/// Skin with grain, so that repairs consist of many small spots.
Plain grainySkin(PixelSize size, bool opaque = true) {
    Plain plain{size, {}};
    std::mt19937 random(static_cast<unsigned>(size.width * 1000 + size.height));
    for (std::int64_t i = 0; i < size.area(); ++i) {
        const std::uint32_t grain = random();
        const auto alpha = static_cast<std::uint8_t>(opaque ? 255 : grain >> 24);
        const auto part = [&](std::uint32_t level) { return premultiplied(level, alpha); };
        plain.pixels.emplace_back(part(180 + grain % 40), part(140 + grain / 40 % 40),
                                  part(120 + grain / 1600 % 40), alpha);
    }
    return plain;
}

testing::AssertionResult equal(const Image& image, const Plain& plain) {
    return samePixels(image, plain.image());
}

/// Performs random repairs, and calls `after` with the image and the expected rows after each.
template <class After>
void editAtRandom(PixelSize size, int clicks, const After& after) {
    Plain plain = grainySkin(size);
    Image image = plain.image();
    std::mt19937 random(11);
    for (int i = 0; i < clicks; ++i) {
        const int shorter = std::min(size.width, size.height);
        const std::int64_t radius =
            shorter < 2 ? 1 : static_cast<int>(random() % static_cast<unsigned>(shorter / 2)) + 1;
        const std::int64_t row =
            radius + static_cast<std::int64_t>(random() % 1000) * (size.height - 2 * radius) / 1000;
        const std::int64_t column =
            radius + static_cast<std::int64_t>(random() % 1000) * (size.width - 2 * radius) / 1000;
        const int threshold = static_cast<int>(random() % 12);
        const Point point{static_cast<double>(column) + 0.5, static_cast<double>(size.height - row) - 0.5};
        const auto repaired =
            ImageTools::RemovePimpleFromImage(image, point, radius, kAutodetectColor, {}, threshold);
        ASSERT_TRUE(repaired);
        image = *repaired;
        if (row >= radius && column >= radius && row + radius <= size.height && column + radius <= size.width)
            repairPlainly(plain.pixels, plain.size, row, column, radius, threshold);
        after(image, plain);
    }
}

Bytes encoded(const Image& image, std::string_view format) {
    const Result<FileContents> file = codecForExtension(format)->encode(image);
    EXPECT_TRUE(static_cast<bool>(file)) << format;
    return file ? file->joined() : Bytes();
}

TEST(PlainResults, ReadingTilesReturnsTheOriginalRows) {
    std::mt19937 random(3);
    for (const PixelSize size : sizes()) {
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        const Plain plain = grainySkin(size, false);
        const Image image = plain.image();
        for (int i = 0; i < 10; ++i) {
            PixelRect rect{static_cast<int>(random() % static_cast<unsigned>(size.width)),
                           static_cast<int>(random() % static_cast<unsigned>(size.height)), 0, 0};
            rect.width = static_cast<int>(random() % static_cast<unsigned>(size.width - rect.x)) + 1;
            rect.height = static_cast<int>(random() % static_cast<unsigned>(size.height - rect.y)) + 1;
            std::vector<RGBA32> read(static_cast<std::size_t>(rect.width) *
                                     static_cast<std::size_t>(rect.height));
            image.read(rect, read.data(), rect.width);
            auto next = read.begin();
            for (int row = rect.y; row < rect.bottom(); ++row, next += rect.width)
                ASSERT_TRUE(std::equal(next, next + rect.width, &plain.at(row, rect.x))) << row;
        }
    }
}

TEST(PlainResults, MipmapLevelsEqualTheHalvedPicture) {
    for (const PixelSize size : sizes()) {
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        const Plain plain = grainySkin(size, false);
        const Image image = plain.image();
        PixelBlock whole = PixelBlock::uninitialized(size);
        std::ranges::copy(plain.pixels, whole.pixels.get());
        for (int level = 1; level <= Tile::kLastLevel; ++level) {
            whole = halved(whole);
            const PixelSize levelSize = image.levelSize(level);
            ASSERT_EQ(levelSize, whole.size);
            std::vector<RGBA32> read(static_cast<std::size_t>(levelSize.area()));
            image.readLevel(level, {0, 0, levelSize.width, levelSize.height}, read.data(), levelSize.width);
            ASSERT_TRUE(std::equal(read.begin(), read.end(), whole.pixels.get())) << "level " << level;
        }
    }
}

TEST(PlainResults, GreyAndEffectsEqualALoopOverAllPixels) {
    for (const PixelSize size : sizes())
        for (const bool opaque : {true, false}) {
            SCOPED_TRACE(testing::Message()
                         << size.width << " by " << size.height << (opaque ? "" : ", translucent"));
            const Plain plain = grainySkin(size, opaque);
            Plain grey = plain;
            for (RGBA32& pixel : grey.pixels)
                pixel = complexion::grey(plainGrey(pixel));
            ASSERT_TRUE(equal(ImageTools::convertToGrayScale(plain.image()), grey));
            for (const char* name : {"Chrome", "Noir", "Transfer"}) {
                Plain through = plain;
                for (RGBA32& pixel : through.pixels)
                    photoEffect(name)->apply({&pixel, 1});
                const Image lazy = ImageTools::ApplyEffectOnImage(plain.image(), name);
                ASSERT_TRUE(equal(lazy, through)) << name;
                ASSERT_TRUE(equal(lazy.materialized(), through)) << name;
            }
        }
}

TEST(PlainResults, RepairsEqualTheOracles) {
    for (const PixelSize size : sizes()) {
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        editAtRandom(size, size == kWide ? 3 : 8,
                     [](const Image& image, const Plain& plain) { ASSERT_TRUE(equal(image, plain)); });
    }
}

TEST(PlainResults, FilesFromCachedBandsEqualThoseOfANewImage) {
    for (const PixelSize size : sizes()) {
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        editAtRandom(size, 3, [](const Image& image, const Plain& plain) {
            for (const std::string_view format : {"png", "tiff", "bmp"})
                ASSERT_TRUE(encoded(image, format) == encoded(plain.image(), format)) << format;
        });
        // The Huffman tables of a JPEG file are kept from the first encoding, so only the pixels are
        // compared.
        editAtRandom(size, 3, [](const Image& image, const Plain& plain) {
            const Result<Image> cached = kJpegCodec.decode(encoded(image, "jpg"));
            const Result<Image> fresh = kJpegCodec.decode(encoded(plain.image(), "jpg"));
            ASSERT_TRUE(cached && fresh);
            ASSERT_TRUE(samePixels(*cached, *fresh));
        });
    }
}

TEST(PlainResults, LosslessFilesPreserveEditedPictures) {
    for (const PixelSize size : sizes()) {
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        editAtRandom(size, 2, [](const Image& image, const Plain& plain) {
            for (const std::string_view format : {"png", "tiff", "bmp"}) {
                const Result<Image> decoded = codecForExtension(format)->decode(encoded(image, format));
                ASSERT_TRUE(static_cast<bool>(decoded)) << format;
                ASSERT_TRUE(equal(*decoded, plain)) << format;
            }
        });
    }
}

TEST(PlainResults, TurningMovesEveryPixel) {
    for (const PixelSize size : sizes()) {
        if (size.width > 1000)
            continue; // turned by 90 degrees, it would be slow under a sanitizer
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        const Plain upright = grainySkin(size, false);
        for (int tag = 1; tag <= 8; ++tag) {
            const auto orientation = static_cast<Orientation>(tag);
            const Plain stored = [&] {
                Plain turned{uprightSize(size, orientation), upright.pixels};
                // Whether the vertical and the horizontal axis are reversed (TIFF 6.0, Orientation).
                const bool backDown = tag == 3 || tag == 4 || tag == 6 || tag == 7;
                const bool backAlong = tag == 2 || tag == 3 || tag == 7 || tag == 8;
                for (int row = 0; row < size.height; ++row)
                    for (int column = 0; column < size.width; ++column) {
                        const int along = swapsSides(orientation) ? row : column;
                        const int down = swapsSides(orientation) ? column : row;
                        turned.at(backDown ? turned.size.height - 1 - down : down,
                                  backAlong ? turned.size.width - 1 - along : along) =
                            upright.at(row, column);
                    }
                return turned;
            }();
            ASSERT_TRUE(equal(turnedForStorage(upright.image(), orientation), stored)) << tag;
            ASSERT_TRUE(equal(turnedUpright(stored.image(), orientation), upright)) << tag;
        }
    }
}

TEST(PlainResults, HalvedToEqualsHalving) {
    const Plain plain = grainySkin({1300, 900}, false);
    const Image image = plain.image();
    EXPECT_TRUE(halvedTo(image, 651).isSameObject(image));
    const Image half = halvedTo(image, 650);
    PixelBlock whole = PixelBlock::uninitialized(plain.size);
    std::ranges::copy(plain.pixels, whole.pixels.get());
    const PixelBlock expected = halved(whole);
    EXPECT_TRUE(
        samePixels(half, Image::fromPixels(expected.size, {expected.pixels.get(),
                                                           expected.pixels.get() + expected.size.area()})));
}

} // namespace
} // namespace complexion
