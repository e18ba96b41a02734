// SPDX-License-Identifier: GPL-3.0-or-later

// The preview of a photo that is being decoded.
#include "imaging/photo_files.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <cmath>
#include <cstdlib>

namespace complexion {
namespace {

constexpr PixelSize kLarge = {2505, 1803};
constexpr int kBlock = 8;
/// Levels by which the waves change in half a block of subsampled colours.
constexpr int kMaxDifference = 8;

/// Packed samples of a smooth picture, in which neighbouring blocks differ little.
std::vector<std::uint8_t> waves(PixelSize size, int components) {
    std::vector<std::uint8_t> samples;
    samples.reserve(static_cast<std::size_t>(size.area()) * static_cast<std::size_t>(components));
    for (int row = 0; row < size.height; ++row)
        for (int column = 0; column < size.width; ++column)
            for (int i = 0; i < components; ++i)
                samples.push_back(static_cast<std::uint8_t>(128 + 100 * std::sin(0.003 * (row + i * column)) *
                                                                      std::cos(0.002 * column)));
    return samples;
}

struct Preview {
    int count = 0;
    Image image;
};

class PicturePreview : public testing::Test {
protected:
    /// The last preview of a JPEG file, and the photo.
    Result<OpenedPhoto> open(const JpegRecipe& recipe, Preview& preview) const {
        const std::filesystem::path path = m_folder.path() / "photo.jpg";
        const Bytes file = jpegFile(recipe, waves(recipe.size, recipe.components));
        writeFile(path, {file.begin(), file.end()});
        return openPhoto(path, {}, [&](const Image& image) {
            ++preview.count;
            preview.image = image;
        });
    }

    static JpegRecipe progressive(PixelSize size = kLarge) {
        JpegRecipe recipe;
        recipe.size = size;
        recipe.adjust = [](jpeg_compress_struct& info) { jpeg_simple_progression(&info); };
        return recipe;
    }

    TemporaryFolder m_folder;
    InstalledReader m_reader;
};

/// The largest difference between the preview and the photo around the middle of its blocks.
int largestDifference(const Image& preview, const Image& photo) {
    int largest = 0;
    const PixelSize size = photo.pixelSize();
    for (int row = kBlock / 2; row < size.height - kBlock; row += 5 * kBlock)
        for (int column = kBlock / 2; column < size.width - kBlock; column += 5 * kBlock) {
            const RGBA32 reduced = preview.pixel(row / kBlock, column / kBlock);
            const RGBA32 pixel = photo.pixel(row, column);
            for (const auto component : {&RGBA32::red, &RGBA32::green, &RGBA32::blue})
                largest = std::max(largest, std::abs((reduced.*component)() - (pixel.*component)()));
        }
    return largest;
}

void expectPreviewOf(const Result<OpenedPhoto>& photo, const Preview& preview) {
    ASSERT_TRUE(photo) << photo.error().message;
    ASSERT_EQ(preview.count, 1);
    const PixelSize size = photo->image.pixelSize();
    EXPECT_EQ(preview.image.pixelSize(),
              (PixelSize{(size.width + kBlock - 1) / kBlock, (size.height + kBlock - 1) / kBlock}));
    EXPECT_EQ(preview.image.size(), photo->image.size());
    EXPECT_EQ(preview.image.profile(), photo->image.profile());
    EXPECT_LE(largestDifference(preview.image, photo->image), kMaxDifference);
}

TEST_F(PicturePreview, OfAProgressivePhotoHasItsPlaceAndColors) {
    Preview preview;
    expectPreviewOf(open(progressive(), preview), preview);
}

TEST_F(PicturePreview, OfAGreyPhotoIsGrey) {
    JpegRecipe recipe = progressive();
    recipe.components = 1;
    recipe.samples = JCS_GRAYSCALE;
    Preview preview;
    expectPreviewOf(open(recipe, preview), preview);
}

TEST_F(PicturePreview, OfSubsampledColorsHasThem) {
    JpegRecipe recipe = progressive();
    recipe.adjust = [](jpeg_compress_struct& info) {
        info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 2;
        jpeg_simple_progression(&info);
    };
    Preview preview;
    expectPreviewOf(open(recipe, preview), preview);
}

TEST_F(PicturePreview, OfAPhotoInRgbHasItsColors) {
    JpegRecipe recipe = progressive();
    recipe.adjust = [](jpeg_compress_struct& info) {
        jpeg_set_colorspace(&info, JCS_RGB);
        jpeg_simple_progression(&info);
    };
    Preview preview;
    expectPreviewOf(open(recipe, preview), preview);
}

TEST_F(PicturePreview, IsTurnedUpright) {
    for (const int orientation : {3, 6}) {
        JpegRecipe recipe = progressive({2512, 1808}); // whole blocks, whichever side they begin at
        recipe.exif = exifBlock(orientation);
        Preview preview;
        expectPreviewOf(open(recipe, preview), preview);
    }
}

TEST_F(PicturePreview, IsNoneOfASequentialOrSmallPhoto) {
    JpegRecipe sequential;
    sequential.size = kLarge;
    for (const JpegRecipe& recipe : {sequential, progressive({1000, 800})}) {
        Preview preview;
        ASSERT_TRUE(open(recipe, preview));
        EXPECT_EQ(preview.count, 0);
    }
}

TEST_F(PicturePreview, ChangesNothingInThePhoto) {
    Preview preview;
    const Result<OpenedPhoto> photo = open(progressive(), preview);
    const Result<OpenedPhoto> without = openPhoto(m_folder.path() / "photo.jpg");
    ASSERT_TRUE(photo && without);
    EXPECT_TRUE(samePixels(photo->image, without->image));
    EXPECT_EQ(photo->losses, without->losses);
}

TEST_F(PicturePreview, OfAPhotoThatIsCutIsFollowedByWhatThereIs) {
    const std::filesystem::path path = m_folder.path() / "cut.jpg";
    Bytes file = jpegFile(progressive(), waves(kLarge, 3));
    file.resize(file.size() * 3 / 4);
    writeFile(path, {file.begin(), file.end()});
    int previews = 0;
    const Result<OpenedPhoto> photo = openPhoto(path, {}, [&](const Image&) { ++previews; });
    ASSERT_TRUE(photo);
    EXPECT_TRUE(photo->damage);
    EXPECT_EQ(previews, 1);
    const Result<OpenedPhoto> without = openPhoto(path);
    ASSERT_TRUE(without);
    EXPECT_TRUE(samePixels(photo->image, without->image));
}

} // namespace
} // namespace complexion
