// SPDX-License-Identifier: GPL-3.0-or-later

// Photos with 16 bits a sample are saved without loss: samples that no repair touched are unchanged.
#include "imaging/codecs/codec.h"
#include "imaging/containers/byte_order.h"
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"
#include "imaging/repairs.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/imaging/deep_files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace complexion {
namespace {

using test::DeepKind;

constexpr PixelSize kSize = {300, 140}; // more than a tile and a band
constexpr RgbColor kPaint = {0.25, 0.5, 0.75};

const std::vector<DeepKind> kKinds = {
    {.name = "PngGrey", .isPng = true, .isGrey = true},
    {.name = "PngGreyAlpha", .isPng = true, .isGrey = true, .hasAlpha = true},
    {.name = "PngRgb", .isPng = true},
    {.name = "PngRgba", .isPng = true, .hasAlpha = true},
    {.name = "PngInterlaced", .isPng = true, .hasAlpha = true, .isInterlaced = true},
    {.name = "TiffGrey", .isGrey = true},
    {.name = "TiffGreyBigEndian", .isGrey = true, .mode = "wb"},
    {.name = "TiffGreyAlpha", .isGrey = true, .hasAlpha = true},
    {.name = "TiffRgb"},
    {.name = "TiffRgbBigEndian", .mode = "wb"},
    {.name = "TiffRgbBig", .mode = "w8l"},
    {.name = "TiffStraightAlpha", .hasAlpha = true},
    {.name = "TiffAssociatedAlpha", .hasAlpha = true, .alphaKind = EXTRASAMPLE_ASSOCALPHA},
    {.name = "TiffPlanar", .isPlanar = true},
    {.name = "TiffPlanarBigEndianTiled", .hasAlpha = true, .isPlanar = true, .isTiled = true, .mode = "wb"},
    {.name = "TiffTiled", .isTiled = true},
    {.name = "TiffLzw", .compression = COMPRESSION_LZW},
    {.name = "TiffLzwBigEndian", .mode = "wb", .compression = COMPRESSION_LZW},
    {.name = "TiffDeflate", .isTiled = true, .compression = COMPRESSION_ADOBE_DEFLATE},
    {.name = "TiffDeflateBigEndian", .mode = "wb", .compression = COMPRESSION_ADOBE_DEFLATE},
    {.name = "TiffPackBits", .mode = "wb", .compression = COMPRESSION_PACKBITS},
    {.name = "TiffTurned", .hasAlpha = true, .orientation = 6},
    {.name = "TiffTurnedBigEndian", .mode = "wb", .orientation = 8},
    {.name = "TiffMirrored", .isGrey = true, .orientation = 2},
};

class OneDeepFile : public testing::Test {
protected:
    std::filesystem::path photo(const DeepKind& kind, const FileSamples& samples) const {
        std::filesystem::path path = folder.path() / (kind.isPng ? "photo.png" : "photo.tiff");
        const Bytes file = deepFile(samples, kind);
        writeFile(path, {file.begin(), file.end()});
        return path;
    }

    /// Saves `image` and returns the samples of the file.
    FileSamples saved(const Image& image, const std::filesystem::path& source) const {
        const bool isPng = source.extension() == ".png";
        const std::filesystem::path path = folder.path() / (isPng ? "saved.png" : "saved.tiff");
        EXPECT_TRUE(savePhoto(image, path, isPng ? "png" : "tiff", source));
        const std::string bytes = contentsOf(path);
        return isPng ? samplesOfPng(bytesOf(bytes)) : test::samplesOfTiff(path);
    }

    /// Saves a photo with a repair: its samples change only where the repair painted.
    void expectOnlyRepairedPixelsChange(const DeepKind& kind,
                                        const std::function<Image(const Image&)>& repair) const;

