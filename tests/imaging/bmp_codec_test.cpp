// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"

#include "imaging/containers/byte_order.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"

namespace complexion {
namespace {

using little_endian::append16;
using little_endian::append32;
using test::colorful;
using test::decoded;
using test::encoded;
using test::expectSamePixels;
using test::picture;
using test::throughFile;
using test::translucent;

const RGBA32 kRedPixel(255, 0, 0, 255);
const RGBA32 kGreen(0, 255, 0, 255);
const RGBA32 kBlue(0, 0, 255, 255);
const RGBA32 kWhite(255, 255, 255, 255);

struct BmpRecipe {
    int width = 1;
    int height = 1;
    int bits = 24;
    std::uint32_t compression = 0;
    Bytes palette; // or masks
    Bytes pixels;
    std::uint32_t pixelsPerMeter = 0;
};

/// A file with a 40-byte header.
Bytes bmpFile(const BmpRecipe& recipe) {
    Bytes file = {'B', 'M'};
    append32(file, 0);
    append32(file, 0);
    append32(file, static_cast<std::uint32_t>(14 + 40 + recipe.palette.size()));
    append32(file, 40);
    append32(file, static_cast<std::uint32_t>(recipe.width));
    append32(file, static_cast<std::uint32_t>(recipe.height));
    append16(file, 1);
    append16(file, static_cast<std::uint32_t>(recipe.bits));
    append32(file, recipe.compression);
    append32(file, 0);
    append32(file, recipe.pixelsPerMeter);
    append32(file, recipe.pixelsPerMeter);
    append32(file, 0);
    append32(file, 0);
    file.insert(file.end(), recipe.palette.begin(), recipe.palette.end());
    file.insert(file.end(), recipe.pixels.begin(), recipe.pixels.end());
    return file;
}

/// A colour table of red, green, blue and white, padded with black.
Bytes paletteOf(int bits) {
    Bytes palette = {0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0, 255, 255, 255, 0};
    palette.resize((std::size_t{1} << bits) * 4);
    return palette;
}

TEST(BmpCodec, PreservesEveryPixelAtEverySize) {
    for (const PixelSize size : test::kEdgeSizes) {
        expectSamePixels(throughFile(kBmpCodec, colorful(size)), colorful(size));
        expectSamePixels(throughFile(kBmpCodec, translucent(size)), translucent(size));
    }
}

TEST(BmpCodec, PreservesEveryPremultipliedValue) {
    const Image all = picture({256, 256}, [](int component, int alpha) {
        const auto value = test::byteOf(std::min(component, alpha));
        return RGBA32(value, value, value, test::byteOf(alpha));
    });
    expectSamePixels(throughFile(kBmpCodec, all), all);
}

TEST(BmpCodec, WritesOnePointPerPixel) {
    const Image read = throughFile(kBmpCodec, colorful({300, 200}).withSize({72, 48}));
    EXPECT_EQ(read.size(), (PointSize{300, 200}));
}

TEST(BmpCodec, KeepsTheProfile) {
    const Bytes icc = wideProfile();
    const Image image = colorful({70, 70}).withProfile(ColorProfile::fromIcc(icc));
    ASSERT_FALSE(image.profile().isSrgb());
    const Image read = throughFile(kBmpCodec, image);
    EXPECT_EQ(read.profile(), image.profile());
    expectSamePixels(read, image);
    EXPECT_TRUE(throughFile(kBmpCodec, colorful({7, 7})).profile().isSrgb());
}

TEST(BmpCodec, OnlyChangedBandsAreCodedAgain) {
    const Image image = colorful({300, 300});
    const auto first = kBmpCodec.encode(image);
    BandList bands = image.bands();
    bands[2] = colorful({300, 64}).bands().front();
    const Image edited = image.withBands(bands);
    const auto second = kBmpCodec.encode(edited);
    ASSERT_TRUE(first && second);
    ASSERT_EQ(first->parts.size(), 6U); // the headers and five bands, bottom first
    for (const std::size_t same : {1, 2, 4, 5})
        EXPECT_EQ(first->parts[same], second->parts[same]) << same;
    EXPECT_NE(first->parts[3], second->parts[3]);
    expectSamePixels(decoded(kBmpCodec, second->joined()), edited);
}

TEST(BmpCodec, ReadsPaletteIndicesOfEveryDepth) {
    struct Case {
        int bits;
        Bytes row;
    };
    for (const Case& one : {Case{1, {0x20, 0, 0, 0}}, Case{2, {0x06, 0x40, 0, 0}},
                            Case{4, {0x00, 0x12, 0, 0}}, Case{8, {0, 0, 1, 2, 1, 0, 0, 0}}}) {
        const int width = one.bits == 8 ? 5 : 4;
        const Image image =
            decoded(kBmpCodec, bmpFile({width, 1, one.bits, 0, paletteOf(one.bits), one.row}));
        EXPECT_EQ(image.pixel(0, 0), kRedPixel) << one.bits;
        EXPECT_EQ(image.pixel(0, 1), kRedPixel) << one.bits;
        EXPECT_EQ(image.pixel(0, 2), kGreen) << one.bits;
        EXPECT_EQ(image.pixel(0, 3), one.bits == 1 ? kRedPixel : kBlue) << one.bits;
    }
}

TEST(BmpCodec, ScalesFiveAndSixBitsToTheFullRange) {
    const Bytes words = {0x00, 0x7C, 0xE0, 0x03, 0x10, 0x00, 0xFF, 0xFF};
    const Image image = decoded(kBmpCodec, bmpFile({4, 1, 16, 0, {}, words}));
    EXPECT_EQ(image.pixel(0, 0), kRedPixel);
    EXPECT_EQ(image.pixel(0, 1), kGreen);
    EXPECT_EQ(image.pixel(0, 2), RGBA32(0, 0, 132, 255)); // 16 / 31
    EXPECT_EQ(image.pixel(0, 3), kWhite);

    const Bytes masks = {0x00, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0x00, 0, 0};
    const Image fields = decoded(kBmpCodec, bmpFile({2, 1, 16, 3, masks, {0x00, 0xF8, 0xE0, 0x07}}));
    EXPECT_EQ(fields.pixel(0, 0), kRedPixel);
    EXPECT_EQ(fields.pixel(0, 1), kGreen);
}

TEST(BmpCodec, TheFourthByteIsAlphaOnlyWithAMask) {
    const Bytes pixel = {10, 20, 30, 0x80};
    EXPECT_EQ(decoded(kBmpCodec, bmpFile({1, 1, 32, 0, {}, pixel})).pixel(0, 0), RGBA32(30, 20, 10, 255));
    const Bytes masks = {0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255};
    EXPECT_EQ(decoded(kBmpCodec, bmpFile({1, 1, 32, 6, masks, pixel})).pixel(0, 0), RGBA32(15, 10, 5, 128));
}

TEST(BmpCodec, RowsAreBottomUpUnlessTheHeightIsNegative) {
    const Bytes rows = {0, 0, 255, 0, 255, 0, 0, 0}; // red, then blue
    const Image up = decoded(kBmpCodec, bmpFile({1, 2, 24, 0, {}, rows}));
    EXPECT_EQ(up.pixel(0, 0), kBlue);
    const Image down = decoded(kBmpCodec, bmpFile({1, -2, 24, 0, {}, rows}));
    EXPECT_EQ(down.pixel(0, 0), kRedPixel);
    EXPECT_EQ(down.pixelSize(), (PixelSize{1, 2}));
}

TEST(BmpCodec, ReadsRunsLiteralsAndDeltas) {
    // A run of two; three literal pixels, padded; the end of the row; a delta of one column; a run of one;
    // the end.
    const Bytes code = {2, 2, 0, 3, 1, 1, 3, 0, 0, 0, 0, 2, 1, 0, 1, 3, 0, 1};
    const Image image = decoded(kBmpCodec, bmpFile({5, 3, 8, 1, paletteOf(8), code}));
    EXPECT_THAT(pixelsOf(image),
                testing::ElementsAre(kRedPixel, kRedPixel, kRedPixel, kRedPixel, kRedPixel, kRedPixel, kWhite,
                                     kRedPixel, kRedPixel, kRedPixel, kBlue, kBlue, kGreen, kGreen, kWhite));
}

TEST(BmpCodec, ReadsRunsOfFourBits) {
    const Bytes code = {5, 0x12, 0, 0, 0, 3, 0x32, 0x10, 0, 1}; // an alternating run; three literal pixels
    const Image image = decoded(kBmpCodec, bmpFile({5, 2, 4, 2, paletteOf(4), code}));
    EXPECT_THAT(pixelsOf(image), testing::ElementsAre(kWhite, kBlue, kGreen, kRedPixel, kRedPixel, kGreen,
                                                      kBlue, kGreen, kBlue, kGreen));
}

TEST(BmpCodec, TheDensityGivesTheSizeInPoints) {
    const Image image = decoded(kBmpCodec, bmpFile({1, 1, 24, 0, {}, {1, 2, 3, 0}, 11811})); // 300 per inch
    EXPECT_DOUBLE_EQ(image.size().width, 0.24);
    const Image odd = decoded(kBmpCodec, bmpFile({1, 1, 24, 0, {}, {1, 2, 3, 0}, 1000}));
    EXPECT_DOUBLE_EQ(odd.size().width, 72 / 25.4);
}

TEST(BmpCodec, MeasuresWhatItDecodes) {
    const auto sizes = kBmpCodec.measure(encoded(kBmpCodec, colorful({31, 17})));
    ASSERT_TRUE(sizes);
    EXPECT_THAT(*sizes, testing::ElementsAre(PixelSize{31, 17}));
    EXPECT_FALSE(kBmpCodec.measure(Bytes{'B', 'M'}));
}

TEST(BmpCodec, IsRecognisedByItsHeader) {
    const Bytes file = encoded(kBmpCodec, colorful({3, 3}));
    EXPECT_EQ(codecForContent(file), &kBmpCodec);
    const std::string_view text = "BM is not enough to be a picture";
    EXPECT_FALSE(codecForContent({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}));
}

TEST(BmpCodec, TruncatedFilesShowTheirFirstRows) {
    const Image image = colorful({20, 200});
    const Bytes file = encoded(kBmpCodec, image);
    test::expectTruncationIsHarmless(kBmpCodec, file, {20, 200});
    const Image half = decoded(kBmpCodec, ByteView(file).first(138 + 100 * 80));
    EXPECT_EQ(half.pixel(99, 0), RGBA32());
    for (int y = 100; y < 200; ++y)
        ASSERT_EQ(half.pixel(y, 7), image.pixel(y, 7)) << y;
}

TEST(BmpCodec, DamagedHeadersAreHarmless) {
    test::expectDamageIsHarmless(kBmpCodec, encoded(kBmpCodec, translucent({5, 5})), 138);
    const Bytes code = {2, 2, 0, 3, 1, 1, 3, 0, 0, 0, 0, 2, 1, 0, 1, 3, 0, 1};
    const Bytes runs = bmpFile({5, 3, 8, 1, paletteOf(8), code});
    test::expectDamageIsHarmless(kBmpCodec, runs, 54);
    for (std::size_t i = runs.size() - code.size(); i < runs.size(); ++i)
        for (int value = 0; value < 256; ++value) {
            Bytes damaged = runs;
            damaged[i] = test::byteOf(value);
            (void)kBmpCodec.decode(damaged);
        }
}

TEST(BmpCodec, HugePicturesInSmallFilesAreRefused) {
    EXPECT_FALSE(kBmpCodec.decode(bmpFile({30000, 30000, 24, 0, {}, Bytes(100)})));
    EXPECT_FALSE(kBmpCodec.decode(bmpFile({30000, 30000, 8, 1, paletteOf(8), {0, 1}})));
    EXPECT_FALSE(kBmpCodec.decode(bmpFile({0x7FFFFFFF, 0x7FFFFFFF, 24, 0, {}, Bytes(100)})));
    EXPECT_FALSE(kBmpCodec.decode(bmpFile({5, INT32_MIN, 24, 0, {}, Bytes(100)})));
    EXPECT_FALSE(kBmpCodec.decode(bmpFile({0, 5, 24, 0, {}, Bytes(100)})));
}

TEST(BmpCodec, AnImageWithoutPixelsIsRefused) {
    EXPECT_FALSE(kBmpCodec.encode(Image::empty({5, 5})));
}

} // namespace
} // namespace complexion
