// SPDX-License-Identifier: GPL-3.0-or-later

// Saving an edited JPEG photo changes no pixel outside the MCUs that the edit touches.
#include "imaging/codecs/jpeg_coded_rows.h"
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
using Kind = test::JpegKind;

void codeRgb(jpeg_compress_struct& info) {
    jpeg_set_colorspace(&info, JCS_RGB);
}
void codeProgression(jpeg_compress_struct& info) {
    jpeg_simple_progression(&info);
}
void codeArithmetic(jpeg_compress_struct& info) {
    info.arith_code = TRUE;
}
void codeArithmeticProgression(jpeg_compress_struct& info) {
    info.arith_code = TRUE;
    jpeg_simple_progression(&info);
}
void restartOften(jpeg_compress_struct& info) {
    info.restart_interval = 5;
}

const auto kKinds = testing::Values(
    Kind{"Full"}, Kind{"HalvedAcross", 3, {2, 1, 1, 1, 1, 1}}, Kind{"HalvedDown", 3, {1, 2, 1, 1, 1, 1}},
    Kind{"HalvedBoth", 3, {2, 2, 1, 1, 1, 1}}, Kind{"Quartered", 3, {4, 1, 1, 1, 1, 1}},
    Kind{"QuarteredBoth", 3, {4, 2, 1, 1, 1, 1}}, Kind{"UnlikeChromas", 3, {2, 2, 2, 1, 1, 2}},
    Kind{"AllTwice", 3, {2, 1, 2, 1, 2, 1}}, Kind{"CoarseLuminance", 3, {1, 1, 2, 2, 2, 1}}, Kind{"Grey", 1},
    Kind{"GreyTwice", 1, {2, 2}}, Kind{"Rgb", 3, {1, 1, 1, 1, 1, 1}, codeRgb},
    Kind{"RgbHalved", 3, {2, 2, 1, 1, 1, 1}, codeRgb},
    Kind{"Progressive", 3, {2, 2, 1, 1, 1, 1}, codeProgression},
    Kind{"Arithmetic", 3, {2, 2, 1, 1, 1, 1}, codeArithmetic},
    Kind{"ArithmeticProgressive", 3, {2, 1, 1, 1, 1, 1}, codeArithmeticProgression},
    Kind{"Restarts", 3, {2, 2, 1, 1, 1, 1}, restartOften},
    Kind{.name = "OnePixel", .sampling = {2, 2, 1, 1, 1, 1}, .size = {1, 1}},
    Kind{.name = "Narrow", .sampling = {2, 2, 1, 1, 1, 1}, .size = {3, 90}},
    Kind{.name = "Low", .sampling = {2, 1, 1, 1, 1, 1}, .size = {90, 3}},
    Kind{.name = "Turned2", .sampling = {2, 2, 1, 1, 1, 1}, .orientation = 2},
    Kind{.name = "Turned3", .sampling = {2, 2, 1, 1, 1, 1}, .orientation = 3},
    Kind{.name = "Turned4", .sampling = {2, 1, 1, 1, 1, 1}, .orientation = 4},
    Kind{.name = "Turned5", .sampling = {2, 1, 1, 1, 1, 1}, .orientation = 5},
    Kind{.name = "Turned6", .sampling = {2, 2, 1, 1, 1, 1}, .orientation = 6},
    Kind{.name = "Turned7", .sampling = {1, 2, 1, 1, 1, 1}, .orientation = 7},
    Kind{.name = "Turned8", .sampling = {2, 2, 1, 1, 1, 1}, .orientation = 8});

class ExactJpeg : public testing::TestWithParam<Kind> {
protected:
    Orientation orientation() const { return orientationFromTag(GetParam().orientation); }

    /// The encoded file of an edited image, in the orientation of the source.
    Bytes saved(const Image& upright) const {
        const Result<FileContents> file = kJpegCodec.encodeTurned(upright, orientation());
        EXPECT_TRUE(file);
        return file ? file->joined() : Bytes();
    }

