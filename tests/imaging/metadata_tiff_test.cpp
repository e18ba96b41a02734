// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/carried_metadata.h"
#include "imaging/codecs/codec.h"
#include "imaging/containers/tiff_structure.h"
#include "imaging/metadata/carrying.h"
#include "imaging/metadata/tiff_metadata.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace complexion {
namespace {

using namespace std::string_literals;

constexpr unsigned kPrivateTag = 65001;
constexpr unsigned kLayersTag = 37724;
constexpr unsigned kProfileTag = 34675;

/// A file as SaveImage writes it: one strip, a density, a profile.
std::string writtenTiff(bool isBigEndian = false) {
    SampleTiff tiff;
    tiff.isBigEndian = isBigEndian;
    tiff.strip = "the very pixels";
    tiff.main = {tiff.rationalTag(282, 72, 1), tiff.rationalTag(283, 72, 1), tiff.shortTag(296, 2),
                 SampleTiff::bytesTag(kProfileTag, "the new profile")};
    return tiff.bytes();
}

SampleTiff photo(bool isBigEndian = false) {
    SampleTiff tiff = cameraExif(6, isBigEndian);
    tiff.strip = "original pixels";
    tiff.main.push_back(SampleTiff::textTag(270, "What the picture shows"));
    tiff.main.push_back(SampleTiff::textTag(315, "Somebody"));
    tiff.main.push_back(SampleTiff::bytesTag(700, "<x:xmpmeta/>"));
    tiff.main.push_back(SampleTiff::bytesTag(33723, "\x1c\x02\x78\0\3abc"s));
    tiff.main.push_back(SampleTiff::bytesTag(kPrivateTag, "private data"));
    tiff.main.push_back(SampleTiff::bytesTag(kProfileTag, "the old profile"));
    tiff.main.push_back(SampleTiff::bytesTag(kLayersTag, "layers of the original"));
    return tiff;
}

/// The tags of a file.
struct Parsed {
    explicit Parsed(const std::string& file) : bytes(file) {
        const auto found = tiff::readHeader(viewOf(bytes));
        EXPECT_TRUE(found);
        header = found.value_or(tiff::Header{});
        directory = tiff::readDirectory(viewOf(bytes), header, header.firstDirectory);
    }

    std::string value(unsigned wanted) const { return valueIn(directory, wanted); }
    std::string exifValue(unsigned wanted) const { return valueIn(*directory.find(34665)->child, wanted); }
    std::uint64_t number(unsigned wanted) const {
        return tiff::firstNumber(*directory.find(wanted), header.order);
    }

    static std::string valueIn(const tiff::Directory& directory, unsigned wanted) {
        const tiff::Entry* entry = directory.find(wanted);
        return entry ? std::string(entry->value.begin(), entry->value.end()) : "none";
    }

