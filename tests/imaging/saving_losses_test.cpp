// SPDX-License-Identifier: GPL-3.0-or-later

// Opening a photo reports what saving it will lose.
#include "imaging/metadata/saving_losses.h"

#include "imaging/codecs/codec.h"
#include "imaging/photo_files.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/profiles.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/imaging/deep_files.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using Kind = SavingLoss::Kind;
using Losses = std::vector<SavingLoss>;
using test::DeepKind;
using test::TiffWriter;

constexpr PixelSize kSize = {16, 8};

Losses lossesOf(const Bytes& file) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "photo", {file.begin(), file.end()});
    const Result<OpenedPhoto> photo = openPhoto(folder.path() / "photo");
    EXPECT_TRUE(photo);
    return photo ? photo->losses : Losses();
}

Bytes greyProfile() {
    cmsToneCurve* const curve = cmsBuildGamma(nullptr, 1.8);
    const Bytes bytes = bytesOfProfile(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

Bytes bytesIn(const std::string& text) {
    return {text.begin(), text.end()};
}

TEST(SavingLosses, AreNoneForAPlainPhotoOfAnyFormat) {
    for (const Codec* codec : codecs())
        EXPECT_EQ(lossesOf(bytesIn(encodedAs(*codec, noise(kSize)))), Losses()) << codec->name;
}

TEST(SavingLosses, AreNoneIfSixteenBitsAreKept) {
    for (const bool isPng : {true, false}) {
        const DeepKind kind = {.name = "", .isPng = isPng, .hasAlpha = true};
        EXPECT_EQ(lossesOf(deepFile(test::skinSamples(kSize, kind), kind)), Losses());
    }
}

TEST(SavingLosses, IncludeSixteenBitsThatAreConverted) {
    Bytes profile = greyProfile();
    const std::vector<std::uint8_t> samples(std::size_t{2} * 16 * 8);
    PngRecipe recipe{.size = kSize, .colorType = PNG_COLOR_TYPE_GRAY, .depth = 16};
    recipe.adjust = [&](png_structp png, png_infop info) {
        png_set_iCCP(png, info, "grey", 0, profile.data(), static_cast<png_uint_32>(profile.size()));
    };
    EXPECT_EQ(lossesOf(pngFile(recipe, samples)), (Losses{{Kind::Depth, 16}}));
}

TEST(SavingLosses, IncludeMoreThanSixteenBits) {
    TiffWriter writer;
    writer.begin(kSize, 1, 32, PHOTOMETRIC_MINISBLACK);
    const std::vector<std::uint32_t> samples(16 * 8);
    writer.strip(samples.data(), samples.size() * 4);
    EXPECT_EQ(lossesOf(writer.finish()), (Losses{{Kind::Depth, 32}}));
}

TEST(SavingLosses, CountThePagesOfATiffFileWithoutReducedImages) {
    const Bytes samples(std::size_t{3} * 16 * 8);
    TiffWriter writer;
    for (const unsigned kind : {0U, unsigned{FILETYPE_REDUCEDIMAGE}, 0U, unsigned{FILETYPE_PAGE}}) {
        writer.begin(kSize, 3, 8, PHOTOMETRIC_RGB);
        TIFFSetField(writer.handle(), TIFFTAG_SUBFILETYPE, kind);
        writer.strip(samples.data(), samples.size());
        TIFFWriteDirectory(writer.handle());
    }
    EXPECT_EQ(lossesOf(writer.finish()), (Losses{{Kind::Pages, 3}}));
}

TEST(SavingLosses, IncludeCmyk) {
    const JpegRecipe recipe{.size = kSize, .components = 4, .samples = JCS_CMYK};
    EXPECT_EQ(lossesOf(jpegFile(recipe, std::vector<std::uint8_t>(std::size_t{4} * 16 * 8))),
              (Losses{{Kind::Cmyk}}));
    TiffWriter writer;
    writer.begin(kSize, 4, 8, PHOTOMETRIC_SEPARATED);
    const Bytes samples(std::size_t{4} * 16 * 8);
    writer.strip(samples.data(), samples.size());
    EXPECT_EQ(lossesOf(writer.finish()), (Losses{{Kind::Cmyk}}));
}

TEST(SavingLosses, CountTheFramesOfAnimations) {
    const std::string png = encodedAs(kPngCodec, noise(kSize));
    const std::string control = pngChunkOf("acTL", bigNumber(46, 4) + bigNumber(0, 4));
    EXPECT_EQ(lossesOf(bytesIn(withChunks(png, control))), (Losses{{Kind::Frames, 46}}));

    const std::string gif = encodedAs(kGifCodec, noise(kSize));
    const std::size_t frame = gif.find("\x2c");
    ASSERT_NE(frame, std::string::npos);
    const std::string twice = gif.substr(0, gif.size() - 1) + gif.substr(frame);
    EXPECT_EQ(lossesOf(bytesIn(twice)).size(), 1U);
}

TEST(SavingLosses, IncludeTheMovieOfAMotionPhoto) {
    const std::string photo = encodedAs(kJpegCodec, noise(kSize));
    const std::string movie = bigNumber(24, 4) + "ftypmp42" + std::string(100, 'm');
    EXPECT_EQ(lossesOf(bytesIn(photo + movie)), (Losses{{Kind::Movie}}));
}

} // namespace
} // namespace complexion