    /// The RGB samples that the library decodes, in the stored orientation.
    static std::vector<std::uint8_t> samplesOf(const Bytes& file) { return jpegSamples(file, JCS_RGB); }

    std::vector<std::uint8_t> samplesOf(const Image& upright) const {
        return rgbSamples(turnedForStorage(upright, orientation()));
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, ExactJpeg, kKinds,
                         [](const testing::TestParamInfo<Kind>& test) { return test.param.name; });

/// The picture with random soft, lighter discs.
Image retouched(const Image& image, int discs, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<RGBA32> pixels(static_cast<std::size_t>(image.pixelSize().area()));
    const PixelSize size = image.pixelSize();
    Image result = image;
    for (int i = 0; i < discs; ++i) {
        const int x0 = static_cast<int>(random() % static_cast<unsigned>(size.width));
        const int y0 = static_cast<int>(random() % static_cast<unsigned>(size.height));
        for (int y = std::max(0, y0 - 6); y < std::min(size.height, y0 + 7); ++y)
            for (int x = std::max(0, x0 - 6); x < std::min(size.width, x0 + 7); ++x) {
                const int distance = (x - x0) * (x - x0) + (y - y0) * (y - y0); // squared
                if (distance > 36)
                    continue;
                const RGBA32 old = image.pixel(y, x);
                const int lift = (36 - distance) / 3;
                const bool isGrey = old.red() == old.green() && old.red() == old.blue();
                const auto lifted = [&](int value, int by) {
                    return static_cast<std::uint8_t>(std::clamp(value + by, 0, 255));
                };
                result =
                    withSpot(result, {y, x},
                             RGBA32(lifted(old.red(), lift), lifted(old.green(), isGrey ? lift : lift / 2),
                                    lifted(old.blue(), isGrey ? lift : lift / 3), 255));
            }
    }
    return result;
}

TEST_P(ExactJpeg, AnUneditedPictureIsPreservedExactly) {
    const Bytes source = fileOf(GetParam());
    const Bytes file = saved(decoded(kJpegCodec, source));
    EXPECT_EQ(samplesOf(file), samplesOf(source));
}

TEST_P(ExactJpeg, TheFileHasTheLayoutAndCoefficientsOfTheSource) {
    const Result<jpeg::TranscodedFile> source = jpeg::transcode(fileOf(GetParam()));
    ASSERT_TRUE(source) << source.error().message;
    const Result<jpeg::TranscodedFile> file = jpeg::transcode(saved(decoded(kJpegCodec, fileOf(GetParam()))));
    ASSERT_TRUE(file) << file.error().message;
    EXPECT_EQ(file->layout.mcu, source->layout.mcu);
    EXPECT_EQ(file->layout.colorSpace, source->layout.colorSpace);
    for (int row = 0; row < source->layout.mcusDown; ++row)
        EXPECT_EQ(*jpeg::decodeMcuRow(*file, row), *jpeg::decodeMcuRow(*source, row));
}

TEST_P(ExactJpeg, NothingChangesOutsideTheTouchedMcus) {
    const Bytes source = fileOf(GetParam());
    const Image image = decoded(kJpegCodec, source);
    const Image edited = retouched(image, 3, 1);
    const Bytes file = saved(edited);
    const PixelSize stored = turnedForStorage(image, orientation()).pixelSize();
    const Outcome outcome = outcomeOf(samplesOf(source), samplesOf(edited), samplesOf(file), stored,
                                      jpeg::transcode(source)->layout.mcu);
    EXPECT_EQ(outcome.differentOutside, 0);
    EXPECT_LE(outcome.maxUnpainted, 16);
    EXPECT_LE(outcome.meanInside, 2);
}

/// Skin with a blemish, as a camera codes it.
Bytes blemishedPhoto(const std::array<int, 6>& sampling, PixelPosition blemish) {
    const Image skin = skinWithBlemishes({205, 147}, {blemish});
    std::mt19937 engine(7);
    std::normal_distribution<double> noise(0, 3);
    std::vector<std::uint8_t> samples = rgbSamples(skin);
    for (std::uint8_t& sample : samples)
        sample = static_cast<std::uint8_t>(std::clamp(sample + noise(engine), 0.0, 255.0));
    const auto sampled = [&](jpeg_compress_struct& info) {
        for (std::size_t i = 0; i < 3; ++i) {
            info.comp_info[i].h_samp_factor = sampling[2 * i];
            info.comp_info[i].v_samp_factor = sampling[2 * i + 1];
        }
    };
    return jpegFile({.size = skin.pixelSize(), .quality = 90, .exif = {}, .icc = {}, .adjust = sampled},
                    samples);
}

TEST(ExactJpegRepair, IsSavedNearlyAsPainted) {
    const PixelPosition blemish = {70, 100};
    for (const auto& [sampling, maxMean] :
         {std::pair(std::array{1, 1, 1, 1, 1, 1}, 0.25), std::pair(std::array{2, 1, 1, 1, 1, 1}, 0.3),
          std::pair(std::array{2, 2, 1, 1, 1, 1}, 0.3)}) {
        const Bytes source = blemishedPhoto(sampling, blemish);
        const Image photo = decoded(kJpegCodec, source);
        const Image repaired = *ImageTools::HealPimpleInImage(photo, centreOf(blemish, photo.size()), 16, 10);
        const Outcome outcome = outcomeOf(rgbSamples(photo), rgbSamples(repaired),
                                          jpegSamples(encoded(kJpegCodec, repaired), JCS_RGB),
                                          photo.pixelSize(), jpeg::transcode(source)->layout.mcu);
        EXPECT_EQ(outcome.differentOutside, 0);
        EXPECT_LE(outcome.maxUnpainted, 4);
        EXPECT_GT(outcome.meanInside, 0) << "nothing was painted";
        EXPECT_LE(outcome.meanInside, maxMean);
    }
}

TEST_P(ExactJpeg, SavingBetweenEditsDoesNotChangeTheFile) {
    const Image image = decoded(kJpegCodec, fileOf(GetParam()));
    Image edited = image;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        edited = retouched(edited, 1, seed);
        (void)saved(edited);
    }
    const Image again = decoded(kJpegCodec, fileOf(GetParam()));
    EXPECT_EQ(saved(edited), saved(again.withBands(edited.bands())));
}

