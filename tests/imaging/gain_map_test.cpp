// SPDX-License-Identifier: GPL-3.0-or-later

// The gain map of an HDR photo is saved with it, and repaired where the photo was.
#include "imaging/gain_map.h"

#include "imaging/containers/byte_order.h"
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"
#include "tests/fakes/hdr_photos.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace std::string_literals;

constexpr PixelSize kSize = {640, 480};
constexpr PixelPosition kSpot = {200, 300};
constexpr int kSpotRadius = 14;

using Kind = jpeg::Attachment::Kind;

class GainMap : public testing::TestWithParam<HdrPhotoRecipe> {
protected:
    GainMap()
        : photo(hdrPhoto(spotted(kSize, kSpot, kSpotRadius, 90, 170), GetParam())),
          source(folder.path() / "photo.jpg") {
        writeFile(source, photo.file);
        image = openPhoto(source)->image;
    }

    /// The photo's blemish as a point in the upright picture.
    Point spot() const {
        return GetParam().orientation == 1
                   ? Point{kSpot.column + 0.5, kSize.height - kSpot.row - 0.5}
                   : Point{kSize.height - kSpot.row - 0.5, kSize.width - kSpot.column - 0.5};
    }
    Image retouched() const { return *ImageTools::HealPimpleInImage(image, spot(), 22, 8); }

    std::string saved(const Image& result) const {
        const std::filesystem::path path = folder.path() / "saved.jpg";
        EXPECT_TRUE(savePhoto(result, path, "jpg", source));
        return contentsOf(path);
    }

    static std::vector<std::uint8_t> greyOf(ByteView map) { return jpegSamples(map, JCS_GRAYSCALE); }

    TemporaryFolder folder;
    HdrPhoto photo;
    std::filesystem::path source;
    Image image;
};

INSTANTIATE_TEST_SUITE_P(
    Kinds, GainMap,
    testing::Values(HdrPhotoRecipe{}, HdrPhotoRecipe{.mapComponents = 3}, HdrPhotoRecipe{.hasPreview = true},
                    HdrPhotoRecipe{.hasPreview = true, .hasMovie = true}, HdrPhotoRecipe{.orientation = 6},
                    HdrPhotoRecipe{.kind = HdrKind::Auxiliary},
                    HdrPhotoRecipe{.kind = HdrKind::Auxiliary, .hasPreview = true, .orientation = 6}));

const jpeg::Attachment* findMap(const std::vector<jpeg::Attachment>& all) {
    const auto found = std::ranges::find(all, Kind::GainMap, &jpeg::Attachment::kind);
    return found == all.end() ? nullptr : &*found;
}

/// Expects that the file's declarations of its attachments are true.
void expectTrueDeclarations(const std::string& file, bool hasMap) {
    const ByteView bytes = bytesOf(file);
    const std::vector<jpeg::Attachment> all = jpeg::attachments(bytes);
    ASSERT_EQ(all.size(), hasMap ? 1U : 0U);
    const std::optional<jpeg::MultiPictureIndex> index = jpeg::multiPictureIndex(bytes);
    ASSERT_EQ(index.has_value(), hasMap);
    for (const std::string_view movie : {"MotionPhoto=", "MicroVideoOffset=", "video/mp4"})
        EXPECT_FALSE(contains(file, movie)) << movie;
    if (!hasMap) {
        EXPECT_FALSE(contains(file, "hdrgm:Version="));
        EXPECT_FALSE(contains(file, "<Container:Directory"));
        EXPECT_FALSE(contains(file, "21496"));
        return;
    }
    ASSERT_EQ(index->entries.size(), 2U);
    EXPECT_EQ(index->entries[0].size, file.size() - all[0].bytes.size());
    EXPECT_EQ(index->entries[1].size, all[0].bytes.size());
    EXPECT_EQ(all[0].bytes.data() + all[0].bytes.size(), bytes.data() + bytes.size());
    if (contains(file, "Container:Directory")) {
        EXPECT_TRUE(contains(file, "Item:Length=\"" + std::to_string(all[0].bytes.size()) + "\""));
        EXPECT_EQ(all[0].item, 1U);
    }
}

TEST_P(GainMap, IsFoundInThePhoto) {
    const std::vector<jpeg::Attachment> all = jpeg::attachments(bytesOf(photo.file));
    const jpeg::Attachment* const map = findMap(all);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(std::string(textOf(map->bytes)), photo.map);
    EXPECT_EQ(all.size(), 1U + (GetParam().hasPreview ? 1 : 0) + (GetParam().hasMovie ? 1 : 0));
}

TEST_P(GainMap, IsKeptByteForByteIfNothingIsRetouched) {
    const std::string file = saved(image);
    expectTrueDeclarations(file, true);
    EXPECT_TRUE(file.ends_with(photo.map));
}

