// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/orientation.h"
#include "imaging/codecs/codec.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/png_files.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"

#include <algorithm>

namespace complexion {
namespace {

using namespace std::string_literals;
using test::clearCodedBands;
using test::decoded;
using test::encoded;
using test::Inversion;
using test::withSpot;

std::ptrdiff_t offsetOf(ByteView file, std::string_view chunk) {
    const auto found = std::ranges::search(file, chunk);
    return found.empty() ? -1 : found.begin() - file.begin();
}

bool hasChunk(ByteView file, std::string_view name) {
    return offsetOf(file, name) >= 0;
}

int colorTypeOf(ByteView file) {
    return file[25];
}

/// A picture of varied premultiplied colours and alpha values.
Image translucent(PixelSize size) {
    return painted(size, [](int row, int column) {
        const auto alpha = static_cast<std::uint8_t>(row * 7 + column);
        return RGBA32(premultiplied(static_cast<std::uint32_t>(row * 5 % 256), alpha),
                      premultiplied(static_cast<std::uint32_t>(column % 256), alpha),
                      premultiplied(90, alpha), alpha);
    });
}

/// The picture of straight RGBA samples.
Image imageOf(PixelSize size, const std::vector<std::uint8_t>& samples) {
    return painted(size, [&](int row, int column) {
        const std::uint8_t* p = samples.data() + 4 * (std::ptrdiff_t{row} * size.width + column);
        return RGBA32(premultiplied(p[0], p[3]), premultiplied(p[1], p[3]), premultiplied(p[2], p[3]), p[3]);
    });
}

class PngSizes : public testing::TestWithParam<PixelSize> {};

INSTANTIATE_TEST_SUITE_P(Odd, PngSizes, test::kOddSizes, test::nameOfSize);

TEST_P(PngSizes, OpaquePicturesArePreservedExactly) {
    for (const Image& image : {noise(GetParam()), filled(GetParam(), kSkin)}) {
        const Bytes file = encoded(kPngCodec, image);
        EXPECT_EQ(colorTypeOf(file), PNG_COLOR_TYPE_RGB);
        EXPECT_TRUE(samePixels(decoded(kPngCodec, file), image));
        EXPECT_TRUE(samePixels(imageOf(GetParam(), pngSamples(file)), image));
    }
}

TEST_P(PngSizes, TransparentPicturesArePreservedExactly) {
    const Image image = withSpot(translucent(GetParam()), {0, 0}, RGBA32(10, 20, 30, 40));
    const Bytes file = encoded(kPngCodec, image);
    EXPECT_EQ(colorTypeOf(file), PNG_COLOR_TYPE_RGB_ALPHA);
    EXPECT_TRUE(samePixels(decoded(kPngCodec, file), image));
    EXPECT_TRUE(samePixels(imageOf(GetParam(), pngSamples(file)), image));
}

TEST_P(PngSizes, CachedBandsGiveTheSameFile) {
    for (const Image& image : {noise(GetParam()), translucent(GetParam())}) {
        (void)encoded(kPngCodec, image);
        const Image edited = withSpot(image, {GetParam().height / 2, GetParam().width / 2});
        const Bytes warm = encoded(kPngCodec, edited);
        EXPECT_EQ(encoded(kPngCodec, edited), warm);
        clearCodedBands(edited);
        EXPECT_EQ(encoded(kPngCodec, edited), warm);
    }
}

TEST_P(PngSizes, InterlacedFilesAreDecoded) {
    const PngRecipe recipe = {.size = GetParam(), .interlaced = true};
    const std::vector<std::uint8_t> samples = rgbSamples(noise(GetParam()));
    EXPECT_TRUE(samePixels(decoded(kPngCodec, pngFile(recipe, samples)), noise(GetParam())));
}

TEST(PngCodec, AfterAnEditOnlyTouchedBandsAreCodedAgain) {
    const Image image = noise({300, 200}); // four bands
    const Result<FileContents> before = kPngCodec.encode(image);
    const Result<FileContents> after = kPngCodec.encode(withSpot(image, {70, 10}));
    ASSERT_EQ(before->parts.size(), 6U); // the bands, and what precedes and follows them
    ASSERT_EQ(after->parts.size(), 6U);
    for (const std::size_t untouched : {1U, 3U, 4U})
        EXPECT_EQ(before->parts[untouched], after->parts[untouched]);
    EXPECT_NE(*before->parts[2], *after->parts[2]);
}

TEST(PngCodec, OneTransparentPixelGivesAllBandsAlpha) {
    const Image opaque = noise({100, 300});
    const Bytes before = encoded(kPngCodec, opaque);
    for (const int row : {0, 150, 299}) {
        const Image holed = withSpot(opaque, {row, 50}, RGBA32());
        EXPECT_EQ(colorTypeOf(encoded(kPngCodec, holed)), PNG_COLOR_TYPE_RGB_ALPHA);
        EXPECT_TRUE(samePixels(decoded(kPngCodec, encoded(kPngCodec, holed)), holed));
        const Image closed = withSpot(holed, {row, 50}, opaque.pixel(row, 50));
        EXPECT_EQ(encoded(kPngCodec, closed), before);
    }
}

TEST(PngCodec, LazilyComputedPixelsAreCodedAndNotCached) {
    const Image image = noise({300, 100});
    const Bytes before = encoded(kPngCodec, image);
    const Image inverted = image.transformed(std::make_shared<Inversion>());
    EXPECT_TRUE(samePixels(decoded(kPngCodec, encoded(kPngCodec, inverted)), inverted.materialized()));
    EXPECT_EQ(encoded(kPngCodec, image), before);
}

TEST(PngCodec, GradientsCompressWell) {
    const Image slopes = painted({512, 512}, [](int row, int column) {
        return RGBA32(static_cast<std::uint8_t>((row + column) / 8), static_cast<std::uint8_t>(row / 2),
                      static_cast<std::uint8_t>(column / 2), 255);
    });
    EXPECT_LT(encoded(kPngCodec, slopes).size(), 512 * 512 * 3 / 20U);
}

TEST(PngCodec, WritesTheColorSpaceAndADensityOfOnePixelPerPoint) {
    const Bytes plain = encoded(kPngCodec, noise({30, 20}).withSize({15, 10}));
    EXPECT_TRUE(hasChunk(plain, "sRGB"));
    EXPECT_FALSE(hasChunk(plain, "iCCP"));
    const std::ptrdiff_t density = offsetOf(plain, "pHYs");
    ASSERT_GT(density, 0);
    // 2835 pixels per metre are 72.009 per inch.
    EXPECT_THAT(ByteView(plain).subspan(static_cast<std::size_t>(density) + 4, 9),
                testing::ElementsAre(0, 0, 11, 19, 0, 0, 11, 19, 1));
    EXPECT_NEAR(decoded(kPngCodec, plain).size().width, 30, 0.01);
    EXPECT_TRUE(decoded(kPngCodec, plain).profile().isSrgb());

    const ColorProfile wide = ColorProfile::fromIcc(wideProfile());
    const Bytes withProfile = encoded(kPngCodec, noise({30, 20}).withProfile(wide));
    EXPECT_FALSE(hasChunk(withProfile, "sRGB"));
    EXPECT_EQ(decoded(kPngCodec, withProfile).profile(), wide);
    EXPECT_TRUE(samePixels(decoded(kPngCodec, withProfile), noise({30, 20})));
}

TEST(PngCodec, NoPixelsAreAnError) {
    EXPECT_FALSE(kPngCodec.encode(Image()));
    EXPECT_FALSE(kPngCodec.encode(Image::empty({10, 10})));
}

TEST(PngCodec, PicturesAreTurnedUprightWhereverTheExifChunkIs) {
    std::vector<std::uint8_t> samples(40 * 24 * 3);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::uint8_t>(i * 7);
    const Image stored = decoded(kPngCodec, pngFile({.size = {40, 24}}, samples));
    for (int tag = 1; tag <= 8; ++tag)
        for (const bool atEnd : {false, true}) {
            Bytes exif = exifBlock(tag);
            PngRecipe recipe = {.size = {40, 24}};
            if (atEnd)
                recipe.atEnd = [&](png_structp png) {
                    png_write_chunk(png, reinterpret_cast<png_const_bytep>("eXIf"), exif.data(), exif.size());
                };
            else
                recipe.adjust = [&](png_structp png, png_infop info) {
                    png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), exif.data());
                };
            const Bytes file = pngFile(recipe, samples);
            const Image upright = decoded(kPngCodec, file);
            EXPECT_TRUE(samePixels(upright, turnedUpright(stored, orientationFromTag(tag)))) << tag;
            EXPECT_EQ(*kPngCodec.measure(file), std::vector{upright.pixelSize()});
        }
}

