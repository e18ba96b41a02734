// SPDX-License-Identifier: GPL-3.0-or-later

// Decoding every pixel format and colour space of PNG files.
#include "imaging/codecs/codec.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/png_files.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"

#include <array>

namespace complexion {
namespace {

using namespace std::string_literals;
using test::decoded;
using test::encoded;

TEST(PngCodec, GreysOfAllDepthsRangeFromBlackToWhite) {
    for (const int depth : {1, 2, 4, 8, 16}) {
        const PngRecipe recipe = {.size = {2, 1}, .colorType = PNG_COLOR_TYPE_GRAY, .depth = depth};
        const std::uint8_t first = depth < 8 ? static_cast<std::uint8_t>(255U << (8 - depth)) : 255;
        const std::vector<std::uint8_t> whiteThenBlack = {first, depth == 16 ? first : std::uint8_t{0}, 0, 0};
        const Image image = decoded(kPngCodec, pngFile(recipe, whiteThenBlack));
        EXPECT_EQ(image.pixel(0, 0), grey(255)) << depth;
        EXPECT_EQ(image.pixel(0, 1), grey(0)) << depth;
    }
}

TEST(PngCodec, SixteenBitsAreRoundedToEight) {
    const PngRecipe recipe = {.size = {2, 1}, .depth = 16};
    // 0x7FFF / 257 is 127.498; 0x8000 / 257 is 127.502.
    const std::vector<std::uint8_t> samples = {0x7F, 0xFF, 0x80, 0x00, 0x00, 0x80,
                                               0x00, 0x81, 0xFF, 0x7E, 0xFF, 0x7F};
    const Image image = decoded(kPngCodec, pngFile(recipe, samples));
    EXPECT_EQ(image.pixel(0, 0), RGBA32(127, 128, 0, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(1, 254, 255, 255));
}

TEST(PngCodec, PaletteColorsMayHaveAlpha) {
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
    const Image image = decoded(kPngCodec, pngFile(recipe, {0b00011000}));
    EXPECT_EQ(image.pixel(0, 0), RGBA32(255, 0, 0, 255));
    EXPECT_EQ(image.pixel(0, 1), RGBA32(0, 100, 0, 128));
    EXPECT_EQ(image.pixel(0, 2), RGBA32(9, 9, 255, 255));
}

TEST(PngCodec, TheKeyColorIsTransparent) {
    const PngRecipe recipe = {.size = {2, 1}, .adjust = [](png_structp png, png_infop info) {
                                  png_color_16 key = {};
                                  key.red = 10;
                                  key.green = 20;
                                  key.blue = 30;
                                  png_set_tRNS(png, info, nullptr, 0, &key);
                              }};
    const Image image = decoded(kPngCodec, pngFile(recipe, {10, 20, 30, 10, 20, 31}));
    EXPECT_EQ(image.pixel(0, 0), RGBA32());
    EXPECT_EQ(image.pixel(0, 1), RGBA32(10, 20, 31, 255));
}

TEST(PngCodec, AlphaIsStoredPremultiplied) {
    const PngRecipe rgba = {.size = {1, 1}, .colorType = PNG_COLOR_TYPE_RGB_ALPHA};
    EXPECT_EQ(decoded(kPngCodec, pngFile(rgba, {200, 100, 255, 51})).pixel(0, 0), RGBA32(40, 20, 51, 51));
    const PngRecipe greyAlpha = {.size = {1, 1}, .colorType = PNG_COLOR_TYPE_GRAY_ALPHA, .depth = 16};
    EXPECT_EQ(decoded(kPngCodec, pngFile(greyAlpha, {200, 200, 51, 51})).pixel(0, 0), RGBA32(40, 40, 40, 51));
}

Bytes greyFile(const std::function<void(png_structp, png_infop)>& adjust, std::uint8_t level) {
    return pngFile({.size = {1, 1}, .colorType = PNG_COLOR_TYPE_GRAY, .adjust = adjust}, {level});
}

TEST(PngCodec, GreyWithAProfileBecomesSrgb) {
    const Bytes icc = grayProfile(1);
    const auto embed = [&](png_structp png, png_infop info) {
        png_set_iCCP(png, info, "grey", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                     static_cast<png_uint_32>(icc.size()));
    };
    const Image image = decoded(kPngCodec, greyFile(embed, 55));
    // Linear 55 / 255 is 0.5015 in sRGB: 1.055 * (55 / 255)^(1 / 2.4) - 0.055.
    EXPECT_NEAR(image.pixel(0, 0).green(), 128, 1);
    EXPECT_TRUE(image.profile().isSrgb());
}

/// A grey level in CIELAB, by the profile `icc` or, if that is empty, as sRGB.
cmsCIELab labOfGrey(ByteView icc, double level) {
    cmsHPROFILE own = icc.empty()
                          ? cmsCreate_sRGBProfile()
                          : cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size()));
    cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
    cmsHTRANSFORM transform = cmsCreateTransform(own, icc.empty() ? TYPE_RGB_DBL : TYPE_GRAY_DBL, lab,
                                                 TYPE_Lab_DBL, INTENT_RELATIVE_COLORIMETRIC, 0);
    const std::array<double, 3> in = {level, level, level};
    cmsCIELab out = {};
    cmsDoTransform(transform, in.data(), &out, 1);
    cmsDeleteTransform(transform);
    cmsCloseProfile(lab);
    cmsCloseProfile(own);
    return out;
}

TEST(PngCodec, GreysOfAProfileAreConvertedWithinHalfADeltaE) {
    for (const double gamma : {1.0, 1.8, 2.2, 2.6}) {
        const Bytes icc = grayProfile(gamma);
        const auto embed = [&](png_structp png, png_infop info) {
            png_set_iCCP(png, info, "grey", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                         static_cast<png_uint_32>(icc.size()));
        };
        std::vector<std::uint8_t> levels;
        for (int level = 0; level < 256; ++level)
            levels.push_back(static_cast<std::uint8_t>(level));
        const Image image =
            decoded(kPngCodec,
                    pngFile({.size = {256, 1}, .colorType = PNG_COLOR_TYPE_GRAY, .adjust = embed}, levels));
        for (int level = 0; level < 256; ++level) {
            const RGBA32 pixel = image.pixel(0, level);
            ASSERT_EQ(pixel.red(), pixel.green());
            ASSERT_EQ(pixel.red(), pixel.blue());
            const cmsCIELab wanted = labOfGrey(icc, level / 255.0);
            const cmsCIELab got = labOfGrey({}, pixel.red() / 255.0);
            EXPECT_LE(cmsDeltaE(&wanted, &got), 0.5) << "gamma " << gamma << ", level " << level;
        }
    }
}

/// A grey level of `profile`, converted to sRGB.
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

TEST(PngCodec, AGammaBecomesAProfileAndDoesNotChangePixels) {
    const auto linear = [](png_structp png, png_infop info) { png_set_gAMA(png, info, 1); };
    const Bytes file = pngFile({.size = {1, 1}, .adjust = linear}, {55, 55, 55});
    const Image image = decoded(kPngCodec, file);
    EXPECT_EQ(image.pixel(0, 0), grey(55));
    ASSERT_FALSE(image.profile().isSrgb());
    EXPECT_NEAR(asSrgb(image.profile(), 55 / 255.0), 128 / 255.0, 0.005);
    EXPECT_EQ(decoded(kPngCodec, file).profile(), image.profile());
    EXPECT_EQ(decoded(kPngCodec, encoded(kPngCodec, image)).profile(), image.profile());
}

TEST(PngCodec, ChromaticitiesOtherThanSrgbsBecomeAProfile) {
    const auto chunk = [](double redX) {
        return [=](png_structp png, png_infop info) {
            png_set_cHRM(png, info, 0.3127, 0.329, redX, 0.33, 0.3, 0.6, 0.15, 0.06);
        };
    };
    EXPECT_FALSE(
        decoded(kPngCodec, pngFile({.size = {1, 1}, .adjust = chunk(0.60)}, {9, 9, 9})).profile().isSrgb());
    EXPECT_TRUE(
        decoded(kPngCodec, pngFile({.size = {1, 1}, .adjust = chunk(0.64)}, {9, 9, 9})).profile().isSrgb());
}

TEST(PngCodec, TheGammaOfSrgbIsSrgb) {
    const auto usual = [](png_structp png, png_infop info) { png_set_gAMA(png, info, 0.45455); };
    EXPECT_TRUE(decoded(kPngCodec, pngFile({.size = {1, 1}, .adjust = usual}, {9, 9, 9})).profile().isSrgb());
}

TEST(PngCodec, AProfileHasPrecedenceOverAGamma) {
    const Bytes icc = wideProfile();
    const auto both = [&](png_structp png, png_infop info) {
        png_set_gAMA(png, info, 1);
        png_set_iCCP(png, info, "wide", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                     static_cast<png_uint_32>(icc.size()));
    };
    EXPECT_EQ(decoded(kPngCodec, pngFile({.size = {1, 1}, .adjust = both}, {9, 9, 9})).profile(),
              ColorProfile::fromIcc(icc));
}

// Coding-independent code points (cICP).

/// A picture of one pixel with the wide profile and a cICP chunk.
Image withCodePoints(const std::string& codePoints, int colorType = PNG_COLOR_TYPE_RGB) {
    const Bytes icc = wideProfile();
    const auto profile = [&](png_structp png, png_infop info) {
        if (colorType == PNG_COLOR_TYPE_RGB)
            png_set_iCCP(png, info, "wide", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                         static_cast<png_uint_32>(icc.size()));
    };
    const Bytes file = pngFile({.size = {1, 1}, .colorType = colorType, .adjust = profile}, {9, 9, 9});
    return decoded(kPngCodec, viewOf(withChunks({file.begin(), file.end()}, pngChunkOf("cICP", codePoints))));
}

void expectNear(RgbColor actual, RgbColor expected) {
    EXPECT_NEAR(actual.red, expected.red, 0.002);
    EXPECT_NEAR(actual.green, expected.green, 0.002);
    EXPECT_NEAR(actual.blue, expected.blue, 0.002);
}

TEST(PngCodePoints, HavePrecedenceOverAProfile) {
    EXPECT_TRUE(withCodePoints("\1\15\0\1"s).profile().isSrgb());
    EXPECT_FALSE(withCodePoints("\14\15\0\1"s).profile() == ColorProfile::fromIcc(wideProfile()));
}

TEST(PngCodePoints, BecomeAProfile) {
    // sRGB red in Display P3, and in BT.2020 with the transfer curve of sRGB (matrices from CSS Color 4).
    expectNear(withCodePoints("\14\15\0\1"s).profile().fromSrgb({1, 0, 0}), {0.9175, 0.2003, 0.1386});
    expectNear(withCodePoints("\11\15\0\1"s).profile().fromSrgb({1, 0, 0}), {0.8138, 0.2915, 0.1353});
    // sRGB 0.5 is linear 0.2140; with the transfer curve of BT.709 it is 1.099 * 0.2140^0.45 - 0.099.
    expectNear(withCodePoints("\1\10\0\1"s).profile().fromSrgb({0.5, 0.5, 0.5}), {0.2140, 0.2140, 0.2140});
    expectNear(withCodePoints("\1\1\0\1"s).profile().fromSrgb({0.5, 0.5, 0.5}), {0.4500, 0.4500, 0.4500});
}

TEST(PngCodePoints, OfHighDynamicRangeOrInvalidOnesAreIgnored) {
    const ColorProfile wide = ColorProfile::fromIcc(wideProfile());
    for (const std::string& codePoints :
         {"\11\20\0\1"s, "\11\22\0\1"s, "\2\15\0\1"s, "\14\15\1\1"s, "\14\15\0\0"s, "\14\15\0"s, ""s})
        EXPECT_EQ(withCodePoints(codePoints).profile(), wide);
}

TEST(PngCodePoints, OfAGreyPictureAreIgnored) {
    EXPECT_TRUE(withCodePoints("\14\15\0\1"s, PNG_COLOR_TYPE_GRAY).profile().isSrgb());
}

} // namespace
} // namespace complexion
