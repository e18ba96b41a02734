// SPDX-License-Identifier: GPL-3.0-or-later

// Decoding JPEG files of other programs: codings, colour spaces, damage.
#include "imaging/base/orientation.h"
#include "imaging/codecs/codec.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"

#include <algorithm>
#include <array>

namespace complexion {
namespace {

using test::decoded;
using test::soft;

TEST(JpegCodec, ASecondFrameHeaderBetweenScansIsHarmless) {
    // The library stores the sizes of such a header before it reports an error. Found by fuzzing.
    Bytes file = jpegFile({.size = {100, 90},
                           .exif = {},
                           .icc = {},
                           .adjust = [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); }},
                          rgbSamples(soft({100, 90})));
    const Bytes scan = {0xFF, 0xDA};
    const auto second = std::find_end(file.begin(), file.end(), scan.begin(), scan.end());
    const Bytes frame = {0xFF, 0xC2, 0, 8, 8, 0xFF, 0xFF, 0xFF, 0xFF, 0}; // large, without components
    file.insert(second, frame.begin(), frame.end());
    EXPECT_EQ(decoded(kJpegCodec, file).pixelSize(), (PixelSize{100, 90}));
}

TEST(JpegCodec, DecodesEveryCodingLikeTheLibrary) {
    using Adjust = std::function<void(jpeg_compress_struct&)>;
    const std::vector<Adjust> ways = {
        [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); },
        [](jpeg_compress_struct& info) { info.arith_code = TRUE; },
        [](jpeg_compress_struct& info) {
            info.arith_code = TRUE;
            jpeg_simple_progression(&info);
        },
        [](jpeg_compress_struct& info) { info.restart_interval = 3; },
        [](jpeg_compress_struct& info) { info.comp_info[0].h_samp_factor = 4; },
        [](jpeg_compress_struct& info) { jpeg_set_colorspace(&info, JCS_RGB); },
    };
    for (const Adjust& adjust : ways) {
        const Bytes file =
            jpegFile({.size = {100, 90}, .quality = 80, .exif = {}, .icc = {}, .adjust = adjust},
                     rgbSamples(soft({100, 90})));
        EXPECT_EQ(rgbSamples(decoded(kJpegCodec, file)), jpegSamples(file, JCS_RGB));
    }
}

TEST(JpegCodec, GreyBecomesRgb) {
    const JpegRecipe recipe = {
        .size = {16, 16}, .components = 1, .samples = JCS_GRAYSCALE, .exif = {}, .icc = {}};
    const Image image = decoded(kJpegCodec, jpegFile(recipe, std::vector<std::uint8_t>(256, 77)));
    EXPECT_EQ(image.pixel(3, 3), grey(77));
}

TEST(JpegCodec, GreyWithAProfileBecomesSrgb) {
    const Bytes icc = grayProfile(1);
    const JpegRecipe recipe = {
        .size = {16, 16}, .components = 1, .samples = JCS_GRAYSCALE, .exif = {}, .icc = icc};
    const Image image = decoded(kJpegCodec, jpegFile(recipe, std::vector<std::uint8_t>(256, 55)));
    // Linear 55 / 255 is 0.5015 in sRGB: 1.055 * (55 / 255)^(1 / 2.4) - 0.055.
    EXPECT_NEAR(image.pixel(3, 3).green(), 128, 1);
    EXPECT_TRUE(image.profile().isSrgb());
}

/// A file of one CMYK colour, with inks from 0 to 255, stored inverted and with an Adobe segment.
Bytes cmykFile(std::array<std::uint8_t, 4> inks, J_COLOR_SPACE coded, const Bytes& icc) {
    const JpegRecipe recipe = {
        .size = {16, 16},
        .components = 4,
        .samples = JCS_CMYK,
        .exif = {},
        .icc = icc,
        .adjust = [=](jpeg_compress_struct& info) { jpeg_set_colorspace(&info, coded); }};
    std::vector<std::uint8_t> samples;
    for (int i = 0; i < 256; ++i)
        for (const std::uint8_t ink : inks)
            samples.push_back(static_cast<std::uint8_t>(255 - ink));
    return jpegFile(recipe, samples);
}

