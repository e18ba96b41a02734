// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/carried_metadata.h"
#include "imaging/containers/container.h"
#include "imaging/containers/exif_basics.h"
#include "imaging/metadata/jpeg_metadata.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace std::string_literals;

const std::string kExifStart = "Exif\0\0"s;
const std::string kXmpStart = "http://ns.adobe.com/xap/1.0/\0"s;
const std::string kPhotoshopStart = "Photoshop 3.0\0"s;

std::string plainJpeg(const Image& image = filled({64, 48}, grey(120))) {
    return encodedAs(kJpegCodec, image);
}

/// A photo with some segments.
std::string photo(const std::string& segments) {
    return withSegments(plainJpeg(filled({64, 48}, grey(20))), segments);
}

std::string exifSegment(const std::string& block) {
    return jpegSegmentOf(0xe1, kExifStart + block);
}

std::string resource(int id, const std::string& data) {
    return "8BIM" + bigNumber(static_cast<std::uint64_t>(id), 2) + "\0\0"s + bigNumber(data.size(), 4) +
           data + std::string(data.size() % 2, '\0');
}

/// The rest of `jpeg` from the first embedded JPEG file on; empty if there is none.
std::string thumbnailIn(const std::string& jpeg) {
    const std::size_t start = jpeg.find("\xff\xd8\xff", 2);
    return start == std::string::npos ? std::string() : jpeg.substr(start);
}

TEST(JpegMetadata, ExifWithMakerNoteIsCopiedByteForByte) {
    for (const bool isBigEndian : {false, true}) {
        const std::string segment = exifSegment(cameraExif(6, isBigEndian).bytes());
        EXPECT_TRUE(contains(carried(photo(segment), plainJpeg()), segment));
    }
}

TEST(JpegMetadata, ScansAreUnchanged) {
    SampleTiff exif = cameraExif(3);
    exif.thumbnail = plainJpeg(filled({16, 12}, grey(9)));
    const std::string written = plainJpeg();
    EXPECT_TRUE(scansOf(carried(photo(exifSegment(exif.bytes())), written)) == scansOf(written));
}

TEST(JpegMetadata, SegmentsAreCarriedInOrderByteForByte) {
    const std::string segments =
        exifSegment(cameraExif(1).bytes()) + jpegSegmentOf(0xe1, kXmpStart + "<x:xmpmeta>main</x:xmpmeta>") +
        jpegSegmentOf(0xe1, "http://ns.adobe.com/xmp/extension/\0"s + std::string(32, 'A') + "rest of it") +
        jpegSegmentOf(0xe2, "FPXR\0flash"s) + jpegSegmentOf(0xec, "Ducky\0\1"s) +
        jpegSegmentOf(0xed, kPhotoshopStart + resource(0x0404, "\x1c\x02\x78\0\3abc"s) +
                                resource(0x03ed, "16 bytes here..")) +
        jpegSegmentOf(0xfe, "first comment") + jpegSegmentOf(0xfe, "second");
    EXPECT_TRUE(contains(carried(photo(segments), plainJpeg()), segments));
}

TEST(JpegMetadata, SegmentsAboutTheCodingOrOtherPicturesAreNotCarried) {
    const std::string dropped[] = {
        jpegSegmentOf(0xe0, "JFXX\0\x10thumbnail"s),
        jpegSegmentOf(0xe2, "ICC_PROFILE\0\1\1old profile"s),
        jpegSegmentOf(0xe2, "MPF\0index"s),
        jpegSegmentOf(0xe2, "urn:iso:std:iso:ts:21496:-1\0gain"s),
        jpegSegmentOf(0xe3, "\xff\xd8\xff\xdbpreview"s) + jpegSegmentOf(0xe4, "more of the preview"),
        jpegSegmentOf(0xeb, "JP signature"),
        jpegSegmentOf(0xee, "Adobe\0\x64\0\0\0\0\1"s),
    };
    for (const std::string& segment : dropped)
        EXPECT_TRUE(carried(photo(segment), plainJpeg()) == plainJpeg()) << segment;
}

TEST(JpegMetadata, TheTargetsProfileIsKept) {
    const std::string profile = jpegSegmentOf(0xe2, "ICC_PROFILE\0\1\1new profile"s);
    const std::string comment = jpegSegmentOf(0xfe, "comment");
    EXPECT_TRUE(carried(photo(comment), withSegments(plainJpeg(), profile)) ==
                withSegments(plainJpeg(), comment + profile));
}