TEST_P(GainMap, IsRepairedOnlyWhereThePhotoIs) {
    const std::string file = saved(retouched());
    expectTrueDeclarations(file, true);
    const std::vector<jpeg::Attachment> all = jpeg::attachments(bytesOf(file));
    ASSERT_NE(findMap(all), nullptr);
    const std::vector<std::uint8_t> before = greyOf(bytesOf(photo.map));
    const std::vector<std::uint8_t> after = greyOf(findMap(all)->bytes);
    ASSERT_EQ(after.size(), before.size());
    constexpr int kWidth = kSize.width / 4;
    const auto at = [](int row, int column) {
        return static_cast<std::size_t>(row) * kWidth + static_cast<std::size_t>(column);
    };
    const std::size_t middle = at(kSpot.row / 4, kSpot.column / 4);
    const int skin = before[at(10, 10)];
    EXPECT_LT(before[middle], skin - 25);
    EXPECT_NEAR(after[middle], skin, 6);
    constexpr int kReach = 32; // of the repair and its MCUs, pixels of the map
    for (int row = 0; row < kSize.height / 4; ++row)
        for (int column = 0; column < kWidth; ++column)
            if (std::abs(row - kSpot.row / 4) > kReach || std::abs(column - kSpot.column / 4) > kReach) {
                ASSERT_EQ(after[at(row, column)], before[at(row, column)]) << row << ", " << column;
            }
}

TEST_P(GainMap, IsDroppedWithItsDeclarationsUnderAnEffect) {
    const std::string file = saved(ImageTools::ApplyEffectOnImage(image, "Noir"));
    expectTrueDeclarations(file, false);
}

TEST_P(GainMap, IsNotDeclaredInOtherFormats) {
    const std::filesystem::path path = folder.path() / "saved.png";
    ASSERT_TRUE(savePhoto(image, path, "png", source));
    EXPECT_FALSE(contains(contentsOf(path), "hdrgm:Version="));
    EXPECT_FALSE(contains(contentsOf(path), "Item:Semantic"));
}

// Trailers.

/// A Samsung trailer with these blocks.
std::string samsungTrailerOf(const std::vector<std::string>& contents) {
    std::string blocks;
    std::string entries;
    for (const std::string& content : contents) {
        const std::string block = "\0\0\x01\x0a"s + littleNumber(4, 4) + "Name" + content;
        blocks += block;
        entries += "\0\0\x01\x0a"s + littleNumber(blocks.size(), 4) + littleNumber(block.size(), 4);
    }
    // The distances count from the directory, which follows the last block.
    for (std::size_t at = 4; at < entries.size(); at += 12) {
        const std::size_t end =
            static_cast<std::size_t>(numberAt(viewOf(entries), at, 4, ByteOrder::LittleEndian));
        const std::size_t size =
            static_cast<std::size_t>(numberAt(viewOf(entries), at + 4, 4, ByteOrder::LittleEndian));
        entries.replace(at, 4, littleNumber(blocks.size() - end + size, 4));
    }
    const std::string directory = "SEFH" + littleNumber(106, 4) + littleNumber(contents.size(), 4) + entries;
    return blocks + directory + littleNumber(directory.size(), 4) + "SEFT";
}

class Trailer : public testing::Test {
protected:
    /// What is saved of a photo with this trailer.
    std::string saved(const std::string& trailer) const {
        const std::filesystem::path source = folder.path() / "photo.jpg";
        const std::filesystem::path path = folder.path() / "saved.jpg";
        writeFile(source, encodedAs(kJpegCodec, skinWithBlemishes({64, 48}, {{20, 30}})) + trailer);
        EXPECT_TRUE(savePhoto(openPhoto(source)->image, path, "jpg", source));
        return contentsOf(path);
    }
    TemporaryFolder folder;
};

TEST_F(Trailer, IsCarried) {
    const std::string trailer = samsungTrailerOf({"1700000000000", "{\"json\": 1}"});
    EXPECT_TRUE(saved(trailer).ends_with("\xff\xd9" + trailer));
}

TEST_F(Trailer, IsCarriedWithoutItsPicturesAndMovies) {
    const std::string picture = encodedAs(kJpegCodec, filled({8, 8}, kSkin));
    const std::string movie = littleNumber(24, 4) + "ftypmp42 moving face";
    EXPECT_TRUE(
        saved(samsungTrailerOf({picture, "text", movie})).ends_with("\xff\xd9" + samsungTrailerOf({"text"})));
    EXPECT_TRUE(saved(samsungTrailerOf({picture, movie})).ends_with("\xff\xd9"));
}

TEST_F(Trailer, ThatIsDamagedIsLeftOut) {
    std::string trailer = samsungTrailerOf({"text"});
    const std::size_t entry = trailer.find("SEFH") + 12;
    for (const auto& [at, value] :
         {std::pair(entry + 4, 1000U), std::pair(entry + 8, 1000U), std::pair(entry - 4, 70000U),
          std::pair(trailer.size() - 8, 0xFFFFFFFFU)}) {
        std::string damaged = trailer;
        damaged.replace(at, 4, littleNumber(value, 4));
        EXPECT_TRUE(saved(damaged).ends_with("\xff\xd9"));
    }
}

} // namespace
} // namespace complexion