    std::string bytes;
    tiff::Header header;
    tiff::Directory directory;
};

TEST(TiffMetadata, AnAmbiguousOrientationIsNotCarried) {
    const std::vector<SampleTag> ambiguous = {{274, 3, 2, "\6\0\0\0"s}, {274, 1, 1, "\6"s}};
    for (const SampleTag& orientation : ambiguous) {
        SampleTiff source = photo();
        *std::ranges::find(source.main, 274U, &SampleTag::tag) = orientation;
        EXPECT_EQ(Parsed(carried(source.bytes(), writtenTiff())).value(274), "none");
        EXPECT_EQ(carriedOrientation(viewOf(source.bytes()), Container::Tiff), Orientation::TopLeft);
    }
}

TEST(TiffMetadata, TagsAboutThePictureAreCarried) {
    for (const bool isBigEndian : {false, true}) {
        const SampleTiff source = photo(isBigEndian);
        const Parsed result(carried(source.bytes(), writtenTiff()));
        EXPECT_EQ(result.value(270), "What the picture shows\0"s);
        EXPECT_EQ(result.value(271), "Camera maker\0"s);
        EXPECT_EQ(result.value(315), "Somebody\0"s);
        EXPECT_EQ(result.value(700), "<x:xmpmeta/>");
        EXPECT_EQ(result.value(33723), "\x1c\x02\x78\0\3abc"s);
        EXPECT_EQ(result.value(kPrivateTag), "private data");
        EXPECT_EQ(result.number(274), 6U);
        EXPECT_EQ(result.value(282), source.number(300, 4) + source.number(1, 4));
        EXPECT_EQ(result.exifValue(33434), source.number(1, 4) + source.number(125, 4));
        EXPECT_EQ(Parsed::valueIn(*result.directory.find(34853)->child, 1), "N\0"s);
    }
}

TEST(TiffMetadata, TagsAboutTheCodingAreNotCarried) {
    const Parsed result(carried(photo().bytes(), writtenTiff()));
    EXPECT_EQ(result.number(256), std::string("the very pixels").size());
    EXPECT_EQ(result.value(kProfileTag), "the new profile");
    EXPECT_EQ(result.value(kLayersTag), "none");
    EXPECT_FALSE(contains(result.bytes, "the face before"));
    EXPECT_FALSE(contains(result.bytes, "pixels before"));
}

TEST(TiffMetadata, StripsKeepTheirBytes) {
    for (const bool sourceOrder : {false, true})
        for (const bool writtenOrder : {false, true}) {
            const Parsed result(carried(photo(sourceOrder).bytes(), writtenTiff(writtenOrder)));
            EXPECT_EQ(result.bytes.substr(result.number(273), result.number(279)), "the very pixels");
        }
}

TEST(TiffMetadata, ByteOrderIsTheSourcesBecausePrivateValuesAreInIt) {
    EXPECT_EQ(carried(photo(true).bytes(), writtenTiff(false)).substr(0, 4), "MM\0*"s);
    EXPECT_EQ(carried(photo(false).bytes(), writtenTiff(true)).substr(0, 4), "II*\0"s);
}

TEST(TiffMetadata, MakerNoteStaysAtItsOffset) {
    const std::string source = photo().bytes();
    const std::string result = carried(source, writtenTiff());
    const std::size_t offset = source.find(kSampleMakerNote);
    EXPECT_EQ(result.substr(offset, kSampleMakerNote.size()), kSampleMakerNote);
    EXPECT_EQ(Parsed(result).exifValue(37500), kSampleMakerNote);
}

TEST(TiffMetadata, MakerNoteStaysAtItsOffsetBehindTheStrips) {
    SampleTiff far = photo();
    far.main.push_back(SampleTiff::bytesTag(301, std::string(200'000, 'c'))); // of the coding: not carried
    const std::string source = far.bytes();
    const std::size_t offset = source.find(kSampleMakerNote);
    ASSERT_GT(offset, 200'000U);
    const Result<FileContents> written = kTiffCodec.encode(noise({400, 300}));
    ASSERT_TRUE(written);
    const Result<FileContents> file = withMetadataOf(viewOf(source), *written);
    ASSERT_TRUE(file);
    const std::string result = stringOf(*file);
    EXPECT_EQ(result.substr(offset, kSampleMakerNote.size()), kSampleMakerNote);
    EXPECT_LT(result.size(),
              written->size() + written->parts[1]->size()); // a strip may not fit before the note
    for (std::size_t i = 1; i < written->parts.size(); ++i)
        EXPECT_TRUE(contains(result, textOf(*written->parts[i])));
    EXPECT_TRUE(kTiffCodec.decode(viewOf(result)));
}

TEST(TiffMetadata, TheTargetsDensityIsKeptIfTheSourceHasNone) {
    SampleTiff source;
    source.strip = "original pixels";
    source.main = {SampleTiff::textTag(270, "text")};
    const Parsed result(carried(source.bytes(), writtenTiff()));
    EXPECT_EQ(result.value(282), source.number(72, 4) + source.number(1, 4));
    EXPECT_EQ(result.value(270), "text\0"s);
}

TEST(TiffMetadata, OnlyInvalidEntriesAreNotCarried) {
    SampleTiff source = photo();
    source.main.push_back({65002, 7, 0x7fffffff, "long"});
    source.main.push_back({65003, 99, 1, "type"});
    const Parsed result(carried(source.bytes(), writtenTiff()));
    EXPECT_EQ(result.value(65002), "none");
    EXPECT_EQ(result.value(65003), "none");
    EXPECT_EQ(result.value(270), "What the picture shows\0"s);
}

TEST(TiffMetadata, CyclicDirectoriesEnd) {
    SampleTiff source;
    source.strip = "pixels";
    source.main = {source.longTag(34665, 8), source.longTag(34853, 8), SampleTiff::textTag(270, "text")};
    EXPECT_EQ(Parsed(carried(source.bytes(), writtenTiff())).value(270), "text\0"s);
}

TEST(TiffMetadata, OverlappingValuesDoNotInflateTheMetadata) {
    // Sixty thousand entries that share the same megabyte.
    constexpr std::uint32_t kLength = 1'000'000;
    constexpr int kEntries = 60'000;
    std::string file = "II*\0\x08\0\0\0"s + littleNumber(kEntries, 2);
    for (int i = 0; i < kEntries; ++i)
        file += littleNumber(50000, 2) + littleNumber(7, 2) + littleNumber(kLength, 4) + littleNumber(8, 4);
    file += std::string(kLength, 'x');
    const PictureMetadata metadata = tiff::readMetadata(viewOf(file));
    EXPECT_LE(metadata.exif.size(), 3 * file.size());
}

TEST(TiffMetadata, ATargetWithoutStripsIsRefused) {
    const std::string source = photo().bytes();
    EXPECT_FALSE(withMetadataOf(viewOf(source), viewOf(cameraExif(1).bytes())));
}

} // namespace
} // namespace complexion