TEST(PngExif, InATextChunkTurnsThePicture) {
    const std::string plain = encodedAs(kPngCodec, noise({30, 20}));
    const Image stored = decoded(kPngCodec, viewOf(plain));
    for (const std::string& kind : {"exif"s, "APP1"s})
        for (int value = 1; value <= 8; ++value) {
            const std::string file =
                withChunks(plain, rawProfileChunkOf(kind, "Exif\0\0"s + cameraExif(value).bytes()));
            const Image expected = turnedUpright(stored, orientationFromTag(value));
            EXPECT_EQ(pixelsOf(decoded(kPngCodec, viewOf(file))), pixelsOf(expected)) << kind << value;
            EXPECT_EQ(*kPngCodec.measure(viewOf(file)), std::vector{expected.pixelSize()});
        }
}

TEST(PngExif, InItsOwnChunkHasPrecedenceOverATextChunk) {
    const std::string plain = encodedAs(kPngCodec, noise({30, 20}));
    const std::string file =
        withChunks(plain, rawProfileChunkOf("exif", "Exif\0\0"s + cameraExif(6).bytes()) +
                              pngChunkOf("eXIf", cameraExif(3).bytes()));
    EXPECT_EQ(pixelsOf(decoded(kPngCodec, viewOf(file))),
              pixelsOf(turnedUpright(decoded(kPngCodec, viewOf(plain)), Orientation::BottomRight)));
}

