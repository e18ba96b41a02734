// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"
#include "imaging/orientation.h"
#include "imaging/pixel_buffer.h"
#include "tests/fakes/coded_files.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"

#include <gmock/gmock.h>

#include <cstring>

namespace complexion {
namespace {

Bytes encoded(const Image& image) {
    const Result<FileContents> file = kJpegCodec.encode(image);
    EXPECT_TRUE(file) << file.error().message;
    return joined(*file);
}

Image decoded(ByteView file) {
    const Result<Image> image = kJpegCodec.decode(file);
    EXPECT_TRUE(image) << image.error().message;
    return image ? *image : Image();
}

/// Soft colours that differ everywhere, as a photo's do.
Image soft(PixelSize size) {
    return painted(size, [](int row, int column) {
        return RGBA32(static_cast<std::uint8_t>(40 + (row * 3 + column) % 200),
                      static_cast<std::uint8_t>(20 + (row + column * 2) % 220),
                      static_cast<std::uint8_t>(row * column % 256), 255);
    });
}

Image withSpot(const Image& image, PixelPosition position) {
    Result<PixelBuffer> buffer = PixelBuffer::open(image);
    const std::vector<PixelPosition> spot = {position};
    buffer->paint(spot, RGBA32(255, 0, 0, 255));
    return std::move(*buffer).close();
}

void forgetCodedBands(const Image& image) {
    for (int i = 0; i < image.bandCount(); ++i)
        image.storedBand(i)->encoded().set(nullptr);
}

/// The file that one library call writes for the picture, with the codes of `like`.
Bytes librarysFile(const Image& image, ByteView like, int rowsPerInterval) {
    jpeg_decompress_struct tables = {};
    jpeg_error_mgr errors = {};
    tables.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&tables);
    jpeg_mem_src(&tables, like.data(), like.size());
    jpeg_read_header(&tables, TRUE);
    const JpegRecipe recipe = {
        .size = image.pixelSize(), .exif = {}, .icc = {}, .adjust = [&](jpeg_compress_struct& info) {
            for (int i = 0; i < 2; ++i) {
                *info.dc_huff_tbl_ptrs[i] = *tables.dc_huff_tbl_ptrs[i];
                *info.ac_huff_tbl_ptrs[i] = *tables.ac_huff_tbl_ptrs[i];
            }
            info.restart_in_rows = rowsPerInterval;
            info.density_unit = 1;
            info.X_density = info.Y_density = 72;
        }};
    const Bytes file = jpegFile(recipe, rgbSamples(image));
    jpeg_destroy_decompress(&tables);
    return file;
}

class JpegSizes : public testing::TestWithParam<PixelSize> {};

INSTANTIATE_TEST_SUITE_P(Odd, JpegSizes,
                         testing::Values(PixelSize{1, 1}, PixelSize{1, 200}, PixelSize{200, 1},
                                         PixelSize{7, 9}, PixelSize{255, 63}, PixelSize{256, 64},
                                         PixelSize{257, 65}, PixelSize{300, 700}, PixelSize{65, 1100}),
                         [](const auto& test) {
                             return std::to_string(test.param.width) + "x" +
                                    std::to_string(test.param.height);
                         });

TEST_P(JpegSizes, BlockRowsCodedApartGiveTheFileOfOneLibraryCall) {
    for (const Image& image : {soft(GetParam()), noise(GetParam())}) {
        const Bytes file = encoded(image);
        EXPECT_EQ(file, librarysFile(image, file, 1));
    }
}

TEST_P(JpegSizes, PixelsAreThoseOfAPlainEncoding) {
    for (const Image& image : {soft(GetParam()), noise(GetParam())}) {
        const JpegRecipe plain = {.size = GetParam(), .exif = {}, .icc = {}};
        const Bytes plainFile = jpegFile(plain, rgbSamples(image));
        EXPECT_EQ(jpegSamples(encoded(image), JCS_RGB), jpegSamples(plainFile, JCS_RGB));
    }
}

TEST_P(JpegSizes, DecodedPixelsAreTheLibrarys) {
    const JpegRecipe halved = {
        .size = GetParam(), .quality = 85, .exif = {}, .icc = {}, .adjust = [](jpeg_compress_struct& info) {
            info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 2;
        }};
    const Bytes file = jpegFile(halved, rgbSamples(soft(GetParam())));
    EXPECT_EQ(rgbSamples(decoded(file)), jpegSamples(file, JCS_RGB));
    EXPECT_EQ(*kJpegCodec.measure(file), std::vector{GetParam()});
}

TEST_P(JpegSizes, WhatIsKeptOfBandsGivesTheSameFile) {
    const Image image = soft(GetParam());
    (void)encoded(image);
    const Image edited = withSpot(image, {GetParam().height / 2, GetParam().width / 2});
    const Bytes warm = encoded(edited);
    EXPECT_EQ(encoded(edited), warm);
    forgetCodedBands(edited);
    EXPECT_EQ(encoded(edited), warm);
}

TEST(JpegCodec, AfterAnEditOnlyTouchedBandsAreCodedAgain) {
    const Image image = soft({300, 200}); // four bands
    const Result<FileContents> before = kJpegCodec.encode(image);
    const Result<FileContents> after = kJpegCodec.encode(withSpot(image, {70, 10}));
    ASSERT_EQ(before->parts.size(), after->parts.size());
    // A header; the bands with a marker between each two; the end.
    for (const std::size_t untouched : {1U, 5U, 7U})
        EXPECT_EQ(before->parts[untouched], after->parts[untouched]);
    EXPECT_NE(*before->parts[3], *after->parts[3]);
}

TEST(JpegCodec, CodesForAllSymbolsSurviveEditsThatNeedNewOnes) {
    const Image image = filled({256, 256}, RGBA32(128, 128, 128, 255));
    (void)encoded(image);
    const Image rough = image.withBands([&] {
        BandList bands = image.bands();
        bands[2] = noise({256, 64}).storedBand(0);
        return bands;
    }());
    const Bytes file = encoded(rough);
    EXPECT_EQ(jpegSamples(file, JCS_RGB),
              jpegSamples(jpegFile({.size = {256, 256}, .exif = {}, .icc = {}}, rgbSamples(rough)), JCS_RGB));
}

class Inversion : public PixelTransform {
public:
    void apply(std::span<RGBA32> pixels) const override {
        for (RGBA32& pixel : pixels)
            pixel.color ^= 0xFFFFFF00;
    }
};

TEST(JpegCodec, ComputedPixelsAreCodedAndNothingOfThemIsKept) {
    const Image image = soft({300, 100});
    const Bytes before = encoded(image);
    const Image inverted = image.transformed(std::make_shared<Inversion>());
    EXPECT_EQ(encoded(inverted), encoded(inverted.materialized()));
    EXPECT_EQ(encoded(image), before);
}

TEST(JpegCodec, TransparentPixelsAreCodedOverBlack) {
    const Image image = filled({16, 16}, RGBA32(100, 50, 25, 128));
    const Image back = decoded(encoded(image));
    EXPECT_EQ(back.pixel(8, 8).alpha(), 255);
    EXPECT_NEAR(back.pixel(8, 8).red(), 100, 1);
    EXPECT_NEAR(back.pixel(8, 8).green(), 50, 1);
    EXPECT_NEAR(back.pixel(8, 8).blue(), 25, 1);
}

TEST(JpegCodec, TheFileStatesOnePixelAPoint) {
    const Bytes file = encoded(soft({30, 20}).withSize({15, 10}));
    EXPECT_THAT(ByteView(file).subspan(2, 16),
                testing::ElementsAre(0xFF, 0xE0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 1, 1, 0, 72, 0, 72));
    EXPECT_EQ(decoded(file).size(), (PointSize{30, 20}));
}

TEST(JpegCodec, AProfileOfManySegmentsComesBack) {
    const Bytes icc = bytesOfProfile([] {
        cmsHPROFILE profile = cmsCreate_sRGBProfile();
        cmsMLU* text = cmsMLUalloc(nullptr, 1);
        cmsMLUsetASCII(text, "en", "US", std::string(100'000, 'x').c_str());
        cmsWriteTag(profile, cmsSigCopyrightTag, text);
        cmsMLUfree(text);
        return profile;
    }());
    const ColorProfile profile = ColorProfile::fromIcc(icc);
    ASSERT_GT(profile.icc().size(), 2 * 65535U);
    EXPECT_EQ(decoded(encoded(soft({20, 20}).withProfile(profile))).profile(), profile);
    EXPECT_TRUE(decoded(encoded(soft({20, 20}))).profile().isSrgb());
}

TEST(JpegCodec, SidesBeyondTheFormatAreAnError) {
    EXPECT_FALSE(kJpegCodec.encode(filled({65501, 1}, grey(9))));
    EXPECT_FALSE(kJpegCodec.encode(filled({1, 65501}, grey(9))));
    EXPECT_FALSE(kJpegCodec.encode(Image()));
    EXPECT_EQ(decoded(encoded(filled({65500, 9}, grey(9)))).pixelSize(), (PixelSize{65500, 9}));
}

TEST(JpegCodec, ASecondFrameHeaderBetweenScansDoesNoHarm) {
    // The library takes the sizes of such a header before it complains. Found by fuzzing.
    Bytes file = jpegFile({.size = {100, 90},
                           .exif = {},
                           .icc = {},
                           .adjust = [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); }},
                          rgbSamples(soft({100, 90})));
    const Bytes scan = {0xFF, 0xDA};
    const auto second = std::find_end(file.begin(), file.end(), scan.begin(), scan.end());
    const Bytes frame = {0xFF, 0xC2, 0, 8, 8, 0xFF, 0xFF, 0xFF, 0xFF, 0}; // large, and of no component
    file.insert(second, frame.begin(), frame.end());
    EXPECT_EQ(decoded(file).pixelSize(), (PixelSize{100, 90}));
}

TEST(JpegCodec, ProgressiveArithmeticAndRestartedFilesAreTheLibrarys) {
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
        EXPECT_EQ(rgbSamples(decoded(file)), jpegSamples(file, JCS_RGB));
    }
}

TEST(JpegCodec, GreyBecomesRgb) {
    const JpegRecipe recipe = {
        .size = {16, 16}, .components = 1, .samples = JCS_GRAYSCALE, .exif = {}, .icc = {}};
    const Image image = decoded(jpegFile(recipe, std::vector<std::uint8_t>(256, 77)));
    EXPECT_EQ(image.pixel(3, 3), grey(77));
}

TEST(JpegCodec, GreyInASpaceOfItsOwnBecomesSrgb) {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1);
    const Bytes icc = bytesOfProfile(cmsCreateGrayProfile(&white, linear));
    cmsFreeToneCurve(linear);
    const JpegRecipe recipe = {
        .size = {16, 16}, .components = 1, .samples = JCS_GRAYSCALE, .exif = {}, .icc = icc};
    const Image image = decoded(jpegFile(recipe, std::vector<std::uint8_t>(256, 55)));
    // Linear 55 / 255 is 0.5015 of sRGB: 1.055 * (55 / 255)^(1 / 2.4) - 0.055.
    EXPECT_NEAR(image.pixel(3, 3).green(), 128, 1);
    EXPECT_TRUE(image.profile().isSrgb());
}