TEST(JpegMetadata, TheDensityIsCarried) {
    std::string source = plainJpeg();
    source.replace(13, 5, "\1\x01\x2c\x00\xc8"s); // 300 by 200 per inch
    EXPECT_EQ(carried(source, plainJpeg()).substr(13, 5), source.substr(13, 5));
}

// A file with RGB components cannot have a JFIF segment, so its density is in the EXIF block.

std::string rgbJpeg() {
    return plainJpeg(noise({64, 48}));
}

/// A photo with a JFIF density of 300 by 200 in the unit of this number.
std::string photoWithDensity(int unit, const std::string& segments = {}) {
    std::string source = photo(segments);
    source.replace(13, 5, bigNumber(static_cast<std::uint64_t>(unit), 1) + "\x01\x2c\x00\xc8"s);
    return source;
}

TEST(JpegMetadata, TheDensityIsWrittenToExifIfJfifIsImpossible) {
    const std::string result = carried(photoWithDensity(1), rgbJpeg());
    EXPECT_FALSE(contains(result, "JFIF"));
    EXPECT_EQ(jpeg::readMetadata(viewOf(result)).resolution, (Resolution{300, 200, Resolution::Unit::Inch}));
    const std::string centimetres = carried(photoWithDensity(2), rgbJpeg());
    EXPECT_EQ(exif::readBasics(jpeg::readMetadata(viewOf(centimetres)).exif).resolution,
              (Resolution{762, 508, Resolution::Unit::Inch}));
}

TEST(JpegMetadata, AnExifBlockWithoutADensityGetsThatOfJfif) {
    const std::string block =
        "II*\0\x08\0\0\0\x01\0\x31\x01\x02\0\x04\0\0\0abc\0\0\0\0\0"s; // the software: "abc"
    const std::string source = photoWithDensity(1, exifSegment(block));
    EXPECT_TRUE(contains(carried(source, plainJpeg()), block));
    const Bytes exif = jpeg::readMetadata(viewOf(carried(source, rgbJpeg()))).exif;
    EXPECT_EQ(exif::readBasics(exif).resolution, (Resolution{300, 200, Resolution::Unit::Inch}));
    EXPECT_TRUE(contains(std::string(exif.begin(), exif.end()), "abc"));
}

TEST(JpegMetadata, AnExifBlockWithADensityIsUnchanged) {
    const std::string segment = exifSegment(cameraExif(6).bytes());
    EXPECT_TRUE(contains(carried(photoWithDensity(1, segment), rgbJpeg()), segment));
}

TEST(JpegMetadata, ADamagedExifBlockIsUnchanged) {
    const std::string segment = exifSegment("no structure");
    EXPECT_TRUE(contains(carried(photoWithDensity(1, segment), rgbJpeg()), segment));
}

TEST(JpegMetadata, NoExifIsAddedForAnAspectRatioOrTheDefaultDensity) {
    EXPECT_FALSE(contains(carried(photoWithDensity(0), rgbJpeg()), "Exif"));
    EXPECT_FALSE(contains(carried(photo({}), rgbJpeg()), "Exif"));
}

TEST(JpegMetadata, TheDensityOfAnotherFormatIsWrittenToExif) {
    std::string bmp = encodedAs(kBmpCodec, noise({8, 8}));
    bmp.replace(38, 8, littleNumber(11811, 4) + littleNumber(7874, 4));
    const auto resolution = jpeg::readMetadata(viewOf(carried(bmp, rgbJpeg()))).resolution;
    ASSERT_TRUE(resolution);
    EXPECT_NEAR(resolution->across, 300, 0.01);
    EXPECT_NEAR(resolution->down, 200, 0.01);
}

TEST(JpegMetadata, ExifIsFirstIfTheSourceHasNoJfif) {
    const std::string exif = exifSegment(cameraExif(1).bytes());
    const std::string source = withSegments(plainJpeg(), exif, false);
    EXPECT_TRUE(carried(source, plainJpeg()) == source);
}

TEST(JpegMetadata, JfifKeepsItsPositionInTheSource) {
    const std::string plain = plainJpeg();
    const std::string segments = exifSegment(cameraExif(1).bytes()) + plain.substr(2, 18);
    const std::string source = withSegments(plain, segments, false);
    EXPECT_TRUE(carried(source, plain) == source);
}

