// SPDX-License-Identifier: GPL-3.0-or-later

// Decoding a file in memory, without keeping the file.
#include "imaging/codecs/opening.h"

#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/png_files.h"

#include <gtest/gtest.h>

namespace complexion {

namespace {

constexpr PixelSize kDecodedSize{8, 16};

Bytes plainJpeg() {
    return jpegFile({.size = kDecodedSize}, rgbSamples(filled(kDecodedSize, {200, 100, 50, 255})));
}

TEST(PictureDecoding, OfAJpegFileSaysHowItIsStored) {
    const Result<PictureWithoutOriginal> upright = decodedWithoutOriginal(plainJpeg());
    ASSERT_TRUE(upright);
    EXPECT_EQ(upright->jpegOrientation, Orientation::TopLeft);
    EXPECT_EQ(upright->decoded.image.pixelSize(), kDecodedSize);
    EXPECT_TRUE(nearlySamePixels(upright->decoded.image, filled(kDecodedSize, {200, 100, 50, 255}), 2));
    EXPECT_FALSE(upright->decoded.damage);
}

TEST(PictureDecoding, OfAFileOfAnotherFormatHasNoJpegOrientation) {
    const Image picture = filled(kDecodedSize, {200, 100, 50, 255});
    const Result<PictureWithoutOriginal> decoded =
        decodedWithoutOriginal(pngFile({.size = kDecodedSize}, rgbSamples(picture)));
    ASSERT_TRUE(decoded);
    EXPECT_FALSE(decoded->jpegOrientation);
    EXPECT_TRUE(samePixels(decoded->decoded.image, picture));
}

TEST(PictureDecoding, OfWhatIsNoPictureFails) {
    const Bytes text = {'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e'};
    const Result<PictureWithoutOriginal> decoded = decodedWithoutOriginal(text);
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.error().kind, ErrorKind::NotAPicture);
    const Result<DecodedPicture> kept = decodedFile(text, OriginalLoading::OnDemand);
    ASSERT_FALSE(kept);
    EXPECT_EQ(kept.error().kind, ErrorKind::NotAPicture);
    const Result<PixelSize> size = actualSizeOf(text);
    ASSERT_FALSE(size);
    EXPECT_EQ(size.error().kind, ErrorKind::NotAPicture);
}

TEST(PictureDecoding, OfADamagedHeaderFails) {
    Bytes jpeg = plainJpeg();
    jpeg.resize(30);
    EXPECT_FALSE(decodedWithoutOriginal(jpeg));
    Bytes png = pngFile({.size = kDecodedSize}, rgbSamples(filled(kDecodedSize, kSkin)));
    png.resize(20);
    EXPECT_FALSE(decodedWithoutOriginal(png));
}

} // namespace

} // namespace complexion
