// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"
#include "imaging/orientation.h"
#include "imaging/pixel_buffer.h"
#include "tests/fakes/coded_files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/png_files.h"
#include "tests/fakes/profiles.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>

namespace complexion {
namespace {

Bytes encoded(const Image& image) {
    const Result<FileContents> file = kPngCodec.encode(image);
    EXPECT_TRUE(file) << file.error().message;
    return joined(*file);
}

Image decoded(ByteView file) {
    const Result<Image> image = kPngCodec.decode(file);
    EXPECT_TRUE(image) << image.error().message;
    return image ? *image : Image();
}

std::ptrdiff_t placeOf(ByteView file, std::string_view chunk) {
    const auto found = std::ranges::search(file, chunk);
    return found.empty() ? -1 : found.begin() - file.begin();
}

bool hasChunk(ByteView file, std::string_view name) {
    return placeOf(file, name) >= 0;
}

int colorTypeOf(ByteView file) {
    return file[25];
}

/// Every alpha and every colour, premultiplied.
Image glassy(PixelSize size) {
    return painted(size, [](int row, int column) {
        const auto alpha = static_cast<std::uint8_t>(row * 7 + column);
        return RGBA32(premultiplied(static_cast<std::uint32_t>(row * 5 % 256), alpha),
                      premultiplied(static_cast<std::uint32_t>(column % 256), alpha),
                      premultiplied(90, alpha), alpha);
    });
}

Image withSpot(const Image& image, PixelPosition position, RGBA32 color = RGBA32(255, 0, 0, 255)) {
    Result<PixelBuffer> buffer = PixelBuffer::open(image);
    const std::vector<PixelPosition> spot = {position};
    buffer->paint(spot, color);
    return std::move(*buffer).close();
}

void forgetCodedBands(const Image& image) {
    for (int i = 0; i < image.bandCount(); ++i)
        image.storedBand(i)->encoded().set(nullptr);
}

/// The picture of an RGBA file's samples.
Image imageOf(PixelSize size, const std::vector<std::uint8_t>& samples) {
    return painted(size, [&](int row, int column) {
        const std::uint8_t* p = samples.data() + 4 * (std::ptrdiff_t{row} * size.width + column);
        return RGBA32(premultiplied(p[0], p[3]), premultiplied(p[1], p[3]), premultiplied(p[2], p[3]), p[3]);
    });
}

class PngSizes : public testing::TestWithParam<PixelSize> {};

INSTANTIATE_TEST_SUITE_P(Odd, PngSizes,
                         testing::Values(PixelSize{1, 1}, PixelSize{1, 200}, PixelSize{200, 1},
                                         PixelSize{7, 9}, PixelSize{255, 63}, PixelSize{256, 64},
                                         PixelSize{257, 65}, PixelSize{300, 700}, PixelSize{65, 1100}),
                         [](const auto& test) {
                             return std::to_string(test.param.width) + "x" +
                                    std::to_string(test.param.height);
                         });

TEST_P(PngSizes, OpaquePicturesComeBackBitForBit) {
    for (const Image& image : {noise(GetParam()), filled(GetParam(), kSkin)}) {
        const Bytes file = encoded(image);
        EXPECT_EQ(colorTypeOf(file), PNG_COLOR_TYPE_RGB);
        EXPECT_TRUE(samePixels(decoded(file), image));
        EXPECT_TRUE(samePixels(imageOf(GetParam(), pngSamples(file)), image));
    }
}

TEST_P(PngSizes, TransparentPicturesComeBackAsTheyAreStored) {
    const Image image = withSpot(glassy(GetParam()), {0, 0}, RGBA32(10, 20, 30, 40));
    const Bytes file = encoded(image);
    EXPECT_EQ(colorTypeOf(file), PNG_COLOR_TYPE_RGB_ALPHA);
    EXPECT_TRUE(samePixels(decoded(file), image));
    EXPECT_TRUE(samePixels(imageOf(GetParam(), pngSamples(file)), image));
}

TEST_P(PngSizes, WhatIsKeptOfBandsGivesTheSameFile) {
    for (const Image& image : {noise(GetParam()), glassy(GetParam())}) {
        (void)encoded(image);
        const Image edited = withSpot(image, {GetParam().height / 2, GetParam().width / 2});
        const Bytes warm = encoded(edited);
        EXPECT_EQ(encoded(edited), warm);
        forgetCodedBands(edited);
        EXPECT_EQ(encoded(edited), warm);
    }
}

TEST_P(PngSizes, InterlacedFilesAreTheLibrarys) {
    const PngRecipe recipe = {.size = GetParam(), .interlaced = true};
    std::vector<std::uint8_t> samples;
    for (const RGBA32 pixel : pixelsOf(noise(GetParam())))
        samples.insert(samples.end(), {pixel.red(), pixel.green(), pixel.blue()});
    EXPECT_TRUE(samePixels(decoded(pngFile(recipe, samples)), noise(GetParam())));
}

TEST(PngCodec, AfterAnEditOnlyTouchedBandsAreCodedAgain) {
    const Image image = noise({300, 200}); // four bands
    const Result<FileContents> before = kPngCodec.encode(image);
    const Result<FileContents> after = kPngCodec.encode(withSpot(image, {70, 10}));
    ASSERT_EQ(before->parts.size(), 6U); // what is before and behind the bands
    ASSERT_EQ(after->parts.size(), 6U);
    for (const std::size_t untouched : {1U, 3U, 4U})
        EXPECT_EQ(before->parts[untouched], after->parts[untouched]);
    EXPECT_NE(*before->parts[2], *after->parts[2]);
}

TEST(PngCodec, ATransparentPixelChangesHowAllBandsAreCodedAndBack) {
    const Image opaque = noise({100, 300});
    const Bytes before = encoded(opaque);
    for (const int row : {0, 150, 299}) {
        const Image holed = withSpot(opaque, {row, 50}, RGBA32());
        EXPECT_EQ(colorTypeOf(encoded(holed)), PNG_COLOR_TYPE_RGB_ALPHA);
        EXPECT_TRUE(samePixels(decoded(encoded(holed)), holed));
        const Image closed = withSpot(holed, {row, 50}, opaque.pixel(row, 50));
        EXPECT_EQ(encoded(closed), before);
    }
}

class Inversion : public PixelTransform {
public:
    void apply(std::span<RGBA32> pixels) const override {
        for (RGBA32& pixel : pixels)
            pixel.color ^= 0xFFFFFF00;
    }
};

TEST(PngCodec, ComputedPixelsAreCodedAndNothingOfThemIsKept) {
    const Image image = noise({300, 100});
    const Bytes before = encoded(image);
    const Image inverted = image.transformed(std::make_shared<Inversion>());
    EXPECT_TRUE(samePixels(decoded(encoded(inverted)), inverted.materialized()));
    EXPECT_EQ(encoded(image), before);
}

TEST(PngCodec, APhotosGradientsPackWell) {
    const Image slopes = painted({512, 512}, [](int row, int column) {
        return RGBA32(static_cast<std::uint8_t>((row + column) / 8), static_cast<std::uint8_t>(row / 2),
                      static_cast<std::uint8_t>(column / 2), 255);
    });
    EXPECT_LT(encoded(slopes).size(), 512 * 512 * 3 / 20U);
}

TEST(PngCodec, TheFileStatesItsSpaceAndOnePixelAPoint) {
    const Bytes plain = encoded(noise({30, 20}).withSize({15, 10}));
    EXPECT_TRUE(hasChunk(plain, "sRGB"));
    EXPECT_FALSE(hasChunk(plain, "iCCP"));
    const std::ptrdiff_t density = placeOf(plain, "pHYs");
    ASSERT_GT(density, 0);
    // 2835 pixels a metre are 72.009 an inch.
    EXPECT_THAT(ByteView(plain).subspan(static_cast<std::size_t>(density) + 4, 9),
                testing::ElementsAre(0, 0, 11, 19, 0, 0, 11, 19, 1));
    EXPECT_NEAR(decoded(plain).size().width, 30, 0.01);
    EXPECT_TRUE(decoded(plain).profile().isSrgb());

    const ColorProfile wide = ColorProfile::fromIcc(wideProfile());
    const Bytes withProfile = encoded(noise({30, 20}).withProfile(wide));
    EXPECT_FALSE(hasChunk(withProfile, "sRGB"));
    EXPECT_EQ(decoded(withProfile).profile(), wide);
    EXPECT_TRUE(samePixels(decoded(withProfile), noise({30, 20})));
}

TEST(PngCodec, NoPixelsAreAnError) {
    EXPECT_FALSE(kPngCodec.encode(Image()));
    EXPECT_FALSE(kPngCodec.encode(Image::empty({10, 10})));
}

TEST(PngCodec, AllDepthsOfGreySpanBlackToWhite) {
    for (const int depth : {1, 2, 4, 8, 16}) {
        const PngRecipe recipe = {.size = {2, 1}, .colorType = PNG_COLOR_TYPE_GRAY, .depth = depth};
        const std::uint8_t first = depth < 8 ? static_cast<std::uint8_t>(255U << (8 - depth)) : 255;
        const std::vector<std::uint8_t> whiteThenBlack = {first, depth == 16 ? first : std::uint8_t{0}, 0, 0};
        const Image image = decoded(pngFile(recipe, whiteThenBlack));
        EXPECT_EQ(image.pixel(0, 0), grey(255)) << depth;
        EXPECT_EQ(image.pixel(0, 1), grey(0)) << depth;
    }
}

TEST(PngCodec, SixteenBitsAreRoundedToEight) {
    const PngRecipe recipe = {.size = {2, 1}, .depth = 16};
    // 0x7FFF / 257 is 127.498; 0x8000 / 257 is 127.502.
    const std::vector<std::uint8_t> samples = {0x7F, 0xFF, 0x80, 0x00, 0x00, 0x80,
                                               0x00, 0x81, 0xFF, 0x7E, 0xFF, 0x7F};
    const Image image = decoded(pngFile(recipe, samples));
    EXPECT_EQ(image.pixel(0, 0), RGBA32(127, 128, 0, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(1, 254, 255, 255));
}

TEST(PngCodec, PalettesGiveTheirColorsAndTransparency) {
    const PngRecipe recipe = {.size = {4, 1},
                              .colorType = PNG_COLOR_TYPE_PALETTE,
                              .depth = 2,
                              .adjust = [](png_structp png, png_infop info) {
                                  const std::array<png_color, 3> palette = {
                                      {{255, 0, 0}, {0, 200, 0}, {9, 9, 255}}};
                                  const std::array<png_byte, 2> alpha = {255, 128};
                                  png_set_PLTE(png, info, palette.data(), 3);
                                  png_set_tRNS(png, info, alpha.data(), 2, nullptr);
                              }};
    const Image image = decoded(pngFile(recipe, {0b00011000}));
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 0, 0, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 100, 0, 128));
    EXPECT_EQ(image.pixel(0, 2), RGBA32(9, 9, 255, 255));
}

TEST(PngCodec, AKeyColorIsTransparent) {
    const PngRecipe recipe = {.size = {2, 1}, .adjust = [](png_structp png, png_infop info) {
                                  png_color_16 key = {};
                                  key.red = 10;
                                  key.green = 20;
                                  key.blue = 30;
                                  png_set_tRNS(png, info, nullptr, 0, &key);
                              }};
    const Image image = decoded(pngFile(recipe, {10, 20, 30, 10, 20, 31}));
    EXPECT_EQ(image.pixel(0, 0), RGBA32());
    EXPECT_EQ(image.pixel(0, 1), RGBA32(10, 20, 31, 255));
}

TEST(PngCodec, AlphaIsStoredPremultiplied) {
    const PngRecipe rgba = {.size = {1, 1}, .colorType = PNG_COLOR_TYPE_RGB_ALPHA};
    EXPECT_EQ(decoded(pngFile(rgba, {200, 100, 255, 51})).pixel(0, 0), RGBA32(40, 20, 51, 51));
    const PngRecipe greyAlpha = {.size = {1, 1}, .colorType = PNG_COLOR_TYPE_GRAY_ALPHA, .depth = 16};
    EXPECT_EQ(decoded(pngFile(greyAlpha, {200, 200, 51, 51})).pixel(0, 0), RGBA32(40, 40, 40, 51));
}

Bytes greyFile(const std::function<void(png_structp, png_infop)>& adjust, std::uint8_t level) {
    return pngFile({.size = {1, 1}, .colorType = PNG_COLOR_TYPE_GRAY, .adjust = adjust}, {level});
}

TEST(PngCodec, GreyInASpaceOfItsOwnBecomesSrgb) {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1);
    const Bytes icc = bytesOfProfile(cmsCreateGrayProfile(&white, linear));
    cmsFreeToneCurve(linear);
    const auto embed = [&](png_structp png, png_infop info) {
        png_set_iCCP(png, info, "grey", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                     static_cast<png_uint_32>(icc.size()));
    };
    const Image image = decoded(greyFile(embed, 55));
    // Linear 55 / 255 is 0.5015 of sRGB: 1.055 * (55 / 255)^(1 / 2.4) - 0.055.
    EXPECT_NEAR(image.pixel(0, 0).green(), 128, 1);
    EXPECT_TRUE(image.profile().isSrgb());
}

