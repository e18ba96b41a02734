// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/extended_xmp.h"

#include "imaging/containers/container.h"
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

const std::string kMainStart = "http://ns.adobe.com/xap/1.0/\0"s;
const std::string kExtensionStart = "http://ns.adobe.com/xmp/extension/\0"s;
constexpr std::size_t kMaxMainBytes = 65502;

const std::string kOpen = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                          "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">";
const std::string kClose = "</rdf:RDF></x:xmpmeta>";

std::string packetOf(const std::string& nodes) {
    return kOpen + nodes + kClose;
}

const std::string kExtension = packetOf("<rdf:Description rdf:about=\"\" xmlns:big=\"b/\" big:One=\"1\"/>"
                                        "<rdf:Description xmlns:big=\"b/\"><big:Two>" +
                                        std::string(900, '2') + "</big:Two></rdf:Description>");

std::string mainNaming(const std::string& digest) {
    return "<?xpacket begin=\"\"?>" +
           packetOf("<rdf:Description rdf:about=\"\" xmlns:tiff=\"t/\" xmlns:xmpNote=\"n/\" "
                    "xmpNote:HasExtendedXMP=\"" +
                    digest + "\" tiff:Orientation=\"6\"/>") +
           "<?xpacket end=\"w\"?>";
}

std::string pieceOf(const std::string& digest, std::uint64_t length, std::uint64_t offset,
                    const std::string& data) {
    return jpegSegmentOf(0xe1, kExtensionStart + digest + bigNumber(length, 4) + bigNumber(offset, 4) + data);
}

const Image& anyPicture() {
    static const Image image = shaded({8, 8});
    return image;
}

std::string jpegWith(const std::string& segments) {
    return withSegments(encodedAs(kJpegCodec, anyPicture()), segments);
}

/// A photo with a main packet and an extension in three pieces.
std::string extendedPhoto(const std::string& extension = kExtension) {
    const std::string digest = xmp::digest(extension);
    const std::size_t third = extension.size() / 3;
    std::string segments = jpegSegmentOf(0xe1, kMainStart + mainNaming(digest));
    // Out of order, as the offsets decide.
    for (const std::size_t offset : {2 * third, std::size_t{0}, third})
        segments += pieceOf(digest, extension.size(), offset,
                            extension.substr(offset, offset == 2 * third ? std::string::npos : third));
    return jpegWith(segments);
}

std::string written(Container container) {
    SampleTiff tiff;
    tiff.strip = "pixels";
    switch (container) {
    case Container::Jpeg:
        return encodedAs(kJpegCodec, anyPicture());
    case Container::Png:
        return encodedAs(kPngCodec, anyPicture());
    case Container::Tiff:
        return tiff.bytes();
    default:
        return encodedAs(kGifCodec, anyPicture());
    }
}

std::string xmpIn(const std::string& file) {
    const ByteView view = viewOf(file);
    const Container container = containerOf(view).value_or(Container::Bmp);
    const PictureMetadata metadata = container == Container::Jpeg   ? jpeg::readMetadata(view)
                                     : container == Container::Png  ? png::readMetadata(view)
                                     : container == Container::Tiff ? tiff::readMetadata(view)
                                                                    : gif::readMetadata(view);
    return {metadata.xmp.begin(), metadata.xmp.end()};
}

constexpr Container kFormatsWithoutLimit[] = {Container::Png, Container::Tiff, Container::Gif};

TEST(ExtendedXmp, IsCarriedFromJpegToJpegByteForByte) {
    const std::string source = extendedPhoto();
    EXPECT_TRUE(carried(source, written(Container::Jpeg)) == source);
}

TEST(ExtendedXmp, BecomesOnePacketInOtherFormats) {
    for (const Container container : kFormatsWithoutLimit) {
        const std::string xmp = xmpIn(carried(extendedPhoto(), written(container)));
        EXPECT_TRUE(contains(xmp, "big:One=\"1\""));
        EXPECT_TRUE(contains(xmp, ">" + std::string(900, '2') + "</big:Two>"));
        EXPECT_TRUE(
            contains(xmp, container == Container::Gif ? "tiff:Orientation=\"1\"" : "tiff:Orientation=\"6\""));
        EXPECT_FALSE(contains(xmp, "HasExtendedXMP"));
        EXPECT_TRUE(contains(xmp, kClose + "<?xpacket end=\"w\"?>"));
        EXPECT_EQ(xmp.find("<x:xmpmeta"), xmp.rfind("<x:xmpmeta"));
    }
}