TEST(JpegMetadata, CarryingTwiceGivesTheSameFile) {
    const std::string source = photo(exifSegment(cameraExif(5).bytes()) + jpegSegmentOf(0xfe, "comment"));
    const std::string once = carried(source, plainJpeg());
    EXPECT_TRUE(carried(source, once) == once);
}

TEST(JpegMetadata, TheThumbnailIsReplacedAtItsSizeAndOffset) {
    SampleTiff exif = cameraExif(1);
    exif.thumbnail = plainJpeg(noise({40, 30}));
    const std::string old = exif.bytes();
    const std::string result =
        carried(photo(exifSegment(old)), plainJpeg(filled({80, 60}, RGBA32(200, 90, 60, 255))));
    EXPECT_TRUE(contains(result, kExifStart + old.substr(0, old.size() - exif.thumbnail.size() - 8)));

    const Result<Image> thumbnail = kJpegCodec.decode(viewOf(thumbnailIn(result)));
    ASSERT_TRUE(thumbnail);
    EXPECT_TRUE(nearlySamePixels(*thumbnail, filled({40, 30}, RGBA32(200, 90, 60, 255)), 6));
}

TEST(JpegMetadata, AThumbnailOfAnotherAspectRatioIsLetterboxed) {
    SampleTiff exif = cameraExif(1);
    exif.thumbnail = plainJpeg(noise({40, 30}));
    const std::string result =
        carried(photo(exifSegment(exif.bytes())), plainJpeg(filled({80, 40}, grey(250))));
    const Result<Image> thumbnail = kJpegCodec.decode(viewOf(thumbnailIn(result)));
    ASSERT_TRUE(thumbnail);
    ASSERT_EQ(thumbnail->pixelSize(), (PixelSize{40, 30}));
    EXPECT_LT(thumbnail->pixel(1, 20).red(), 20);
    EXPECT_GT(thumbnail->pixel(15, 20).red(), 235);
    EXPECT_LT(thumbnail->pixel(28, 20).red(), 20);
}

TEST(JpegMetadata, AThumbnailThatIsTooLongIsMovedToTheEndOfTheBlock) {
    SampleTiff exif = cameraExif(1);
    exif.thumbnail = plainJpeg(filled({40, 30}, grey(7)));
    exif.thumbnail.resize(exif.thumbnail.size() / 2); // too short for a picture, but its size can be read
    const std::string result = carried(photo(exifSegment(exif.bytes())), plainJpeg(noise({40, 30})));
    const Result<Image> thumbnail = kJpegCodec.decode(viewOf(thumbnailIn(result)));
    ASSERT_TRUE(thumbnail);
    EXPECT_EQ(thumbnail->pixelSize(), (PixelSize{40, 30}));
}

TEST(JpegMetadata, AThumbnailInTheMakerNoteIsReplacedByOneAtTheEndOfTheBlock) {
    SampleTiff exif = cameraExif(1);
    exif.thumbnail = plainJpeg(noise({40, 30}));
    const std::string note = "Maker note" + exif.thumbnail;
    exif.exif.back() = SampleTiff::bytesTag(37500, note);
    std::string block = exif.bytes();
    const std::size_t own = block.rfind(exif.thumbnail);
    const std::string offset = littleNumber(own, 4);
    block.replace(block.rfind(offset, own), 4, littleNumber(block.find(exif.thumbnail), 4));
    block.resize(own);

    const RGBA32 color(200, 90, 60, 255);
    const std::string result = carried(photo(exifSegment(block)), plainJpeg(filled({40, 30}, color)));
    const std::size_t noteAt = result.find(note);
    ASSERT_NE(noteAt, std::string::npos);
    const Result<Image> thumbnail =
        kJpegCodec.decode(viewOf(thumbnailIn("  " + result.substr(noteAt + note.size()))));
    ASSERT_TRUE(thumbnail);
    EXPECT_TRUE(nearlySamePixels(*thumbnail, filled({40, 30}, color), 6));
}