/// sRGB's grey that a picture's own grey looks like.
double asSrgb(const ColorProfile& profile, double level) {
    cmsHPROFILE own =
        cmsOpenProfileFromMem(profile.icc().data(), static_cast<cmsUInt32Number>(profile.icc().size()));
    cmsHPROFILE srgb = cmsCreate_sRGBProfile();
    cmsHTRANSFORM transform =
        cmsCreateTransform(own, TYPE_RGB_DBL, srgb, TYPE_RGB_DBL, INTENT_RELATIVE_COLORIMETRIC, 0);
    const std::array<double, 3> in = {level, level, level};
    std::array<double, 3> out = {};
    cmsDoTransform(transform, in.data(), out.data(), 1);
    cmsDeleteTransform(transform);
    cmsCloseProfile(srgb);
    cmsCloseProfile(own);
    return out[1];
}

TEST(PngCodec, AGammaOfItsOwnBecomesAProfileAndLeavesPixelsAlone) {
    const auto linear = [](png_structp png, png_infop info) { png_set_gAMA(png, info, 1); };
    const Bytes file = pngFile({.size = {1, 1}, .adjust = linear}, {55, 55, 55});
    const Image image = decoded(file);
    EXPECT_EQ(image.pixel(0, 0), grey(55));
    ASSERT_FALSE(image.profile().isSrgb());
    EXPECT_NEAR(asSrgb(image.profile(), 55 / 255.0), 128 / 255.0, 0.005);
    EXPECT_EQ(decoded(file).profile(), image.profile());
    EXPECT_EQ(decoded(encoded(image)).profile(), image.profile());
}

