// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/codec_pictures.h"

namespace complexion {
namespace {

using test::clearCodedBands;
using test::decoded;
using test::encoded;
using test::Inversion;
using test::soft;
using test::withSpot;

/// Selects the encoder's DCT.
void useFloatDct(jpeg_compress_struct& info) {
    info.dct_method = JDCT_FLOAT;
}

void useRgbAndFloatDct(jpeg_compress_struct& info) {
    jpeg_set_colorspace(&info, JCS_RGB);
    useFloatDct(info);
}

/// The file from its frame header on.
Bytes frameOf(const Bytes& file) {
    const std::array<std::uint8_t, 4> frame = {0xFF, 0xC0, 0, 17};
    return {std::ranges::search(file, frame).begin(), file.end()};
}

/// The picture encoded by a single library call, with the colour space and Huffman tables of `like`.
Bytes libraryFile(const Image& image, ByteView like, int rowsPerInterval) {
    jpeg_decompress_struct tables = {};
    jpeg_error_mgr errors = {};
    tables.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&tables);
    jpeg_mem_src(&tables, like.data(), like.size());
    jpeg_read_header(&tables, TRUE);
    const JpegRecipe recipe = {
        .size = image.pixelSize(), .exif = {}, .icc = {}, .adjust = [&](jpeg_compress_struct& info) {
            const bool isRgb = tables.jpeg_color_space == JCS_RGB;
            if (isRgb)
                jpeg_set_colorspace(&info, JCS_RGB);
            for (int i = 0; i < (isRgb ? 1 : 2); ++i) {
                *info.dc_huff_tbl_ptrs[i] = *tables.dc_huff_tbl_ptrs[i];
                *info.ac_huff_tbl_ptrs[i] = *tables.ac_huff_tbl_ptrs[i];
            }
            useFloatDct(info);
            info.restart_in_rows = rowsPerInterval;
            info.density_unit = 1;
            info.X_density = info.Y_density = 72;
        }};
    const Bytes file = jpegFile(recipe, rgbSamples(image));
    jpeg_destroy_decompress(&tables);
    return file;
}

class JpegSizes : public testing::TestWithParam<PixelSize> {};

INSTANTIATE_TEST_SUITE_P(Odd, JpegSizes, test::kOddSizes, test::nameOfSize);

TEST_P(JpegSizes, ParallelBlockRowsGiveTheFileOfASingleLibraryCall) {
    for (const Image& image : {shaded(GetParam()), noise(GetParam())}) {
        const Bytes file = encoded(kJpegCodec, image);
        EXPECT_EQ(frameOf(file), frameOf(libraryFile(image, file, 1)));
    }
}

TEST_P(JpegSizes, HeadersEqualTheLibrarys) {
    const Image image = shaded(GetParam());
    const Bytes file = encoded(kJpegCodec, image);
    EXPECT_EQ(file, libraryFile(image, file, 1));
}

TEST_P(JpegSizes, DecodedPixelsEqualThoseOfAPlainEncoding) {
    const auto expectPlain = [](const Image& image, void (*adjust)(jpeg_compress_struct&)) {
        const JpegRecipe plain = {.size = GetParam(), .exif = {}, .icc = {}, .adjust = adjust};
        const Bytes plainFile = jpegFile(plain, rgbSamples(image));
        EXPECT_EQ(jpegSamples(encoded(kJpegCodec, image), JCS_RGB), jpegSamples(plainFile, JCS_RGB));
    };
    expectPlain(shaded(GetParam()), useFloatDct);
    expectPlain(noise(GetParam()), useRgbAndFloatDct);
}

TEST_P(JpegSizes, DecodedPixelsEqualTheLibrarys) {
    const JpegRecipe halved = {
        .size = GetParam(), .quality = 85, .exif = {}, .icc = {}, .adjust = [](jpeg_compress_struct& info) {
            info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 2;
        }};
    const Bytes file = jpegFile(halved, rgbSamples(soft(GetParam())));
    EXPECT_EQ(rgbSamples(decoded(kJpegCodec, file)), jpegSamples(file, JCS_RGB));
    EXPECT_EQ(*kJpegCodec.measure(file), std::vector{GetParam()});
}

TEST_P(JpegSizes, CachedBandsGiveTheSameFile) {
    const Image image = soft(GetParam());
    (void)encoded(kJpegCodec, image);
    const Image edited = withSpot(image, {GetParam().height / 2, GetParam().width / 2});
    const Bytes warm = encoded(kJpegCodec, edited);
    EXPECT_EQ(encoded(kJpegCodec, edited), warm);
    clearCodedBands(edited);
    EXPECT_EQ(encoded(kJpegCodec, edited), warm);
}

TEST(JpegCodec, AfterAnEditOnlyTouchedBandsAreCodedAgain) {
    const Image image = soft({300, 200}); // four bands
    const Result<FileContents> before = kJpegCodec.encode(image);
    const Result<FileContents> after = kJpegCodec.encode(withSpot(image, {70, 10}));
    ASSERT_EQ(before->parts.size(), after->parts.size());
    // The header, the bands with a marker between each two, and the end.
    for (const std::size_t untouched : {1U, 5U, 7U})
        EXPECT_EQ(before->parts[untouched], after->parts[untouched]);
    EXPECT_NE(*before->parts[3], *after->parts[3]);
}

TEST(JpegCodec, HuffmanTablesCoverSymbolsThatEditsAdd) {
    const Image image = filled({256, 256}, RGBA32(128, 128, 128, 255));
    (void)encoded(kJpegCodec, image);
    const Image rough = image.withBands([&] {
        BandList bands = image.bands();
        bands[2] = noise({256, 64}).storedBand(0);
        return bands;
    }());
    const Bytes file = encoded(kJpegCodec, rough);
    const JpegRecipe plain = {.size = {256, 256}, .exif = {}, .icc = {}, .adjust = useFloatDct};
    EXPECT_EQ(jpegSamples(file, JCS_RGB), jpegSamples(jpegFile(plain, rgbSamples(rough)), JCS_RGB));
}

TEST(JpegCodec, LazilyComputedPixelsAreCodedAndNotCached) {
    const Image image = shaded({300, 100});
    const Bytes before = encoded(kJpegCodec, image);
    const Image inverted = image.transformed(std::make_shared<Inversion>());
    EXPECT_EQ(encoded(kJpegCodec, inverted), encoded(kJpegCodec, inverted.materialized()));
    EXPECT_EQ(encoded(kJpegCodec, image), before);
}

TEST(JpegCodec, TransparentPixelsAreCodedOverBlack) {
    const Image image = filled({16, 16}, RGBA32(100, 50, 25, 128));
    const Image back = decoded(kJpegCodec, encoded(kJpegCodec, image));
    EXPECT_EQ(back.pixel(8, 8).alpha(), 255);
    EXPECT_NEAR(back.pixel(8, 8).red(), 100, 1);
    EXPECT_NEAR(back.pixel(8, 8).green(), 50, 1);
    EXPECT_NEAR(back.pixel(8, 8).blue(), 25, 1);
}

TEST(JpegCodec, WritesADensityOfOnePixelPerPoint) {
    const Bytes file = encoded(kJpegCodec, shaded({30, 20}).withSize({15, 10}));
    EXPECT_THAT(ByteView(file).subspan(2, 16),
                testing::ElementsAre(0xFF, 0xE0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 1, 1, 0, 72, 0, 72));
    EXPECT_EQ(decoded(kJpegCodec, file).size(), (PointSize{30, 20}));
}

TEST(JpegCodec, AProfileOfSeveralSegmentsIsPreserved) {
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
    EXPECT_EQ(decoded(kJpegCodec, encoded(kJpegCodec, soft({20, 20}).withProfile(profile))).profile(),
              profile);
    EXPECT_TRUE(decoded(kJpegCodec, encoded(kJpegCodec, soft({20, 20}))).profile().isSrgb());
}

TEST(JpegCodec, AProfileInSegmentsWithoutNumbersIsRead) {
    const ColorProfile profile = ColorProfile::fromIcc(wideProfile());
    Bytes file = encoded(kJpegCodec, soft({20, 20}).withProfile(profile));
    constexpr std::string_view kName = "ICC_PROFILE";
    const auto found = std::ranges::search(file, kName);
    ASSERT_FALSE(found.empty());
    std::fill_n(found.end() + 1, 2, std::uint8_t{0}); // its number and their count
    EXPECT_EQ(decoded(kJpegCodec, file).profile(), profile);
}

TEST(JpegCodec, SidesBeyondTheFormatAreAnError) {
    EXPECT_EQ(kJpegCodec.encode(filled({65501, 1}, grey(9))).error().kind, ErrorKind::FormatCannotHold);
    EXPECT_FALSE(kJpegCodec.encode(filled({1, 65501}, grey(9))));
    EXPECT_FALSE(kJpegCodec.encode(Image()));
    EXPECT_EQ(decoded(kJpegCodec, encoded(kJpegCodec, filled({65500, 9}, grey(9)))).pixelSize(),
              (PixelSize{65500, 9}));
}

TEST(JpegCodec, IsRecognisedByItsFirstBytes) {
    EXPECT_EQ(codecForContent(encoded(kJpegCodec, soft({3, 3}))), &kJpegCodec);
    EXPECT_FALSE(codecForContent(Bytes{0xFF}));
    EXPECT_FALSE(codecForContent(Bytes{}));
}

} // namespace
} // namespace complexion