TEST_P(ExactJpeg, UndoneEditsDoNotChangeTheFile) {
    const Image image = decoded(kJpegCodec, fileOf(GetParam()));
    const Bytes before = saved(image);
    (void)saved(retouched(image, 4, 3));
    EXPECT_EQ(saved(image), before);
}

TEST_P(ExactJpeg, TenSavesInARowChangeNothingOutside) {
    Bytes file = fileOf(GetParam());
    const std::vector<std::uint8_t> source = samplesOf(file);
    const PixelSize mcu = jpeg::transcode(file)->layout.mcu;
    std::vector<std::uint8_t> painted = source;
    PixelSize stored;
    Orientation turn = orientation();
    for (unsigned round = 1; round <= 10; ++round) {
        // The saved file has no orientation: from the second round on it is opened as stored.
        const Image image = decoded(kJpegCodec, file);
        const Image edited = retouched(image, 1, round);
        file = kJpegCodec.encodeTurned(edited, turn)->joined();
        const Image before = turnedForStorage(image, turn);
        const Image after = turnedForStorage(edited, turn);
        stored = before.pixelSize();
        const std::vector<std::uint8_t> one = rgbSamples(before);
        const std::vector<std::uint8_t> other = rgbSamples(after);
        for (std::size_t i = 0; i < one.size(); ++i)
            if (one[i] != other[i])
                painted[i] = static_cast<std::uint8_t>(source[i] ^ 1); // mark as touched
        turn = Orientation::TopLeft;
    }
    EXPECT_EQ(outcomeOf(source, painted, samplesOf(file), stored, mcu).differentOutside, 0);
}

} // namespace
} // namespace complexion
