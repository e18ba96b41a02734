// SPDX-License-Identifier: GPL-3.0-or-later

// What an edit leaves of a JPEG picture: every pixel outside the MCUs that it touches, to the bit.
#include "imaging/codecs/jpeg_coded_rows.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/codecs/jpeg_transform.h"
#include "imaging/image_tools.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/imaging/codec_pictures.h"

#include <cmath>
#include <cstdlib>
#include <numeric>
#include <random>

namespace complexion {
namespace {

using test::decoded;
using test::encoded;
using test::withSpot;

/// Shading, noise and colours that change within a few pixels, as skin, hair and cloth have them.
std::vector<std::uint8_t> photoSamples(PixelSize size, int components) {
    std::mt19937 engine(7);
    std::normal_distribution<double> noise(0, 6);
    std::vector<std::uint8_t> samples;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            for (int c = 0; c < components; ++c)
                samples.push_back(static_cast<std::uint8_t>(std::clamp(
                    170 - 30 * c + 40 * std::sin(x / (9.0 + c)) * std::cos(y / 7.0) + noise(engine), 0.0,
                    255.0)));
    return samples;
}

/// A kind of file that the exact way takes.
struct Kind {
    const char* name;
    int components = 3;
    std::array<int, 6> sampling = {1, 1, 1, 1, 1, 1}; // across and down, of each component
    void (*adjust)(jpeg_compress_struct&) = [](jpeg_compress_struct&) {};
    int orientation = 1;
    PixelSize size = {205, 147};
};

Bytes fileOf(const Kind& kind, int quality = 85) {
    return jpegFile({.size = kind.size,
                     .components = kind.components,
                     .samples = kind.components == 1 ? JCS_GRAYSCALE : JCS_RGB,
                     .quality = quality,
                     .exif = {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1,
                              1,   18,  0, 3,  0, 0, 0, 1, 0, static_cast<std::uint8_t>(kind.orientation),
                              0,   0,   0, 0,  0, 0},
                     .icc = {},
                     .adjust =
                         [&](jpeg_compress_struct& info) {
                             for (int i = 0; i < kind.components; ++i) {
                                 info.comp_info[i].h_samp_factor =
                                     kind.sampling[static_cast<std::size_t>(2 * i)];
                                 info.comp_info[i].v_samp_factor =
                                     kind.sampling[static_cast<std::size_t>(2 * i + 1)];
                             }
                             kind.adjust(info);
                         }},
                    photoSamples(kind.size, kind.components));
}

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

    /// What the encoder makes of an edited image, stored as the source is.
    Bytes saved(const Image& upright) const {
        const Result<FileContents> file = kJpegCodec.encodeTurned(upright, orientation());
        EXPECT_TRUE(file);
        return file ? file->joined() : Bytes();
    }

    /// Red, green and blue as the library decodes the file, as it is stored.
    static std::vector<std::uint8_t> samplesOf(const Bytes& file) { return jpegSamples(file, JCS_RGB); }