TEST(PngCodec, WideChromaticitiesBecomeAProfile) {
    const auto chunk = [](double redX) {
        return [=](png_structp png, png_infop info) {
            png_set_cHRM(png, info, 0.3127, 0.329, redX, 0.33, 0.3, 0.6, 0.15, 0.06);
        };
    };
    EXPECT_FALSE(decoded(pngFile({.size = {1, 1}, .adjust = chunk(0.60)}, {9, 9, 9})).profile().isSrgb());
    EXPECT_TRUE(decoded(pngFile({.size = {1, 1}, .adjust = chunk(0.64)}, {9, 9, 9})).profile().isSrgb());
}

TEST(PngCodec, TheGammaOfSrgbIsSrgb) {
    const auto usual = [](png_structp png, png_infop info) { png_set_gAMA(png, info, 0.45455); };
    EXPECT_TRUE(decoded(pngFile({.size = {1, 1}, .adjust = usual}, {9, 9, 9})).profile().isSrgb());
}

TEST(PngCodec, AProfileComesBeforeTheGamma) {
    const Bytes icc = wideProfile();
    const auto both = [&](png_structp png, png_infop info) {
        png_set_gAMA(png, info, 1);
        png_set_iCCP(png, info, "wide", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                     static_cast<png_uint_32>(icc.size()));
    };
    EXPECT_EQ(decoded(pngFile({.size = {1, 1}, .adjust = both}, {9, 9, 9})).profile(),
              ColorProfile::fromIcc(icc));
}