TEST(ExtendedXmp, OfAnInvalidExtensionOnlyTheMainPacketIsCarried) {
    const std::string digest = xmp::digest(kExtension);
    const std::string start = jpegSegmentOf(0xe1, kMainStart + mainNaming(digest));
    const std::size_t length = kExtension.size();
    const std::string first = kExtension.substr(0, 500);
    const std::string second = kExtension.substr(500);
    const std::string damaged[] = {
        "",                                                                              // none
        pieceOf(std::string(32, 'A'), length, 0, kExtension),                            // of another packet
        pieceOf(digest, length, 0, first),                                               // truncated
        pieceOf(digest, length, 500, second),                                            // no start
        pieceOf(digest, length, 0, first) + pieceOf(digest, length, 499, second),        // overlap
        pieceOf(digest, length, 0, first) + pieceOf(digest, length, 501, second),        // gap
        pieceOf(digest, length, 0, kExtension) + pieceOf(digest, length, 0, kExtension), // twice
        pieceOf(digest, length, 0, first) + pieceOf(digest, length + 1, 500, second),    // lengths
        pieceOf(digest, 0xffffffff, 0, kExtension),                                      // too long
        pieceOf(digest, 0xffffffff, 0xffffff00, kExtension),                             // far away
        pieceOf(digest, 0, 0, kExtension),                                               // too short
        pieceOf(digest, 9, 0, "no packet"),                                              // not XML
        pieceOf(digest, 17, 0, "<rdf:RDF><a></b> "),                                     // damaged
        jpegSegmentOf(0xe1, kExtensionStart + digest) + jpegSegmentOf(0xe1, kExtensionStart), // headers
    };
    for (const std::string& pieces : damaged)
        for (const Container container : kFormatsWithoutLimit) {
            const std::string xmp = xmpIn(carried(jpegWith(start + pieces), written(container)));
            EXPECT_TRUE(contains(xmp, "tiff:Orientation=")) << pieces;
            EXPECT_FALSE(contains(xmp, "HasExtendedXMP")) << pieces;
            EXPECT_FALSE(contains(xmp, "big:")) << pieces;
        }
}

TEST(ExtendedXmp, NamespacesOfEnclosingElementsAreKept) {
    const std::string extension = "<r:RDF xmlns:r=\"rdf/\" xmlns:big=\"b/\" xmlns:own=\"outer/\">"
                                  "<r:Description xmlns:own=\"inner/\" big:One=\"1\"/></r:RDF>";
    const auto joined = xmp::joined(packetOf("<rdf:Description a=\"b\"/>"), extension);
    EXPECT_EQ(joined, packetOf("<rdf:Description a=\"b\"/><r:Description xmlns:r=\"rdf/\" xmlns:big=\"b/\" "
                               "xmlns:own=\"inner/\" big:One=\"1\"/>"));
}

