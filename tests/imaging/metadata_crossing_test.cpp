// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/exif_basics.h"
#include "imaging/metadata/carrying.h"
#include "imaging/metadata/gif_metadata.h"
#include "imaging/metadata/jpeg_metadata.h"
#include "imaging/metadata/png_metadata.h"
#include "imaging/metadata/tiff_metadata.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace complexion {
namespace {

using namespace std::string_literals;

const std::string kIptc = "\x1c\x02\x78\0\3abc"s;
const std::string kOtherResource = "8BIM\3\xed\0\0\0\0\0\x10"s + "sixteen bytes...";
const std::string kXmp = "<x:xmpmeta tiff:Orientation=\"6\"/>";

/// A photo with every kind of metadata and a density of 300 by 200 dots per inch.
std::string jpegPhoto(const std::string& xmp = kXmp) {
    std::string jpeg = encodedAs(kJpegCodec, shaded({8, 8}));
    jpeg.replace(13, 5, "\1\x01\x2c\x00\xc8"s);
    return withSegments(jpeg, jpegSegmentOf(0xe1, "Exif\0\0"s + cameraExif(6).bytes()) +
                                  jpegSegmentOf(0xe1, "http://ns.adobe.com/xap/1.0/\0"s + xmp) +
                                  jpegSegmentOf(0xed, "Photoshop 3.0\0"s + "8BIM\4\4\0\0\0\0\0\x08"s + kIptc +
                                                          kOtherResource) +
                                  jpegSegmentOf(0xfe, "A comment, caf\xe9"));
}

std::string plainTiff() {
    SampleTiff tiff;
    tiff.strip = "pixels";
    return tiff.bytes();
}

std::string text(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

const std::vector<TextNote> kComment = {{"Comment", "A comment, caf\xc3\xa9"}};

TEST(MetadataAcrossFormats, FromJpegToPngLosesNothing) {
    const std::string written = encodedAs(kPngCodec, noise({9, 7}));
    const std::string png = carried(jpegPhoto(), written);
    const PictureMetadata metadata = png::readMetadata(viewOf(png));
    EXPECT_EQ(text(metadata.exif), cameraExif(6).bytes());
    EXPECT_EQ(text(metadata.xmp), kXmp);
    EXPECT_EQ(text(metadata.iptc), kIptc);
    EXPECT_EQ(text(metadata.photoshop), kOtherResource);
    EXPECT_EQ(metadata.notes, kComment);
    EXPECT_TRUE(contains(png, pngChunkOf("pHYs", bigNumber(11811, 4) + bigNumber(7874, 4) + '\1')));
    EXPECT_TRUE(pixelChunksOf(png) == pixelChunksOf(written));
}

TEST(MetadataAcrossFormats, FromJpegToTiffLosesNothing) {
    const std::string tiff = carried(jpegPhoto(), plainTiff());
    const PictureMetadata metadata = tiff::readMetadata(viewOf(tiff));
    EXPECT_EQ(exif::readBasics(metadata.exif).orientation, Orientation::RightTop);
    EXPECT_TRUE(contains(text(metadata.exif), kSampleMakerNote));
    EXPECT_EQ(text(metadata.xmp), kXmp);
    EXPECT_EQ(text(metadata.iptc), kIptc);
    EXPECT_EQ(text(metadata.photoshop), kOtherResource);
    EXPECT_EQ(metadata.resolution, (Resolution{300, 200, Resolution::Unit::Inch}));
    EXPECT_TRUE(contains(tiff, kComment.front().text));
}

TEST(MetadataAcrossFormats, FromTiffToJpegKeepsTheTags) {
    SampleTiff source = cameraExif(3, true);
    source.strip = "pixels";
    source.main.push_back(SampleTiff::bytesTag(700, kXmp));
    source.main.push_back(SampleTiff::bytesTag(33723, kIptc));
    const std::string written = encodedAs(kJpegCodec, shaded({20, 10}));
    const std::string jpeg = carried(source.bytes(), written);
    const PictureMetadata metadata = jpeg::readMetadata(viewOf(jpeg));
    EXPECT_EQ(exif::readBasics(metadata.exif).orientation, Orientation::BottomRight);
    const std::size_t note = source.bytes().find(kSampleMakerNote);
    EXPECT_EQ(text(metadata.exif).substr(note, kSampleMakerNote.size()), kSampleMakerNote);
    EXPECT_EQ(text(metadata.xmp), kXmp);
    EXPECT_EQ(text(metadata.iptc), kIptc);
    EXPECT_EQ(jpeg.substr(13, 5), "\1\x01\x2c\x01\x2c"s);
    EXPECT_TRUE(scansOf(jpeg) == scansOf(written));
}

TEST(MetadataAcrossFormats, GifGetsCommentsIptcAndUprightXmp) {
    const std::string gif = carried(jpegPhoto(), encodedAs(kGifCodec, filled({5, 5}, grey(9))));
    const PictureMetadata metadata = gif::readMetadata(viewOf(gif));
    EXPECT_EQ(metadata.notes, kComment);
    EXPECT_EQ(text(metadata.xmp), "<x:xmpmeta tiff:Orientation=\"1\"/>");
    EXPECT_EQ(text(metadata.iptc), kIptc);
    EXPECT_TRUE(metadata.exif.empty());
    EXPECT_TRUE(kGifCodec.decode(viewOf(gif)));
}

TEST(MetadataAcrossFormats, Utf16XmpBecomesUtf8) {
    std::string wide;
    for (const char character : kXmp)
        wide += character + "\0"s;
    const std::string png = carried(jpegPhoto(wide), encodedAs(kPngCodec, noise({9, 7})));
    EXPECT_EQ(text(png::readMetadata(viewOf(png)).xmp), kXmp);
}

TEST(MetadataAcrossFormats, PngTextsBecomeComments) {
    const std::string png =
        withChunks(encodedAs(kPngCodec, noise({9, 7})),
                   pngChunkOf("tEXt", "Comment\0plain"s) + pngChunkOf("tEXt", "Author\0caf\xe9"s));
    const std::string jpeg = carried(png, encodedAs(kJpegCodec, shaded({9, 7})));
    EXPECT_TRUE(contains(jpeg, jpegSegmentOf(0xfe, "plain") + jpegSegmentOf(0xfe, "Author: caf\xc3\xa9")));
}

TEST(MetadataAcrossFormats, AnExifBlockTooLongForJpegLosesItsLongestValues) {
    SampleTiff exif = cameraExif(6);
    exif.main.push_back(SampleTiff::bytesTag(65001, std::string(70'000, 'x')));
    const std::string png = withChunks(encodedAs(kPngCodec, noise({9, 7})), pngChunkOf("eXIf", exif.bytes()));
    const PictureMetadata metadata =
        jpeg::readMetadata(viewOf(carried(png, encodedAs(kJpegCodec, shaded({9, 7})))));
    EXPECT_LT(metadata.exif.size(), 65'528U);
    EXPECT_TRUE(contains(text(metadata.exif), kSampleMakerNote));
    EXPECT_EQ(exif::readBasics(metadata.exif).orientation, Orientation::RightTop);
    EXPECT_EQ(carriedOrientation(viewOf(png), Container::Jpeg), Orientation::RightTop);
}

/// A file with an orientation, if its format can hold one.
std::string sourceOf(Container container, int orientation) {
    SampleTiff exif = cameraExif(orientation, orientation % 2 == 0);
    switch (container) {
    case Container::Jpeg:
        return withSegments(encodedAs(kJpegCodec, shaded({8, 8})),
                            jpegSegmentOf(0xe1, "Exif\0\0"s + exif.bytes()));
    case Container::Png:
        return withChunks(encodedAs(kPngCodec, noise({8, 8})), pngChunkOf("eXIf", exif.bytes()));
    case Container::Tiff:
        exif.strip = "pixels";
        return exif.bytes();
    default:
        return encodedAs(container == Container::Gif ? kGifCodec : kBmpCodec, noise({8, 8}));
    }
}

Orientation orientationIn(const std::string& file) {
    switch (*containerOf(viewOf(file))) {
    case Container::Jpeg:
        return exif::readBasics(jpeg::readMetadata(viewOf(file)).exif).orientation;
    case Container::Png:
        return exif::readBasics(png::readMetadata(viewOf(file)).exif).orientation;
    case Container::Tiff:
        return exif::readBasics(viewOf(file)).orientation;
    default:
        return Orientation::TopLeft;
    }
}

TEST(CarriedOrientation, IsThatOfTheResultForAllPairsOfFormats) {
    constexpr Container kAll[] = {Container::Jpeg, Container::Png, Container::Tiff, Container::Gif,
                                  Container::Bmp};
    for (const Container from : kAll)
        for (const Container into : kAll)
            for (int value = 1; value <= 8; ++value) {
                const std::string source = sourceOf(from, value);
                const std::string written = into == Container::Tiff
                                                ? plainTiff()
                                                : encodedAs(into == Container::Jpeg  ? kJpegCodec
                                                            : into == Container::Png ? kPngCodec
                                                            : into == Container::Gif ? kGifCodec
                                                                                     : kBmpCodec,
                                                            filled({8, 8}, grey(90)));
                const bool canHoldIt = std::max(from, into) <= Container::Tiff;
                const Orientation expected = canHoldIt ? orientationFromTag(value) : Orientation::TopLeft;
                EXPECT_EQ(carriedOrientation(viewOf(source), into), expected);
                EXPECT_EQ(orientationIn(carried(source, written)), expected);
            }
}

TEST(CarriedOrientation, IsUprightForInvalidExifBlocks) {
    // Not a TIFF structure, although a lenient reader would find an orientation in it.
    std::string block = cameraExif(6).bytes();
    block[2] = 'U';
    const std::string source =
        withSegments(encodedAs(kJpegCodec, shaded({8, 8})), jpegSegmentOf(0xe1, "Exif\0\0"s + block));
    for (const Container into : {Container::Png, Container::Tiff}) {
        const std::string written =
            into == Container::Png ? encodedAs(kPngCodec, noise({8, 8})) : plainTiff();
        EXPECT_EQ(carriedOrientation(viewOf(source), into), Orientation::TopLeft);
        EXPECT_EQ(orientationIn(carried(source, written)), Orientation::TopLeft);
    }
}

} // namespace
} // namespace complexion
