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

constexpr PixelSize kPhotoSize = {640, 480};
constexpr PixelPosition kSpot = {200, 300};
constexpr int kSpotRadius = 14;

using Kind = jpeg::Attachment::Kind;

class GainMap : public testing::TestWithParam<HdrPhotoRecipe> {
protected:
    GainMap()
        : photo(hdrPhoto(spotted(kPhotoSize, kSpot, kSpotRadius, 90, 170), GetParam())),
          source(folder.path() / "photo.jpg") {
        writeFile(source, photo.file);
        image = openPhoto(source)->image;
    }

    /// The photo's blemish as a point in the upright picture.
    Point spot() const {
        return GetParam().orientation == 1
                   ? Point{kSpot.column + 0.5, kPhotoSize.height - kSpot.row - 0.5}
                   : Point{kPhotoSize.height - kSpot.row - 0.5, kPhotoSize.width - kSpot.column - 0.5};
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
    constexpr int kWidth = kPhotoSize.width / 4;
    const auto at = [](int row, int column) {
        return static_cast<std::size_t>(row) * kWidth + static_cast<std::size_t>(column);
    };
    const std::size_t middle = at(kSpot.row / 4, kSpot.column / 4);
    const int skin = before[at(10, 10)];
    EXPECT_LT(before[middle], skin - 25);
    EXPECT_NEAR(after[middle], skin, 6);
    constexpr int kReach = 32; // of the repair and its MCUs, pixels of the map
    for (int row = 0; row < kPhotoSize.height / 4; ++row)
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

} // namespace
} // namespace complexion
