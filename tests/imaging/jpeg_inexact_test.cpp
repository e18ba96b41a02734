// SPDX-License-Identifier: GPL-3.0-or-later

// Images that cannot be coded exactly, from the coefficients of their JPEG file, fall back to their pixels.
#include "imaging/codecs/jpeg_coded_rows.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/image_tools.h"
#include "tests/imaging/exact_jpeg_fixture.h"

namespace complexion {
namespace {

using test::decoded;
using test::encoded;
using test::fileOf;
using test::Outcome;
using test::outcomeOf;
using test::withSpot;

/// Why an edited image cannot be coded exactly; empty if it can.
std::string reasonOf(const Image& edited) {
    const auto original = edited.encoderMemory().get<jpeg::OriginalFile>();
    if (!original)
        return "it remembers no file";
    const Result<FileContents> file = original->encode(edited);
    return file ? "" : file.error().message;
}

/// Expects that the image is coded from its pixels, for this reason.
void expectFallback(const Image& edited, const std::string& reason) {
    EXPECT_THAT(reasonOf(edited), testing::HasSubstr(reason));
    const Bytes file = encoded(kJpegCodec, edited);
    const Result<jpeg::TranscodedFile> coded = jpeg::transcode(file);
    ASSERT_TRUE(coded);
    EXPECT_EQ(coded->layout.mcu, (PixelSize{8, 8}));
    EXPECT_EQ(coded->layout.components.size(), 3U);
}

TEST(InexactJpeg, ColorsOnAGreyPictureFallBack) {
    const Image image = decoded(kJpegCodec, fileOf({.name = "", .components = 1}));
    EXPECT_EQ(reasonOf(withSpot(image, {9, 9}, grey(7))), "");
    EXPECT_EQ(reasonOf(withSpot(image, {9, 9}, RGBA32(7, 8, 7, 255))), "")
        << "within the rounding of a repair";
    expectFallback(withSpot(image, {9, 9}), "grey");
    EXPECT_EQ(reasonOf(withSpot(image, {9, 9}, grey(7))), "") << "exact again after undo";
}

TEST(InexactJpeg, AnEffectFallsBack) {
    const Image image = decoded(kJpegCodec, fileOf({.name = "", .sampling = {2, 2, 1, 1, 1, 1}}));
    expectFallback(ImageTools::ApplyEffectOnImage(image, "Process"), "remembers no file");
    expectFallback(ImageTools::ApplyEffectOnImage(image, "Process").materialized(), "remembers no file");
}

TEST(InexactJpeg, ADamagedFileFallsBack) {
    Bytes file = fileOf({.name = "", .sampling = {2, 2, 1, 1, 1, 1}});
    file.resize(file.size() * 2 / 3);
    expectFallback(decoded(kJpegCodec, file), "damaged");
}

TEST(InexactJpeg, AProgressiveFileWithoutItsLastScansFallsBack) {
    static constexpr std::array<jpeg_scan_info, 2> kScans = {{
        {3, {0, 1, 2}, 0, 0, 0, 1}, // DC without its lowest bit
        {3, {0, 1, 2}, 0, 0, 1, 0},
    }};
    const auto withoutAc = [](jpeg_compress_struct& info) {
        info.scan_info = kScans.data();
        info.num_scans = 1;
    };
    expectFallback(decoded(kJpegCodec, fileOf({.name = "", .adjust = withoutAc})), "refinements");
}

TEST(InexactJpeg, CmykFallsBack) {
    const Bytes file =
        jpegFile({.size = {40, 30}, .components = 4, .samples = JCS_CMYK, .exif = {}, .icc = {}},
                 std::vector<std::uint8_t>(40 * 30 * 4, 200));
    expectFallback(decoded(kJpegCodec, file), "remembers no file");
}

TEST(InexactJpeg, CoefficientsBeyondTheRangeFallBack) {
    // The stripes' largest coefficient, 924, is 1.5 quantisation steps: it is rounded up to 1220.
    const auto coarse = [](jpeg_compress_struct& info) {
        std::array<unsigned, DCTSIZE2> steps{};
        steps.fill(610);
        steps[0] = 16;
        jpeg_add_quant_table(&info, 0, steps.data(), 100, FALSE);
    };
    std::vector<std::uint8_t> stripes(256);
    for (std::size_t i = 0; i < stripes.size(); ++i)
        stripes[i] = i % 8 < 4 ? 255 : 0;
    const JpegRecipe recipe = {
        .size = {16, 16}, .components = 1, .samples = JCS_GRAYSCALE, .exif = {}, .icc = {}, .adjust = coarse};
    expectFallback(decoded(kJpegCodec, jpegFile(recipe, stripes)), "range");
}

TEST(InexactJpeg, HardEdgesOfStrongColorsHardlyChangeOtherPixels) {
    for (const std::array<int, 6> sampling :
         {std::array{2, 2, 1, 1, 1, 1}, std::array{2, 1, 1, 1, 1, 1}, std::array{4, 1, 1, 1, 1, 1}})
        for (const int radius : {2, 5, 13}) {
            const Bytes source = fileOf({.name = "", .sampling = sampling});
            Image edited = decoded(kJpegCodec, source);
            const std::vector<std::uint8_t> before = rgbSamples(edited);
            std::vector<PixelPosition> disc;
            for (int y = -radius; y <= radius; ++y)
                for (int x = -radius; x <= radius; ++x)
                    if (x * x + y * y <= radius * radius)
                        disc.push_back({60 + y, 70 + x});
            edited = withPixels(edited, disc, RGBA32(255, 0, 0, 255));
            if (reasonOf(edited) != "") {
                expectFallback(edited, "too coarse");
                continue;
            }
            const Outcome outcome =
                outcomeOf(before, rgbSamples(edited), jpegSamples(encoded(kJpegCodec, edited), JCS_RGB),
                          edited.pixelSize(), jpeg::transcode(source)->layout.mcu);
            EXPECT_EQ(outcome.differentOutside, 0);
            EXPECT_LE(outcome.maxUnpainted, 16);
        }
}

TEST(InexactJpeg, WhatIsRefusedOnceIsSoUntilItIsUndone) {
    const Image photo = decoded(kJpegCodec, fileOf({.name = "", .sampling = {4, 1, 1, 1, 1, 1}}));
    const Image strong = withPixels(photo, {{60, 70}, {60, 71}, {61, 70}}, RGBA32(255, 0, 0, 255));
    ASSERT_EQ(reasonOf(strong), "JPEG: the picture's chroma is too coarse for the edit");
    const PixelPosition elsewhere = {2, 3};
    const RGBA32 there = photo.pixel(2, 3);
    const RGBA32 alike = RGBA32(there.red(), there.green() ^ 1U, there.blue(), 255);
    EXPECT_EQ(reasonOf(withPixels(strong, {elsewhere}, alike)), reasonOf(strong));
    EXPECT_EQ(reasonOf(withPixels(photo, {elsewhere}, alike)), "");
    EXPECT_EQ(reasonOf(photo), "");
    EXPECT_EQ(reasonOf(strong), "JPEG: the picture's chroma is too coarse for the edit");
}

} // namespace
} // namespace complexion