    TemporaryFolder folder;
};

class DeepFiles : public OneDeepFile, public testing::WithParamInterface<DeepKind> {};

INSTANTIATE_TEST_SUITE_P(Kinds, DeepFiles, testing::ValuesIn(kKinds),
                         [](const auto& test) { return test.param.name; });

Point centerOf(const Image& image) {
    return {image.size().width / 2, image.size().height / 2};
}

Image painted(const Image& image) {
    return *ImageTools::RemovePimpleFromImage(image, centerOf(image), 8, kCustomColor, kPaint, 20);
}

void expectSame(const FileSamples& actual, const FileSamples& expected) {
    EXPECT_EQ(actual.size, expected.size);
    EXPECT_EQ(actual.bits, expected.bits);
    EXPECT_EQ(actual.perPixel, expected.perPixel);
    EXPECT_TRUE(actual.values == expected.values);
}

TEST_P(DeepFiles, AnUneditedPhotoIsSavedWithoutLoss) {
    const FileSamples samples = test::skinSamples(kSize, GetParam());
    const std::filesystem::path source = photo(GetParam(), samples);
    expectSame(saved(openPhoto(source)->image, source), samples);
}

void OneDeepFile::expectOnlyRepairedPixelsChange(const DeepKind& kind,
                                                 const std::function<Image(const Image&)>& repair) const {
    const FileSamples samples = test::skinSamples(kSize, kind);
    const std::filesystem::path source = photo(kind, samples);
    const Image before = openPhoto(source)->image;
    const Image after = repair(before);
    const FileSamples result = saved(after, source);
    ASSERT_EQ(result.bits, 16);
    ASSERT_EQ(result.perPixel, samples.perPixel);
    // The orientation moves the touched pixels, but their number stays the same.
    int changed = 0;
    int touched = 0;
    for (int row = 0; row < kSize.height; ++row)
        for (int column = 0; column < kSize.width; ++column)
            changed += std::equal(samples.pixel(row, column), samples.pixel(row, column) + samples.perPixel,
                                  result.pixel(row, column))
                           ? 0
                           : 1;
    for (int row = 0; row < after.pixelSize().height; ++row)
        for (int column = 0; column < after.pixelSize().width; ++column)
            touched += after.pixel(row, column) == before.pixel(row, column) ? 0 : 1;
    EXPECT_GT(touched, 20);
    EXPECT_GE(changed, touched);
    EXPECT_LE(changed, touched + touched / 4); // some change by less than an 8-bit level
}

TEST_P(DeepFiles, ANaturalRepairChangesOnlyRepairedPixels) {
    expectOnlyRepairedPixelsChange(GetParam(), [](const Image& image) {
        return *ImageTools::HealPimpleInImage(image, centerOf(image), 10, 10);
    });
}

TEST_P(DeepFiles, AStrokeChangesOnlyRepairedPixels) {
    expectOnlyRepairedPixelsChange(GetParam(), [](const Image& image) {
        const Point centre = centerOf(image);
        return repairAlong(image, std::vector<Point>{{centre.x - 8, centre.y}, {centre.x + 8, centre.y}}, 10,
                           10)
            ->image;
    });
}

TEST_P(DeepFiles, AreSavedWith8BitsUnderAnEffect) {
    const FileSamples samples = test::skinSamples(kSize, GetParam());
    const std::filesystem::path source = photo(GetParam(), samples);
    const Image image = openPhoto(source)->image;
    EXPECT_EQ(saved(ImageTools::ApplyEffectOnImage(image, "Chrome"), source).bits, 8);
}

TEST_P(DeepFiles, HaveStatesWith8Bits) {
    const std::filesystem::path source = photo(GetParam(), test::skinSamples(kSize, GetParam()));
    const std::filesystem::path path = folder.path() / "state";
    ASSERT_TRUE(ImageTools::SaveImage(openPhoto(source)->image, path, GetParam().isPng ? "png" : "tiff"));
    const std::string bytes = contentsOf(path);
    EXPECT_EQ((GetParam().isPng ? samplesOfPng(bytesOf(bytes)) : test::samplesOfTiff(path)).bits, 8);
}

TEST_P(DeepFiles, DamagedFilesAreReadInPartOrRefused) {
    // Larger than what one thread decodes alone.
    const Bytes file = deepFile(test::skinSamples({620, 450}, GetParam()), GetParam());
    const Codec& codec = GetParam().isPng ? kPngCodec : kTiffCodec;
    std::minstd_rand random(1);
    int read = 0;
    for (int round = 0; round < 40; ++round) {
        Bytes damaged = file;
        for (int i = 0; i < 1 + round % 4; ++i)
            damaged[random() % damaged.size()] ^= static_cast<std::uint8_t>(1 + random() % 255);
        if (round % 3 == 0)
            damaged.resize(damaged.size() - random() % (damaged.size() / 2));
        const Result<DecodedPicture> picture = codec.read(damaged);
        if (!picture)
            continue;
        ++read;
        EXPECT_TRUE(picture->image.hasPixels());
    }
    EXPECT_GT(read, 5);
}

TEST_F(OneDeepFile, AStripThatIsReadRowByRowIsReadOnce) {
    // Strips of more than 64 MiB are not decoded as a whole.
    const PixelSize size = {3000, 4000};
    const DeepKind kind = {
        .name = "TiffOneStrip", .compression = COMPRESSION_ADOBE_DEFLATE, .rowsPerStrip = 4000};
    FileSamples samples{.size = size, .bits = 16, .perPixel = 3, .values = {}};
    samples.values.assign(static_cast<std::size_t>(size.area()) * 3, 0x1234);
    Bytes file = deepFile(samples, kind);
    const Result<DecodedPicture> whole = kTiffCodec.read(file);
    ASSERT_TRUE(whole);
    EXPECT_FALSE(whole->damage);
    for (std::size_t i = file.size() / 2; i < file.size() / 2 + 8; ++i)
        file[i] ^= 0x5a;
    const Result<DecodedPicture> damaged = kTiffCodec.read(file);
    ASSERT_TRUE(damaged);
    EXPECT_TRUE(damaged->damage);
}

TEST_F(OneDeepFile, PaintedPixelsHaveThePaintWidenedTo16Bits) {
    const DeepKind kind = {.name = "TiffRgb"};
    const FileSamples samples = test::skinSamples(kSize, kind);
    const std::filesystem::path source = photo(kind, samples);
    const Image before = openPhoto(source)->image;
    const Image after = painted(before);
    const FileSamples result = saved(after, source);
    int count = 0;
    for (int row = 0; row < kSize.height; ++row)
        for (int column = 0; column < kSize.width; ++column) {
            const bool isPainted = !(after.pixel(row, column) == before.pixel(row, column));
            count += isPainted ? 1 : 0;
            const RGBA32 pixel = after.pixel(row, column);
            const std::array<int, 3> wide = {pixel.red() * 257, pixel.green() * 257, pixel.blue() * 257};
            for (int s = 0; s < 3; ++s)
                ASSERT_EQ(result.pixel(row, column)[s],
                          isPainted ? wide[static_cast<std::size_t>(s)] : samples.pixel(row, column)[s]);
        }
    EXPECT_GT(count, 20);
}

TEST_F(OneDeepFile, AGreyPhotoPaintedInColorBecomesRgb) {
    const DeepKind kind = {.name = "TiffGrey", .isGrey = true};
    const FileSamples samples = test::skinSamples(kSize, kind);
    const std::filesystem::path source = photo(kind, samples);
    const FileSamples result = saved(painted(openPhoto(source)->image), source);
    EXPECT_EQ(result.bits, 16);
    ASSERT_EQ(result.perPixel, 3);
    for (int s = 0; s < 3; ++s)
        EXPECT_EQ(result.pixel(0, 0)[s], *samples.pixel(0, 0));
}

TEST_F(OneDeepFile, WhiteIsZeroIsWrittenAsBlackIsZero) {
    const DeepKind kind = {.name = "TiffWhiteIsZero", .isGrey = true, .isBlackZero = false};
    FileSamples samples = test::skinSamples(kSize, kind);
    const std::filesystem::path source = photo(kind, samples);
    const FileSamples result = saved(openPhoto(source)->image, source);
    for (std::uint16_t& value : samples.values)
        value = static_cast<std::uint16_t>(UINT16_MAX - value);
    expectSame(result, samples);
}

TEST_F(OneDeepFile, TenSuccessiveSavesAreLossless) {
    const DeepKind kind = {.name = "TiffRgba", .hasAlpha = true, .mode = "wb"};
    const FileSamples samples = test::skinSamples(kSize, kind);
    std::filesystem::path source = photo(kind, samples);
    for (int i = 0; i < 10; ++i) {
        const std::filesystem::path next = folder.path() / ("saved" + std::to_string(i) + ".tiff");
        ASSERT_TRUE(savePhoto(openPhoto(source)->image, next, "tiff", source));
        source = next;
    }
    expectSame(test::samplesOfTiff(source), samples);
}

TEST_F(OneDeepFile, AGreyTiffPhotoOfEightBitsStaysGreyUnlessPaintedInColor) {
    for (const bool hasAlpha : {false, true})
        for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
            const int perPixel = hasAlpha ? 2 : 1;
            const PixelSize size = {90, 70};
            FileSamples samples{.size = size, .bits = 8, .perPixel = perPixel, .values = {}};
            for (int i = 0; i < size.area(); ++i) {
                const bool isDark = std::abs(i / size.width - size.height / 2) < 3 &&
                                    std::abs(i % size.width - size.width / 2) < 3;
                samples.values.push_back(static_cast<std::uint16_t>(isDark ? 20 : 150 + i % 7));
                if (hasAlpha)
                    samples.values.push_back(i < 90 ? 0 : 255);
            }
            for (int i = 0; hasAlpha && i < 90; ++i)
                samples.values[static_cast<std::size_t>(2 * i)] = 0; // clear
            const std::filesystem::path source = folder.path() / "photo.tiff";
            test::TiffWriter writer;
            writer.begin(size, perPixel, 8, PHOTOMETRIC_MINISBLACK, compression);
            if (hasAlpha)
                writer.extraSample(EXTRASAMPLE_ASSOCALPHA);
            const std::vector<std::uint8_t> bytes(samples.values.begin(), samples.values.end());
            writer.strip(bytes.data(), bytes.size());
            const Bytes file = writer.finish();
            writeFile(source, {file.begin(), file.end()});
            const Image image = openPhoto(source)->image;
            expectSame(saved(image, source), samples);
            EXPECT_EQ(saved(painted(image), source).perPixel, perPixel + 2);
        }
}