    std::vector<std::uint8_t> samplesOf(const Image& upright) const {
        return rgbSamples(turnedForStorage(upright, orientation()));
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, ExactJpeg, kKinds,
                         [](const testing::TestParamInfo<Kind>& test) { return test.param.name; });

/// The picture with discs of another skin on it.
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
                const int far = (x - x0) * (x - x0) + (y - y0) * (y - y0);
                if (far > 36)
                    continue;
                const RGBA32 old = image.pixel(y, x);
                const int lift = (36 - far) / 3;
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

/// Where two pictures' samples differ, with the size of an MCU: each pixel's MCU by its number.
struct Outcome {
    std::int64_t differentOutside = 0;
    int mostUnpainted = 0;
    double meanInside = 0;
};

Outcome outcomeOf(const std::vector<std::uint8_t>& source, const std::vector<std::uint8_t>& painted,
                  const std::vector<std::uint8_t>& file, PixelSize size, PixelSize mcu) {
    const int across = (size.width + mcu.width - 1) / mcu.width;
    const int down = (size.height + mcu.height - 1) / mcu.height;
    std::vector<bool> touched(static_cast<std::size_t>(across) * static_cast<std::size_t>(down));
    const auto mcuOf = [&](std::size_t i) {
        const int pixel = static_cast<int>(i / 3);
        return static_cast<std::size_t>(pixel / size.width / mcu.height * across +
                                        pixel % size.width / mcu.width);
    };
    for (std::size_t i = 0; i < source.size(); ++i)
        if (source[i] != painted[i])
            touched[mcuOf(i)] = true;
    Outcome outcome;
    std::int64_t sum = 0;
    std::int64_t count = 0;
    for (std::size_t i = 0; i < source.size(); ++i) {
        const int apart = std::abs(painted[i] - file[i]);
        if (!touched[mcuOf(i)]) {
            outcome.differentOutside += apart != 0 ? 1 : 0;
            continue;
        }
        sum += apart;
        ++count;
        const std::size_t pixel = i - i % 3;
        if (std::equal(source.begin() + static_cast<std::ptrdiff_t>(pixel),
                       source.begin() + static_cast<std::ptrdiff_t>(pixel + 3),
                       painted.begin() + static_cast<std::ptrdiff_t>(pixel)))
            outcome.mostUnpainted = std::max(outcome.mostUnpainted, apart);
    }
    outcome.meanInside = count > 0 ? static_cast<double>(sum) / static_cast<double>(count) : 0;
    return outcome;
}

TEST_P(ExactJpeg, AnUneditedPictureComesBackToTheBit) {
    const Bytes source = fileOf(GetParam());
    const Bytes file = saved(decoded(kJpegCodec, source));
    EXPECT_EQ(samplesOf(file), samplesOf(source));
}

TEST_P(ExactJpeg, WhatIsWrittenHasTheLayoutOfTheSourceAndOneInterval) {
    const Result<CodedJpeg> source = codedExactly(fileOf(GetParam()));
    ASSERT_TRUE(source) << source.error().message;
    const Result<CodedJpeg> file = codedExactly(saved(decoded(kJpegCodec, fileOf(GetParam()))));
    ASSERT_TRUE(file) << file.error().message;
    EXPECT_EQ(file->layout.mcu, source->layout.mcu);
    EXPECT_EQ(file->layout.colors, source->layout.colors);
    for (int row = 0; row < source->layout.mcusDown; ++row)
        EXPECT_EQ(*mcuRowOf(*file, row), *mcuRowOf(*source, row));
}

TEST_P(ExactJpeg, NothingChangesOutsideTheTouchedMcus) {
    const Bytes source = fileOf(GetParam());
    const Image image = decoded(kJpegCodec, source);
    const Image edited = retouched(image, 3, 1);
    const Bytes file = saved(edited);
    const PixelSize stored = turnedForStorage(image, orientation()).pixelSize();
    const Outcome outcome = outcomeOf(samplesOf(source), samplesOf(edited), samplesOf(file), stored,
                                      codedExactly(source)->layout.mcu);
    EXPECT_EQ(outcome.differentOutside, 0);
    EXPECT_LE(outcome.mostUnpainted, 16);
    EXPECT_LE(outcome.meanInside, 2);
}

TEST_P(ExactJpeg, EditsOneByOneGiveTheFileOfAllAtOnce) {
    const Image image = decoded(kJpegCodec, fileOf(GetParam()));
    Image edited = image;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        edited = retouched(edited, 1, seed);
        (void)saved(edited);
    }
    const Image again = decoded(kJpegCodec, fileOf(GetParam()));
    EXPECT_EQ(saved(edited), saved(again.withBands(edited.bands())));
}

TEST_P(ExactJpeg, UndoneEditsLeaveNoTrace) {
    const Image image = decoded(kJpegCodec, fileOf(GetParam()));
    const Bytes before = saved(image);
    (void)saved(retouched(image, 4, 3));
    EXPECT_EQ(saved(image), before);
}

TEST_P(ExactJpeg, TenSavesInARowChangeNothingOutside) {
    Bytes file = fileOf(GetParam());
    const std::vector<std::uint8_t> source = samplesOf(file);
    const PixelSize mcu = codedExactly(file)->layout.mcu;
    std::vector<std::uint8_t> painted = source;
    PixelSize stored;
    Orientation turn = orientation();
    for (unsigned round = 1; round <= 10; ++round) {
        // The file states no orientation: from the second time on it is opened as it is stored.
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
                painted[i] = static_cast<std::uint8_t>(source[i] ^ 1); // touched, whatever came of it
        turn = Orientation::TopLeft;
    }
    EXPECT_EQ(outcomeOf(source, painted, samplesOf(file), stored, mcu).differentOutside, 0);
}

TEST(ExactJpegWay, TheTransformIsTheLibrarysToTheBit) {
    // One block for each of many random sets of coefficients, from tame ones to the edges of the range.
    std::mt19937 random(5);
    for (const int reach : {3, 40, 300, 1023}) {
        JpegLayout layout{.size = {8 * 64, 8}, .colors = JpegColors::Grey, .components = {{}}, .mcu = {8, 8}};
        layout.components[0].samples = layout.size;
        layout.mcusAcross = 64;
        layout.mcusDown = 1;
        JpegMcuRow row = emptyMcuRow(layout);
        for (JpegBlock& block : row[0])
            for (std::size_t k = 0; k < (reach > 300 ? 4 : kJpegBlockArea); ++k)
                block[k] = static_cast<std::int16_t>(static_cast<int>(random() % (2 * reach + 1)) - reach);
        const Image image = decoded(kJpegCodec, fileOf({.name = "", .components = 1, .size = layout.size}));
        Result<CodedJpeg> jpeg = codedExactly(fileOf({.name = "", .components = 1, .size = layout.size}));
        ASSERT_TRUE(jpeg);
        Bytes file = jpeg->header;
        const Result<Bytes> coded = codedMcuRow(*jpeg, 0, row);
        ASSERT_TRUE(coded);
        file.insert(file.end(), coded->begin(), coded->end());
        file.insert(file.end(), {0xFF, 0xD9});
        const std::vector<std::uint8_t> samples = jpegSamples(file, JCS_GRAYSCALE);
        for (std::size_t block = 0; block < row[0].size(); ++block) {
            const JpegSamples made = decodedSamples(row[0][block]);
            for (std::size_t i = 0; i < made.size(); ++i)
                ASSERT_EQ(made[i], samples[i / 8 * 8 * 64 + block * 8 + i % 8]) << reach;
        }
    }
}

TEST(ExactJpegWay, TransformsUndoEachOther) {
    JpegFloats samples{};
    std::iota(samples.begin(), samples.end(), 60.0F);
    const JpegFloats back = inverseTransform(forwardTransform(samples));
    for (std::size_t i = 0; i < samples.size(); ++i)
        EXPECT_NEAR(back[i], samples[i], 1e-3);
}

} // namespace
} // namespace complexion