TEST(ExtendedXmp, NamespacesAndEntitiesThatWouldInflateThePacketAreRefused) {
    std::string names;
    for (int i = 0; i < 900; ++i)
        names += " xmlns:n" + std::to_string(i) + "=\"" + std::string(100, 'u') + "\"";
    std::string nodes;
    for (int i = 0; i < 10'000; ++i)
        nodes += "<a/>";
    const std::string main = packetOf("<b/>");
    EXPECT_TRUE(xmp::joined(main, "<rdf:RDF" + names + "><a/></rdf:RDF>"));
    EXPECT_FALSE(xmp::joined(main, "<rdf:RDF" + names + ">" + nodes + "</rdf:RDF>"));
    EXPECT_FALSE(xmp::joined(main, "<rdf:RDF" + names + names + "><a/></rdf:RDF>"));
    EXPECT_FALSE(xmp::joined(main, "<!DOCTYPE a [<!ENTITY e \"eee\">]><rdf:RDF><a/></rdf:RDF>"));
}

TEST(ExtendedXmp, RemovingThumbnailsFromTheExtensionUpdatesItsDigest) {
    const std::string extension =
        packetOf("<rdf:Description xmlns:xmp=\"x/\"><xmp:Thumbnails>the face before</xmp:Thumbnails>"
                 "<xmp:Kept>kept</xmp:Kept></rdf:Description>");
    const std::string result = carried(extendedPhoto(extension), written(Container::Jpeg));
    EXPECT_FALSE(contains(result, "face"));
    EXPECT_FALSE(contains(result, xmp::digest(extension)));
    EXPECT_TRUE(contains(xmpIn(result), "<xmp:Kept>kept</xmp:Kept>"));
    EXPECT_EQ(carried(result, written(Container::Jpeg)), result);
}

TEST(ExtendedXmp, AnEmbeddedUneditedPhotoIsRemoved) {
    const std::string extension = packetOf(
        "<rdf:Description xmlns:GImage=\"g/\" GImage:Mime=\"image/jpeg\"\n GImage:Data = \"the face\"/>");
    const std::string source = extendedPhoto(extension);
    for (const Container container : {Container::Jpeg, Container::Png, Container::Tiff, Container::Gif}) {
        const std::string result = carried(source, written(container));
        EXPECT_FALSE(contains(result, "the face"));
        EXPECT_TRUE(contains(xmpIn(result), "GImage:Mime=\"image/jpeg\""));
        EXPECT_FALSE(contains(xmpIn(result), "GImage:Data"));
    }
}

TEST(ExtendedXmp, AnEmptyThumbnailElementIsNotTakenForTheStartOfAnother) {
    const std::string xmp = "<a/><xmp:Thumbnails/><b/><xmp:Thumbnails>face</xmp:Thumbnails ><c/>";
    const std::string source = jpegWith(jpegSegmentOf(0xe1, kMainStart + xmp));
    EXPECT_EQ(xmpIn(carried(source, written(Container::Png))),
              "<a/>" + std::string(17, ' ') + "<b/>" + std::string(38, ' ') + "<c/>");
}

/// A file with a packet of any length. Not JPEG.
std::string fileWith(Container container, const std::string& xmp) {
    SampleTiff tiff;
    tiff.strip = "pixels";
    tiff.main.push_back(SampleTiff::bytesTag(700, xmp));
    std::string slide;
    for (int value = 255; value >= 0; --value)
        slide += static_cast<char>(value);
    std::string gif = written(Container::Gif);
    switch (container) {
    case Container::Png:
        return withChunks(written(container), pngChunkOf("iTXt", "XML:com.adobe.xmp\0\0\0\0\0"s + xmp));
    case Container::Tiff:
        return tiff.bytes();
    default:
        return gif.insert(gif.size() - 1, "\x21\xff\x0bXMP DataXMP"s + xmp + '\1' + slide + '\0');
    }
}

/// The payloads of the JPEG segments that begin with `start`.
std::vector<std::string> payloadsOf(const std::string& jpeg, const std::string& start) {
    std::vector<std::string> payloads;
    for (std::size_t at = 0; (at = jpeg.find(start, at)) != std::string::npos; at += start.size()) {
        const auto byte = [&jpeg, at](std::size_t before) {
            return static_cast<unsigned char>(jpeg[at - before]);
        };
        payloads.push_back(jpeg.substr(at, static_cast<std::size_t>(byte(2) << 8 | byte(1)) - 2));
    }
    return payloads;
}

const std::string kLongNodes =
    "<rdf:Description rdf:about=\"the picture\" xmlns:s=\"s/\" s:Small=\"small\" s:Wide=\"" +
    std::string(150'000, 'w') + "\">\n <s:Few>few</s:Few>\n <s:Deep><rdf:Seq><rdf:li>" +
    std::string(90'000, 'd') + "</rdf:li></rdf:Seq></s:Deep>\n</rdf:Description>";

TEST(ExtendedXmp, OfAPacketTooLongForASegmentTheLargestPropertiesMoveToTheExtension) {
    for (const Container container : kFormatsWithoutLimit) {
        const std::string jpeg = carried(fileWith(container, packetOf(kLongNodes)), written(Container::Jpeg));
        const std::vector<std::string> mains = payloadsOf(jpeg, kMainStart);
        ASSERT_EQ(mains.size(), 1U);
        EXPECT_LT(mains.front().size(), 1000U);
        EXPECT_TRUE(contains(mains.front(), "s:Small=\"small\""));
        EXPECT_TRUE(contains(mains.front(), "<s:Few>few</s:Few>"));
        EXPECT_TRUE(contains(mains.front(), "rdf:about=\"the picture\" xmlns:xmpNote"));

        std::string extension;
        const std::vector<std::string> pieces = payloadsOf(jpeg, kExtensionStart);
        for (const std::string& piece : pieces) {
            EXPECT_LE(piece.size(), 65400U + 75U);
            EXPECT_EQ(piece.substr(71, 4), bigNumber(extension.size(), 4));
            extension += piece.substr(75);
        }
        EXPECT_EQ(pieces.size(), 4U);
        for (const std::string& piece : pieces)
            EXPECT_EQ(piece.substr(35, 36), xmp::digest(extension) + bigNumber(extension.size(), 4));
        EXPECT_TRUE(contains(mains.front(), "xmpNote:HasExtendedXMP=\"" + xmp::digest(extension) + "\""));
        EXPECT_TRUE(extension ==
                    packetOf("<rdf:Description rdf:about=\"the picture\" xmlns:s=\"s/\" s:Wide=\"" +
                             std::string(150'000, 'w') + "\"><s:Deep><rdf:Seq><rdf:li>" +
                             std::string(90'000, 'd') + "</rdf:li></rdf:Seq></s:Deep></rdf:Description>"));
    }
}

TEST(ExtendedXmp, ALongPacketKeepsAllItsPropertiesThroughJpeg) {
    const std::string jpeg =
        carried(fileWith(Container::Tiff, packetOf(kLongNodes)), written(Container::Jpeg));
    const std::string xmp = xmpIn(carried(jpeg, written(Container::Png)));
    for (const std::string& part :
         {"s:Small=\"small\""s, "<s:Few>few</s:Few>"s, "s:Wide=\"" + std::string(150'000, 'w') + "\"",
          "<s:Deep><rdf:Seq><rdf:li>" + std::string(90'000, 'd') + "</rdf:li></rdf:Seq></s:Deep>"})
        EXPECT_TRUE(contains(xmp, part));
    EXPECT_FALSE(contains(xmp, "HasExtendedXMP"));
}

TEST(ExtendedXmp, IsNotNeededForPaddingOnly) {
    const std::string packet = packetOf("<rdf:Description/>");
    const std::string end = "<?xpacket end=\"w\"?>";
    const xmp::DividedPacket divided = xmp::divided(packet + std::string(70'000, ' ') + end, kMaxMainBytes);
    EXPECT_EQ(divided.main, packet + "\n" + end);
    EXPECT_EQ(divided.extension, "");
}

TEST(ExtendedXmp, IsNotNeededForAPacketThatJustFits) {
    const std::string small = packetOf("<rdf:Description a=\"\"/>");
    const std::string fits =
        packetOf("<rdf:Description a=\"" + std::string(kMaxMainBytes - small.size(), 'a') + "\"/>");
    ASSERT_EQ(fits.size(), kMaxMainBytes);
    EXPECT_EQ(xmp::divided(fits, kMaxMainBytes).main, fits);
    const xmp::DividedPacket divided = xmp::divided(fits + ' ', kMaxMainBytes);
    EXPECT_LT(divided.main.size(), 400U);
    EXPECT_GT(divided.extension.size(), 60'000U);
}

TEST(ExtendedXmp, APacketThatCannotBeDividedBecomesTheExtension) {
    const std::string long70 = std::string(70'000, 'a');
    const std::string packets[] = {
        packetOf("<rdf:Description xmlns:a=\"" + long70 + "\"/>"),
        packetOf("<rdf:Description rdf:about=\"" + long70 + "\" xmlns:a=\"a\" a:B=\"c\"/>"),
        packetOf("<!--" + long70 + "-->"),
        long70,
        "<a>" + long70 + "</b>",
        "<rdf:RDF" + long70,
        "<!DOCTYPE a>" + long70,
    };
    for (const std::string& packet : packets) {
        const xmp::DividedPacket divided = xmp::divided(packet, kMaxMainBytes);
        EXPECT_EQ(divided.extension, packet);
        EXPECT_TRUE(contains(divided.main, xmp::digest(packet)));
        EXPECT_LT(divided.main.size(), 400U);
    }
}

TEST(ExtendedXmp, DeepAndLongPacketsTakeLinearTime) {
    constexpr std::size_t kCount = 300'000;
    std::string deep;
    std::string flat;
    std::string close;
    for (std::size_t i = 0; i < kCount; ++i) {
        deep += "<a>";
        close += "</a>";
        flat += "<xmp:Thumbnails/><a b=\"c\"/>";
    }
    const std::string texts[] = {packetOf(deep + close), packetOf(flat), deep, "<rdf:RDF>" + flat, close};
    for (const std::string& text : texts) {
        const std::string jpeg = carried(fileWith(Container::Tiff, text), written(Container::Jpeg));
        EXPECT_FALSE(payloadsOf(jpeg, kExtensionStart).empty());
    }
}

TEST(ExtendedXmp, AReferenceToAMissingExtensionIsRemoved) {
    const std::string source = fileWith(Container::Png, mainNaming(std::string(32, 'F')));
    EXPECT_FALSE(contains(carried(source, written(Container::Jpeg)), "HasExtendedXMP"));
}

TEST(XmpDigest, IsMd5) {
    // RFC 1321, A.5.
    EXPECT_EQ(xmp::digest(""), "D41D8CD98F00B204E9800998ECF8427E");
    EXPECT_EQ(xmp::digest("message digest"), "F96B697D7CB7938D525A2F31AAF161D0");
}

} // namespace
} // namespace complexion