TEST(PngCodec, PointsFollowTheDensity) {
    const auto sizeAt = [](png_uint_32 density, int unit) {
        const auto chunk = [=](png_structp png, png_infop info) {
            png_set_pHYs(png, info, density, density, unit);
        };
        return decoded(kPngCodec,
                       pngFile({.size = {30, 10}, .adjust = chunk}, std::vector<std::uint8_t>(900)))
            .size();
    };
    // 11811 pixels per metre are 300 per inch, rounded; 2835 are 72, which is one point per pixel.
    EXPECT_EQ(sizeAt(11811, PNG_RESOLUTION_METER), (PointSize{30 * 72 / 300.0, 10 * 72 / 300.0}));
    EXPECT_EQ(sizeAt(2835, PNG_RESOLUTION_METER), (PointSize{30, 10}));
    EXPECT_NEAR(sizeAt(10'000, PNG_RESOLUTION_METER).width, 30 * 72 / 254.0, 1e-9);
    EXPECT_NEAR(sizeAt(10'010, PNG_RESOLUTION_METER).width, 30 * 72 / 254.254, 1e-9);
    EXPECT_EQ(sizeAt(11811, PNG_RESOLUTION_UNKNOWN), (PointSize{30, 10}));
    EXPECT_EQ(sizeAt(0, PNG_RESOLUTION_METER), (PointSize{30, 10}));
}

TEST(PngCodec, ATruncatedFileShowsItsFirstRows) {
    const std::vector<std::uint8_t> samples = rgbSamples(noise({100, 200}));
    for (const bool interlaced : {false, true}) {
        const Bytes whole = pngFile({.size = {100, 200}, .interlaced = interlaced}, samples);
        const Image part = decoded(kPngCodec, ByteView(whole).first(whole.size() / 2));
        ASSERT_EQ(part.pixelSize(), (PixelSize{100, 200}));
        EXPECT_EQ(part.pixel(0, 0), noise({100, 200}).pixel(0, 0));
        if (!interlaced) {
            EXPECT_EQ(part.pixel(60, 99), noise({100, 200}).pixel(60, 99));
            EXPECT_EQ(part.pixel(199, 99), RGBA32());
        }
        EXPECT_FALSE(kPngCodec.decode(ByteView(whole).first(60)));
        EXPECT_FALSE(kPngCodec.measure(ByteView(whole).first(20)));
        EXPECT_FALSE(kPngCodec.decode(ByteView(whole).first(8)));
    }
}

TEST(PngCodec, HugePicturesInSmallFilesAreRefused) {
    const auto headerOnly = [](png_uint_32 width, png_uint_32 height) {
        png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        Bytes file;
        appendTo(file, png);
        png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        const std::vector<png_byte> data = {0x78, 0x01, 0x63, 0, 0, 0, 0, 0};
        png_write_chunk(png, reinterpret_cast<png_const_bytep>("IDAT"), data.data(), data.size());
        png_destroy_write_struct(&png, &info);
        return file;
    };
    EXPECT_FALSE(kPngCodec.decode(headerOnly(30'000, 30'000)));
    EXPECT_FALSE(kPngCodec.decode(headerOnly(100'000, 100'000)));
    EXPECT_FALSE(kPngCodec.measure(headerOnly(100'000, 100'000)));
}

TEST(PngCodec, DamageIsHarmless) {
    const Bytes icc = wideProfile();
    Bytes exif = exifBlock(6);
    const auto chunks = [&](png_structp png, png_infop info) {
        png_set_iCCP(png, info, "wide", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                     static_cast<png_uint_32>(icc.size()));
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), exif.data());
    };
    const Bytes whole = pngFile({.size = {50, 40}, .interlaced = true, .adjust = chunks},
                                std::vector<std::uint8_t>(50 * 40 * 3, 77));
    test::expectRandomDamageIsHarmless(kPngCodec, whole, 3);
}

TEST(PngCodec, IsRecognisedByItsSignature) {
    EXPECT_EQ(codecForContent(encoded(kPngCodec, noise({3, 3}))), &kPngCodec);
    EXPECT_FALSE(codecForContent(Bytes{0x89, 'P', 'N', 'G'}));
}

} // namespace
} // namespace complexion