/// A file of one CMYK colour, given as the inks in 0 .. 255, stored inverted behind an Adobe segment.
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

TEST(JpegCodec, CmykWithoutAProfileIsWhatInksLetThrough) {
    for (const J_COLOR_SPACE coded : {JCS_CMYK, JCS_YCCK}) {
        const RGBA32 pixel = decoded(cmykFile({0, 51, 255, 51}, coded, {})).pixel(5, 5);
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
    ASSERT_GT(std::abs(expected[0] - (255 - 20) * (255 - 51) / 255), 10); // not what ideal inks give

    const Image image = decoded(cmykFile(inks, JCS_CMYK, icc));
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
        const Image plain = decoded(jpegFile({.size = {40, 24}, .exif = {}, .icc = {}}, rgbSamples(stored)));
        const Orientation orientation = orientationFromTag(tag);
        const Image upright = decoded(file);
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
    return decoded(jpegFile(recipe, rgbSamples(soft({30, 10})))).size();
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

TEST(JpegCodec, OfATruncatedFileTheFirstPartIsShown) {
    const Bytes whole = jpegFile({.size = {200, 200}, .exif = {}, .icc = {}}, rgbSamples(soft({200, 200})));
    const Image expected = decoded(whole);
    const Image part = decoded(ByteView(whole).first(whole.size() / 2));
    ASSERT_EQ(part.pixelSize(), expected.pixelSize());
    for (int row = 0; row < 80; ++row)
        EXPECT_EQ(part.pixel(row, 50), expected.pixel(row, 50)) << row;
    EXPECT_NE(part.pixel(199, 50), expected.pixel(199, 50));
    EXPECT_EQ(part.pixel(199, 50).alpha(), 255);
}

TEST(JpegCodec, OfADamagedProgressiveFileTheScansBeforeAreShown) {
    const JpegRecipe recipe = {.size = {64, 64},
                               .exif = {},
                               .icc = {},
                               .adjust = [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); }};
    Bytes file = jpegFile(recipe, rgbSamples(soft({64, 64})));
    const Image whole = decoded(file);
    // The last scan's header now names a component that the picture has not.
    constexpr std::array<std::uint8_t, 2> kScan = {0xFF, 0xDA};
    const auto last = std::ranges::find_end(file, kScan);
    ASSERT_FALSE(last.empty());
    *(last.begin() + 5) = 99;
    const Image part = decoded(file);
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

TEST(JpegCodec, SizesThatTheFileCannotHoldAreRefusedEarly) {
    Bytes file = jpegFile({.size = {64, 64}, .exif = {}, .icc = {}}, rgbSamples(soft({64, 64})));
    constexpr std::array<std::uint8_t, 2> kFrame = {0xFF, 0xC0};
    const auto frame = std::ranges::search(file, kFrame).begin();
    for (const int i : {5, 6, 7, 8})
        frame[i] = 0xF0; // 61,680 pixels each way
    EXPECT_FALSE(kJpegCodec.decode(file));
    frame[5] = 0x30; // 12,528 rows
    EXPECT_FALSE(kJpegCodec.decode(file));
}

TEST(JpegCodec, DamagedBytesNeverDoHarm) {
    const JpegRecipe recipe = {.size = {50, 40},
                               .quality = 70,
                               .exif = exifBlock(6, 300),
                               .icc = wideProfile(),
                               .adjust = [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); }};
    const Bytes whole = jpegFile(recipe, rgbSamples(soft({50, 40})));
    std::uint32_t random = 1;
    for (int round = 0; round < 500; ++round) {
        Bytes file = whole;
        for (int i = 0; i < 4; ++i) {
            random = random * 1664525 + 1013904223;
            file[random % file.size()] = static_cast<std::uint8_t>(random >> 24);
        }
        const Result<Image> image = kJpegCodec.decode(file);
        EXPECT_TRUE(!image || image->hasPixels());
    }
}

TEST(JpegCodec, IsRecognisedByItsFirstBytes) {
    EXPECT_EQ(codecForContent(encoded(soft({3, 3}))), &kJpegCodec);
    EXPECT_FALSE(kJpegCodec.recognizes(Bytes{0xFF}));
    EXPECT_FALSE(kJpegCodec.recognizes(Bytes{}));
}

} // namespace
} // namespace complexion
