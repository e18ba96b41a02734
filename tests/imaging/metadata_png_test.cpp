// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/carried_metadata.h"
#include "imaging/metadata/png_metadata.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <zlib.h>

namespace complexion {
namespace {

using namespace std::string_literals;

std::string plainPng(const Image& image = noise({20, 10})) {
    return encodedAs(kPngCodec, image);
}

std::string pngPhoto(const std::string& chunks) {
    return withChunks(plainPng(filled({20, 10}, grey(3))), chunks);
}

std::string zlibStream(const std::string& text) {
    std::string stream(compressBound(text.size()), '\0');
    uLongf length = stream.size();
    compress(reinterpret_cast<Bytef*>(stream.data()), &length, reinterpret_cast<const Bytef*>(text.data()),
             text.size());
    return stream.substr(0, length);
}

TEST(PngMetadata, ChunksAreCarriedInOrderByteForByte) {
    const std::string chunks =
        pngChunkOf("eXIf", cameraExif(8).bytes()) + pngChunkOf("tEXt", "Author\0somebody"s) +
        pngChunkOf("zTXt", "Comment\0\0"s + zlibStream("compressed")) +
        pngChunkOf("iTXt", "XML:com.adobe.xmp\0\0\0\0\0<x:xmpmeta/>"s) +
        pngChunkOf("pHYs", bigNumber(11811, 4) + bigNumber(5906, 4) + '\1') +
        pngChunkOf("tIME", "\7\xe0\1\2\3\4\5") + pngChunkOf("oFFs", std::string(9, '\1')) +
        pngChunkOf("prVt", "private and safe to copy");
    EXPECT_TRUE(contains(carried(pngPhoto(chunks), plainPng()), chunks));
}

TEST(PngMetadata, ImageDataIsUnchanged) {
    const std::string written = plainPng(noise({300, 200}));
    const std::string result = carried(pngPhoto(pngChunkOf("tEXt", "Author\0somebody"s)), written);
    EXPECT_TRUE(pixelChunksOf(result) == pixelChunksOf(written));
    EXPECT_EQ(result.size(), written.size() + 12 + 15);
}

TEST(PngMetadata, ChunksAboutTheCodingAreNotCarried) {
    for (const std::string name : {"gAMA", "cHRM", "sRGB", "iCCP", "sBIT", "bKGD", "hIST", "tRNS", "sPLT",
                                   "acTL", "dSIG", "cLLi", "prVT"})
        EXPECT_TRUE(carried(pngPhoto(pngChunkOf(name, "anything")), plainPng()) == plainPng()) << name;
    EXPECT_TRUE(carried(pngPhoto(rawProfileChunkOf("icc", "profile")), plainPng()) == plainPng());
}

TEST(PngMetadata, ExifInATextChunkIsMovedToItsOwnChunk) {
    const std::string exif = cameraExif(6).bytes();
    const std::string result = carried(pngPhoto(rawProfileChunkOf("exif", "Exif\0\0"s + exif)), plainPng());
    EXPECT_TRUE(contains(result, pngChunkOf("eXIf", exif)));
    EXPECT_FALSE(contains(result, "Raw profile"));
}

TEST(PngMetadata, TheThumbnailIsReplaced) {
    SampleTiff exif = cameraExif(1);
    exif.thumbnail = encodedAs(kJpegCodec, shaded({40, 20}));
    const std::string result = carried(pngPhoto(pngChunkOf("eXIf", exif.bytes())),
                                       plainPng(filled({80, 40}, RGBA32(20, 200, 90, 255))));
    const std::size_t start = result.find("\xff\xd8\xff");
    ASSERT_NE(start, std::string::npos);
    const Result<Image> thumbnail = kJpegCodec.decode(viewOf(result.substr(start)));
    ASSERT_TRUE(thumbnail);
    EXPECT_TRUE(nearlySamePixels(*thumbnail, filled({40, 20}, RGBA32(20, 200, 90, 255)), 6));
}

TEST(PngMetadata, DensityIsTheSourcesOrNone) {
    const auto density = [](unsigned across) {
        return pngChunkOf("pHYs", bigNumber(across, 4) + bigNumber(2835, 4) + '\1');
    };
    std::string bare = plainPng();
    const std::size_t own = bare.find("pHYs");
    ASSERT_NE(own, std::string::npos);
    bare.erase(own - 4, density(0).size());
    EXPECT_TRUE(carried(bare, withChunks(bare, density(1000))) == bare);
    EXPECT_FALSE(
        contains(carried(withChunks(bare, density(2000)), withChunks(bare, density(1000))), density(1000)));
    const std::string twice = withChunks(bare, density(2000) + density(3000));
    EXPECT_TRUE(contains(carried(twice, bare), density(2000)));
    EXPECT_FALSE(contains(carried(twice, bare), density(3000)));
}

TEST(PngMetadata, CodePointsAreCarriedBetweenPicturesOfColors) {
    const std::string codes = pngChunkOf("cICP", "\x0c\x0d\0\x01"s);
    EXPECT_TRUE(contains(carried(pngPhoto(codes), plainPng()), codes));
    std::string greySource = pngPhoto(codes);
    greySource[25] = 0; // colour type, in the header
    const std::uint32_t sum =
        static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(greySource.data() + 12), 17));
    greySource.replace(29, 4, bigNumber(sum, 4));
    EXPECT_FALSE(contains(carried(greySource, plainPng()), codes));
}

TEST(PngMetadata, OnlyChunksWithAWrongChecksumAreNotCarried) {
    std::string wrong = pngChunkOf("tEXt", "Author\0wrong"s);
    wrong.back() = static_cast<char>(wrong.back() + 1);
    const std::string right = pngChunkOf("tEXt", "Title\0right"s);
    const std::string result = carried(pngPhoto(wrong + right), plainPng());
    EXPECT_TRUE(contains(result, right));
    EXPECT_FALSE(contains(result, "wrong"));
}

TEST(PngMetadata, ADecompressionBombIsNotReadButCarried) {
    const std::string bomb = pngChunkOf("zTXt", "Comment\0\0"s + zlibStream(std::string(20'000'000, 'x')));
    const std::string source = pngPhoto(bomb);
    EXPECT_TRUE(png::readMetadata(viewOf(source)).notes.empty());
    EXPECT_TRUE(contains(carried(source, plainPng()), bomb));
}

TEST(PngMetadata, ATruncatedTargetIsRefused) {
    const std::string written = plainPng();
    const std::string source = pngPhoto(pngChunkOf("tEXt", "Author\0somebody"s));
    EXPECT_FALSE(withMetadataOf(viewOf(source), viewOf(written.substr(0, written.size() - 12))));
}

} // namespace
} // namespace complexion