TEST(PngCodec, PicturesAreTurnedUprightWhereverTheTagStands) {
    std::vector<std::uint8_t> samples(40 * 24 * 3);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::uint8_t>(i * 7);
    const Image stored = decoded(pngFile({.size = {40, 24}}, samples));
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
            const Image upright = decoded(file);
            EXPECT_TRUE(samePixels(upright, turnedUpright(stored, orientationFromTag(tag)))) << tag;
            EXPECT_EQ(*kPngCodec.measure(file), std::vector{upright.pixelSize()});
        }
}

TEST(PngCodec, PointsFollowTheDensity) {
    const auto sizeAt = [](png_uint_32 density, int unit) {
        const auto chunk = [=](png_structp png, png_infop info) {
            png_set_pHYs(png, info, density, density, unit);
        };
        return decoded(pngFile({.size = {30, 10}, .adjust = chunk}, std::vector<std::uint8_t>(900))).size();
    };
    // 11811 is what 300 to the inch is rounded to, 2835 what 72 is: one point for each pixel.
    EXPECT_EQ(sizeAt(11811, PNG_RESOLUTION_METER), (PointSize{30 * 72 / 300.0, 10 * 72 / 300.0}));
    EXPECT_EQ(sizeAt(2835, PNG_RESOLUTION_METER), (PointSize{30, 10}));
    EXPECT_NEAR(sizeAt(10'000, PNG_RESOLUTION_METER).width, 30 * 72 / 254.0, 1e-9);
    EXPECT_NEAR(sizeAt(10'010, PNG_RESOLUTION_METER).width, 30 * 72 / 254.254, 1e-9);
    EXPECT_EQ(sizeAt(11811, PNG_RESOLUTION_UNKNOWN), (PointSize{30, 10}));
    EXPECT_EQ(sizeAt(0, PNG_RESOLUTION_METER), (PointSize{30, 10}));
}

TEST(PngCodec, OfATruncatedFileTheFirstRowsAreShown) {
    std::vector<std::uint8_t> samples;
    for (const RGBA32 pixel : pixelsOf(noise({100, 200})))
        samples.insert(samples.end(), {pixel.red(), pixel.green(), pixel.blue()});
    for (const bool interlaced : {false, true}) {
        const Bytes whole = pngFile({.size = {100, 200}, .interlaced = interlaced}, samples);
        const Image part = decoded(ByteView(whole).first(whole.size() / 2));
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

TEST(PngCodec, SizesThatTheFileCannotHoldAreRefusedEarly) {
    const auto claim = [](png_uint_32 width, png_uint_32 height) {
        // Only headers are written; no picture of this size is made.
        png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        Bytes file;
        png_set_write_fn(
            png, &file,
            [](png_structp writer, png_bytep bytes, std::size_t count) {
                Bytes& out = *static_cast<Bytes*>(png_get_io_ptr(writer));
                out.insert(out.end(), bytes, bytes + count);
            },
            nullptr);
        png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        const std::vector<png_byte> data = {0x78, 0x01, 0x63, 0, 0, 0, 0, 0};
        png_write_chunk(png, reinterpret_cast<png_const_bytep>("IDAT"), data.data(), data.size());
        png_destroy_write_struct(&png, &info);
        return file;
    };
    EXPECT_FALSE(kPngCodec.decode(claim(30'000, 30'000)));
    EXPECT_FALSE(kPngCodec.decode(claim(100'000, 100'000)));
    EXPECT_FALSE(kPngCodec.measure(claim(100'000, 100'000)));
}

TEST(PngCodec, DamagedBytesNeverDoHarm) {
    const Bytes icc = wideProfile();
    Bytes exif = exifBlock(6);
    const auto chunks = [&](png_structp png, png_infop info) {
        png_set_iCCP(png, info, "wide", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                     static_cast<png_uint_32>(icc.size()));
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), exif.data());
    };
    const Bytes whole = pngFile({.size = {50, 40}, .interlaced = true, .adjust = chunks},
                                std::vector<std::uint8_t>(50 * 40 * 3, 77));
    std::uint32_t random = 1;
    for (int round = 0; round < 500; ++round) {
        Bytes file = whole;
        for (int i = 0; i < 3; ++i) {
            random = random * 1664525 + 1013904223;
            file[random % file.size()] = static_cast<std::uint8_t>(random >> 24);
        }
        const Result<Image> image = kPngCodec.decode(file);
        EXPECT_TRUE(!image || image->hasPixels());
    }
}

TEST(PngCodec, IsRecognisedByItsSignature) {
    EXPECT_EQ(codecForContent(encoded(noise({3, 3}))), &kPngCodec);
    EXPECT_FALSE(kPngCodec.recognizes(Bytes{0x89, 'P', 'N', 'G'}));
}

} // namespace
} // namespace complexion