TEST(JpegCodec, CmykWithoutAProfileIsConvertedMultiplicatively) {
    for (const J_COLOR_SPACE coded : {JCS_CMYK, JCS_YCCK}) {
        const RGBA32 pixel = decoded(kJpegCodec, cmykFile({0, 51, 255, 51}, coded, {})).pixel(5, 5);
        EXPECT_NEAR(pixel.red(), 204, 1);
        EXPECT_NEAR(pixel.green(), 163, 1);
        EXPECT_NEAR(pixel.blue(), 0, 1);
        EXPECT_EQ(pixel.alpha(), 255);
    }
}

TEST(JpegCodec, CmykIsConvertedByItsProfile) {
    const Bytes icc = cmykProfile();
    const std::array<std::uint8_t, 4> inks = {20, 51, 200, 51};
    cmsHPROFILE source = cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size()));
    cmsHPROFILE srgb = cmsCreate_sRGBProfile();
    cmsHTRANSFORM transform = cmsCreateTransform(source, TYPE_CMYK_8, srgb, TYPE_RGB_8, INTENT_PERCEPTUAL, 0);
    std::array<std::uint8_t, 3> expected = {};
    cmsDoTransform(transform, inks.data(), expected.data(), 1);
    cmsDeleteTransform(transform);
    cmsCloseProfile(srgb);
    cmsCloseProfile(source);
    ASSERT_GT(std::abs(expected[0] - (255 - 20) * (255 - 51) / 255), 10); // differs from ideal inks

    const Image image = decoded(kJpegCodec, cmykFile(inks, JCS_CMYK, icc));
    EXPECT_NEAR(image.pixel(5, 5).red(), expected[0], 3);
    EXPECT_NEAR(image.pixel(5, 5).green(), expected[1], 3);
    EXPECT_NEAR(image.pixel(5, 5).blue(), expected[2], 3);
    EXPECT_TRUE(image.profile().isSrgb());
}

TEST(JpegCodec, PicturesAreTurnedUpright) {
    const Image stored = soft({40, 24});
    for (int tag = 1; tag <= 8; ++tag) {
        const Bytes file =
            jpegFile({.size = {40, 24}, .exif = exifBlock(tag, 144), .icc = {}}, rgbSamples(stored));
        const Image plain =
            decoded(kJpegCodec, jpegFile({.size = {40, 24}, .exif = {}, .icc = {}}, rgbSamples(stored)));
        const Orientation orientation = orientationFromTag(tag);
        const Image upright = decoded(kJpegCodec, file);
        EXPECT_EQ(pixelsOf(upright), pixelsOf(turnedUpright(plain, orientation)));
        EXPECT_EQ(upright.size(), swapsSides(orientation) ? (PointSize{12, 20}) : (PointSize{20, 12}));
        EXPECT_EQ(*kJpegCodec.measure(file), std::vector{upright.pixelSize()});
    }
}

PointSize sizeAt(int unit, int density, const Bytes& exif) {
    const JpegRecipe recipe = {
        .size = {30, 10}, .exif = exif, .icc = {}, .adjust = [=](jpeg_compress_struct& info) {
            info.density_unit = static_cast<UINT8>(unit);
            info.X_density = info.Y_density = static_cast<UINT16>(density);
        }};
    return decoded(kJpegCodec, jpegFile(recipe, rgbSamples(soft({30, 10})))).size();
}

TEST(JpegCodec, PointsFollowTheDensity) {
    EXPECT_EQ(sizeAt(1, 144, {}), (PointSize{15, 5}));
    EXPECT_EQ(sizeAt(1, 72, {}), (PointSize{30, 10}));
    EXPECT_NEAR(sizeAt(2, 100, {}).width, 30 * 72 / 254.0, 1e-9);
    EXPECT_EQ(sizeAt(0, 300, {}), (PointSize{30, 10})); // an aspect ratio only
    EXPECT_EQ(sizeAt(1, 144, exifBlock(1, 216)), (PointSize{10, 10.0 / 3}));
    EXPECT_EQ(sizeAt(1, 144, exifBlock(1)), (PointSize{15, 5}));
    EXPECT_EQ(sizeAt(1, 0, {}), (PointSize{30, 10}));
}

