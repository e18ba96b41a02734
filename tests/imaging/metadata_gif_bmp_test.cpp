// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/carried_metadata.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace std::string_literals;

/// A GIF file of one black pixel, with extensions before its picture.
std::string gif(const std::string& extensions, const std::string& version = "89a") {
    return "GIF" + version + "\1\0\1\0\x80\0\0"s + "\0\0\0\xff\xff\xff"s + extensions +
           "\x2c\0\0\0\0\1\0\1\0\0\2\2\x44\1\0"s + ";";
}

std::string comment(const std::string& text) {
    return "\x21\xfe" + std::string(1, static_cast<char>(text.size())) + text + '\0';
}

std::string application(const std::string& name, const std::string& blocks) {
    return "\x21\xff\x0b" + name + blocks;
}

std::string xmpApplication(const std::string& packet) {
    std::string trailer = "\1";
    for (int value = 255; value >= 0; --value)
        trailer += static_cast<char>(value);
    return application("XMP DataXMP", packet + trailer + '\0');
}

TEST(GifMetadata, CommentsAndApplicationsAreCarriedInOrderByteForByte) {
    const std::string blocks = comment("first") + xmpApplication("<x:xmpmeta>some</x:xmpmeta>") +
                               application("SOMEBODY1.0", "\3abc\0"s) + comment("second");
    EXPECT_EQ(carried(gif(blocks), gif("")), gif(blocks));
}

TEST(GifMetadata, ImageDataIsUnchanged) {
    const std::string written = encodedAs(kGifCodec, noise({30, 20}));
    const std::string result = carried(gif(comment("text")), written);
    std::string without = result;
    without.erase(result.find(comment("text")), comment("text").size());
    EXPECT_TRUE(without == written);
}

TEST(GifMetadata, AnimationAndProfileAreNotCarried) {
    const std::string blocks = application("NETSCAPE2.0", "\3\1\0\0\0"s) +
                               application("ICCRGBG1012", "\3abc\0"s) + "\x21\xf9\4\0\7\0\0\0"s;
    EXPECT_EQ(carried(gif(blocks), gif("")), gif(""));
}

TEST(GifMetadata, ATruncatedExtensionThatEndsInAZeroIsNotCarried) {
    const std::string truncated = gif("").substr(0, 19) + comment("complete") + "\x21\xfe\x17 is cut\0"s;
    EXPECT_EQ(carried(truncated, gif("")), gif(comment("complete")));
}

TEST(GifMetadata, XmpThumbnailIsBlanked) {
    const std::string result =
        carried(gif(xmpApplication("<a/><xmp:Thumbnails>face</xmp:Thumbnails><b/>")), gif(""));
    EXPECT_EQ(result, gif(xmpApplication("<a/>" + std::string(37, ' ') + "<b/>")));
}

TEST(GifMetadata, AnXmpPacketThatCannotBeChangedSafelyIsNotCarried) {
    // Readers of sub-blocks skip the zero in this packet, but might stop at it once the packet has changed.
    const std::string packet = "\x05 \0  \x2f<xmp:Thumbnails>the face before</xmp:Thumbnails>"s;
    EXPECT_EQ(carried(gif(xmpApplication(packet) + comment("behind")), gif("")), gif(comment("behind")));
}

TEST(GifMetadata, TheVersionBecomes89aForExtensions) {
    EXPECT_EQ(carried(gif(comment("text")), gif("", "87a")), gif(comment("text")));
}

TEST(GifMetadata, CarryingTwiceGivesTheSameFile) {
    const std::string source = gif(comment("text"));
    EXPECT_EQ(carried(source, carried(source, gif(""))), source);
}

TEST(GifMetadata, ATruncatedExtensionIsNotCarried) {
    const std::string source = gif("").substr(0, 19) + comment("complete") + "\x21\xfe\x20" + "cut off";
    const std::string result = carried(source, gif(""));
    EXPECT_EQ(result, gif(comment("complete")));
}

TEST(BmpMetadata, OnlyTheResolutionIsCarried) {
    const std::string written = encodedAs(kBmpCodec, noise({7, 5}));
    std::string source = written;
    source.replace(38, 8, littleNumber(11811, 4) + littleNumber(5906, 4));
    EXPECT_TRUE(carried(source, written) == source);
}

TEST(BmpMetadata, TheResolutionIsCarriedFromJpeg) {
    std::string source = encodedAs(kJpegCodec, filled({8, 8}, grey(90)));
    source.replace(13, 5, "\1\x01\x2c\x00\xc8"s); // 300 by 200 per inch
    std::string expected = encodedAs(kBmpCodec, noise({7, 5}));
    const std::string written = expected;
    expected.replace(38, 8, littleNumber(11811, 4) + littleNumber(7874, 4));
    EXPECT_TRUE(carried(source, written) == expected);
}

TEST(BmpMetadata, ATruncatedTargetIsRefused) {
    const std::string written = encodedAs(kBmpCodec, noise({7, 5}));
    EXPECT_FALSE(withMetadataOf(viewOf(written), viewOf(written.substr(0, 20))));
}

} // namespace
} // namespace complexion