TEST(JpegMetadata, AnUndecodableThumbnailIsRemovedWithoutMovingValues) {
    SampleTiff exif = cameraExif(1);
    const std::string without = exif.bytes();
    exif.thumbnail = "the original face in an unknown format";
    const std::string result = carried(photo(exifSegment(exif.bytes())), plainJpeg());
    EXPECT_TRUE(contains(result, without));
    EXPECT_FALSE(contains(result, "the original face"));
}

TEST(JpegMetadata, AValueInPlaceOfTheLinkToTheThumbnailIsKept) {
    // The only entry's value is where the link to the next directory would be, and resembles an offset.
    const std::string block = "II*\0\x08\0\0\0"s + littleNumber(1, 2) + littleNumber(305, 2) +
                              littleNumber(2, 2) + littleNumber(8, 4) + littleNumber(22, 4) +
                              "\x08\0\0\0text"s + std::string(40, 'x');
    EXPECT_TRUE(contains(carried(photo(exifSegment(block)), plainJpeg()), exifSegment(block)));
}

TEST(JpegMetadata, ThumbnailsInPhotoshopResourcesAndXmpAreNotCarried) {
    const std::string kept = resource(0x0404, "\x1c\x02\x78\0\3abc"s);
    const std::string source =
        photo(jpegSegmentOf(0xed, kPhotoshopStart + resource(0x040c, "the old face...") + kept) +
              jpegSegmentOf(0xe1, kXmpStart + "<a/><xmp:Thumbnails>the old face...</xmp:Thumbnails><b/>"));
    const std::string result = carried(source, plainJpeg());
    EXPECT_FALSE(contains(result, "the old face..."));
    EXPECT_TRUE(contains(result, jpegSegmentOf(0xed, kPhotoshopStart + kept)));
    EXPECT_TRUE(contains(result, "<a/>" + std::string(48, ' ') + "<b/>"));
}

TEST(JpegMetadata, DamagedSegmentsDoNotPreventCarryingOthers) {
    const std::string comment = jpegSegmentOf(0xfe, "comment");
    const std::string broken = exifSegment("II*\0\xff\xff\xff\xff"s) + exifSegment("") +
                               jpegSegmentOf(0xed, kPhotoshopStart + "8BIM\4\4\0\0\xff\xff\xff\xff"s);
    EXPECT_TRUE(contains(carried(photo(broken + comment), plainJpeg()), comment));
}

TEST(JpegMetadata, JunkBetweenSegmentsDoesNotPreventCarryingThem) {
    const std::string comment = jpegSegmentOf(0xfe, "comment");
    const std::string xmp = jpegSegmentOf(0xe1, kXmpStart + "<x:xmpmeta>main</x:xmpmeta>");
    for (const std::string& junk :
         {"x"s, std::string(300, 'j'), "\xff\0"s, "\xff\xff\xff"s, "\xff\x01"s, "\xff\xd3"s}) {
        const std::string source = photo(junk + comment + junk + xmp + junk);
        const std::string result = carried(source, plainJpeg());
        EXPECT_TRUE(contains(result, comment + xmp)) << junk;
        EXPECT_FALSE(contains(result, junk + comment)) << junk;
        EXPECT_EQ(jpeg::readMetadata(viewOf(source)).notes.size(), 1U) << junk;
        EXPECT_FALSE(jpeg::readMetadata(viewOf(source)).xmp.empty()) << junk;
    }
}

TEST(JpegMetadata, AStrayByteAfterTheStartDoesNotPreventCarrying) {
    const std::string comment = jpegSegmentOf(0xfe, "comment");
    std::string source = photo(comment);
    source.insert(2, "\0"s);
    ASSERT_TRUE(kJpegCodec.decode(viewOf(source)));
    EXPECT_EQ(containerOf(viewOf(source)), Container::Jpeg);
    EXPECT_TRUE(contains(carried(source, plainJpeg()), comment));
    const std::string png = encodedAs(kPngCodec, filled({64, 48}, grey(120)));
    EXPECT_TRUE(contains(carried(source, png), "Comment\0comment"s));
}

TEST(JpegMetadata, ATargetWithoutAScanIsRefused) {
    const std::string written = plainJpeg();
    const std::string truncated = written.substr(0, written.find("\xff\xda"));
    ASSERT_GT(truncated.size(), 100U);
    const std::string source = photo(jpegSegmentOf(0xfe, "comment"));
    EXPECT_FALSE(withMetadataOf(viewOf(source), viewOf(truncated)));
}

} // namespace
} // namespace complexion