TEST(JpegCodec, ATruncatedFileShowsItsFirstRows) {
    const Bytes whole = jpegFile({.size = {200, 200}, .exif = {}, .icc = {}}, rgbSamples(soft({200, 200})));
    const Image expected = decoded(kJpegCodec, whole);
    const Image part = decoded(kJpegCodec, ByteView(whole).first(whole.size() / 2));
    ASSERT_EQ(part.pixelSize(), expected.pixelSize());
    for (int row = 0; row < 80; ++row)
        EXPECT_EQ(part.pixel(row, 50), expected.pixel(row, 50)) << row;
    EXPECT_NE(part.pixel(199, 50), expected.pixel(199, 50));
    EXPECT_EQ(part.pixel(199, 50).alpha(), 255);
}

TEST(JpegCodec, ADamagedProgressiveFileShowsTheScansBeforeTheDamage) {
    const JpegRecipe recipe = {.size = {64, 64},
                               .exif = {},
                               .icc = {},
                               .adjust = [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); }};
    Bytes file = jpegFile(recipe, rgbSamples(soft({64, 64})));
    const Image whole = decoded(kJpegCodec, file);
    // Make the last scan refer to a component that does not exist.
    constexpr std::array<std::uint8_t, 2> kScan = {0xFF, 0xDA};
    const auto last = std::ranges::find_end(file, kScan);
    ASSERT_FALSE(last.empty());
    *(last.begin() + 5) = 99;
    const Image part = decoded(kJpegCodec, file);
    ASSERT_EQ(part.pixelSize(), whole.pixelSize());
    double difference = 0;
    for (int i = 0; i < 64; ++i)
        difference += std::abs(part.pixel(i, i).green() - whole.pixel(i, i).green());
    EXPECT_LT(difference / 64, 20);
}

TEST(JpegCodec, FilesWithoutAPictureAreAnError) {
    const Bytes whole = jpegFile({.size = {64, 64}, .exif = {}, .icc = {}}, rgbSamples(soft({64, 64})));
    constexpr std::array<std::uint8_t, 2> kScan = {0xFF, 0xDA};
    const auto scan = static_cast<std::size_t>(std::ranges::search(whole, kScan).begin() - whole.begin());
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{2}, std::size_t{3}, std::size_t{30}, scan, scan + 4})
        EXPECT_FALSE(kJpegCodec.decode(ByteView(whole).first(length))) << length;
    EXPECT_FALSE(kJpegCodec.measure(ByteView(whole).first(30)));
    Bytes noHeight = whole;
    constexpr std::array<std::uint8_t, 2> kFrame = {0xFF, 0xC0};
    const auto frame = std::ranges::search(noHeight, kFrame).begin();
    frame[5] = frame[6] = 0;
    EXPECT_FALSE(kJpegCodec.decode(noHeight));
}

TEST(JpegCodec, HugePicturesInSmallFilesAreRefused) {
    Bytes file = jpegFile({.size = {64, 64}, .exif = {}, .icc = {}}, rgbSamples(soft({64, 64})));
    constexpr std::array<std::uint8_t, 2> kFrame = {0xFF, 0xC0};
    const auto frame = std::ranges::search(file, kFrame).begin();
    for (const int i : {5, 6, 7, 8})
        frame[i] = 0xF0; // 61,680 pixels each way
    EXPECT_FALSE(kJpegCodec.decode(file));
    frame[5] = 0x30; // 12,528 rows
    EXPECT_FALSE(kJpegCodec.decode(file));
}

TEST(JpegCodec, DamageIsHarmless) {
    const JpegRecipe recipe = {.size = {50, 40},
                               .quality = 70,
                               .exif = exifBlock(6, 300),
                               .icc = wideProfile(),
                               .adjust = [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); }};
    const Bytes whole = jpegFile(recipe, rgbSamples(soft({50, 40})));
    test::expectRandomDamageIsHarmless(kJpegCodec, whole, 4);
}

} // namespace
} // namespace complexion
