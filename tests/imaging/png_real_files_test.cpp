// SPDX-License-Identifier: GPL-3.0-or-later

// What PNG files of other programs say beside their pixels: code points of colour, EXIF blocks in texts.
#include "imaging/codecs/codec.h"
#include "imaging/orientation.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/png_files.h"
#include "tests/fakes/profiles.h"
#include "tests/imaging/metadata_samples.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace std::string_literals;

Image decoded(const std::string& file) {
    const Result<Image> image = kPngCodec.decode(viewOf(file));
    EXPECT_TRUE(image) << image.error().message;
    return image ? *image : Image();
}

/// A picture of one pixel with the wide profile and code points of colour.
std::string withCodePoints(const std::string& codePoints, int colorType = PNG_COLOR_TYPE_RGB) {
    const Bytes icc = wideProfile();
    const auto profile = [&](png_structp png, png_infop info) {
        if (colorType == PNG_COLOR_TYPE_RGB)
            png_set_iCCP(png, info, "wide", PNG_COMPRESSION_TYPE_BASE, icc.data(),
                         static_cast<png_uint_32>(icc.size()));
    };
    const Bytes file = pngFile({.size = {1, 1}, .colorType = colorType, .adjust = profile}, {9, 9, 9});
    return withChunks({file.begin(), file.end()}, pngChunkOf("cICP", codePoints));
}

void expectNear(RgbColor actual, RgbColor expected) {
    EXPECT_NEAR(actual.red, expected.red, 0.002);
    EXPECT_NEAR(actual.green, expected.green, 0.002);
    EXPECT_NEAR(actual.blue, expected.blue, 0.002);
}

TEST(PngCodePoints, ComeBeforeAProfile) {
    EXPECT_TRUE(decoded(withCodePoints("\1\15\0\1"s)).profile().isSrgb());
    EXPECT_FALSE(decoded(withCodePoints("\14\15\0\1"s)).profile() == ColorProfile::fromIcc(wideProfile()));
}

TEST(PngCodePoints, DescribeTheSpaceOfTheValues) {
    // The red of sRGB in Display P3 and in BT.2020 with the curve of sRGB (CSS Color 4 gives the matrices).
    expectNear(decoded(withCodePoints("\14\15\0\1"s)).profile().fromSrgb({1, 0, 0}),
               {0.9175, 0.2003, 0.1386});
    expectNear(decoded(withCodePoints("\11\15\0\1"s)).profile().fromSrgb({1, 0, 0}),
               {0.8138, 0.2915, 0.1353});
    // Middle grey is linear 0.2140: with the curve of BT.709 1.099 * 0.2140^0.45 - 0.099.
    expectNear(decoded(withCodePoints("\1\10\0\1"s)).profile().fromSrgb({0.5, 0.5, 0.5}),
               {0.2140, 0.2140, 0.2140});
    expectNear(decoded(withCodePoints("\1\1\0\1"s)).profile().fromSrgb({0.5, 0.5, 0.5}),
               {0.4500, 0.4500, 0.4500});
}

TEST(PngCodePoints, OfHighDynamicRangeOrDamagedLeaveTheProfile) {
    const ColorProfile wide = ColorProfile::fromIcc(wideProfile());
    for (const std::string& codePoints :
         {"\11\20\0\1"s, "\11\22\0\1"s, "\2\15\0\1"s, "\14\15\1\1"s, "\14\15\0\0"s, "\14\15\0"s, ""s})
        EXPECT_EQ(decoded(withCodePoints(codePoints)).profile(), wide);
}

TEST(PngCodePoints, OfAGreyPictureAreNotUsed) {
    EXPECT_TRUE(decoded(withCodePoints("\14\15\0\1"s, PNG_COLOR_TYPE_GRAY)).profile().isSrgb());
}

/// As older software writes a block into a text.
std::string exifInText(const std::string& kind, const std::string& bytes) {
    std::string figures;
    for (const char byte : bytes) {
        figures += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
        figures += "0123456789abcdef"[byte & 15];
    }
    return pngChunkOf("tEXt", "Raw profile type " + kind + "\0\n"s + kind + "\n" +
                                  std::to_string(bytes.size()) + "\n" + figures + "\n");
}

TEST(PngExif, InATextTurnsThePictureToo) {
    const std::string plain = encodedAs(kPngCodec, noise({30, 20}));
    const Image stored = decoded(plain);
    for (const std::string& kind : {"exif"s, "APP1"s})
        for (int value = 1; value <= 8; ++value) {
            const std::string file =
                withChunks(plain, exifInText(kind, "Exif\0\0"s + cameraExif(value).bytes()));
            const Image expected = turnedUpright(stored, orientationFromTag(value));
            EXPECT_EQ(pixelsOf(decoded(file)), pixelsOf(expected)) << kind << value;
            EXPECT_EQ(*kPngCodec.measure(viewOf(file)), std::vector{expected.pixelSize()});
        }
}

TEST(PngExif, OfItsOwnChunkComesBeforeOneInAText) {
    const std::string plain = encodedAs(kPngCodec, noise({30, 20}));
    const std::string file = withChunks(plain, exifInText("exif", "Exif\0\0"s + cameraExif(6).bytes()) +
                                                   pngChunkOf("eXIf", cameraExif(3).bytes()));
    EXPECT_EQ(pixelsOf(decoded(file)), pixelsOf(turnedUpright(decoded(plain), Orientation::BottomRight)));
}

} // namespace
} // namespace complexion