TEST_F(OneDeepFile, PhotosWith8BitsAndPalettesStayAt8Bits) {
    for (const bool isPng : {true, false}) {
        DeepKind kind = {.name = "Eight", .isPng = isPng};
        FileSamples samples = test::skinSamples(kSize, kind);
        samples.bits = 8;
        if (isPng) {
            const PngRecipe recipe{.size = kSize,
                                   .colorType = PNG_COLOR_TYPE_PALETTE,
                                   .adjust = [](png_structp png, png_infop info) {
                                       const std::array<png_color, 2> colors = {{{9, 8, 7}, {1, 2, 3}}};
                                       png_set_PLTE(png, info, colors.data(), 2);
                                   }};
            const Bytes file = pngFile(recipe, std::vector<std::uint8_t>(300 * 140));
            writeFile(folder.path() / "photo.png", {file.begin(), file.end()});
        } else {
            const Image image = noise(kSize);
            const Bytes file = test::rgbTiff(image, [](TIFF*) {});
            writeFile(folder.path() / "photo.tiff", {file.begin(), file.end()});
        }
        const std::filesystem::path source = folder.path() / (isPng ? "photo.png" : "photo.tiff");
        const Image image = openPhoto(source)->image;
        EXPECT_FALSE(image.deepAlpha());
        EXPECT_EQ(saved(image, source).bits, 8);
    }
}

} // namespace
} // namespace complexion
