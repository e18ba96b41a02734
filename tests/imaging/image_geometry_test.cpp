// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "tests/fakes/photo_files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

TEST(ImageActualSize, IsThePixelSizeWhateverTheDensity) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.jpg";
    writeJpeg(path, shaded({300, 200}), 300);
    EXPECT_EQ(ImageTools::ImageActualSize(path), (PointSize{300, 200}));
}

TEST(ImageActualSize, TakesTheLargestWidthAndTheLargestHeightOfAllPages) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "pages.tiff";
    writeTiffPages(path, {{800, 100}, {200, 600}});
    EXPECT_EQ(ImageTools::ImageActualSize(path), (PointSize{800, 600}));
}

TEST(ImageActualSize, IsNothingForAFileThatCannotBeDecoded) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "fake.png", "no picture at all");
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path() / "fake.png"), std::nullopt);
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path() / "missing.png"), std::nullopt);
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path()), std::nullopt);
}

TEST(ImageActualSize, IsZeroForAFileWithoutAnyPicture) {
    const TemporaryFolder folder;
    // A GIF of a 5 by 5 screen that ends before its first frame.
    writeFile(folder.path() / "empty.gif", std::string("GIF89a\5\0\5\0\0\0\0;", 14));
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path() / "empty.gif"), (PointSize{0, 0}));
}

TEST(ImageActualSizeDeathTest, AMissingAddressIsFatal) {
    EXPECT_DEATH((void)ImageTools::ImageActualSize({}), "not named");
}

TEST(BringImageToActualSize, APhotoAt300DpiBecomesANewImageOfOnePointPerPixel) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.jpg";
    writeJpeg(path, shaded({300, 200}), 300);
    const Image decoded = ImageTools::DecodeImage(path).value();
    EXPECT_EQ(decoded.size(), (PointSize{72, 48}));
    const Image actual = ImageTools::BringImageToActualSize(decoded, path);
    EXPECT_FALSE(actual.isSameObject(decoded));
    EXPECT_EQ(actual.size(), (PointSize{300, 200}));
    EXPECT_EQ(pixelsOf(actual), pixelsOf(decoded));
}

TEST(BringImageToActualSize, APhotoAt72DpiIsTheVeryImage) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.jpg";
    writeJpeg(path, shaded({300, 200}), 72);
    const Image decoded = ImageTools::DecodeImage(path).value();
    EXPECT_TRUE(ImageTools::BringImageToActualSize(decoded, path).isSameObject(decoded));
}

TEST(BringImageToActualSize, ASizeThatDiffersInTheLastFractionMakesANewImage) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.jpg";
    writeJpeg(path, shaded({100, 50}), 72);
    const Image decoded = ImageTools::DecodeImage(path)->withSize({99.9999999, 50});
    const Image actual = ImageTools::BringImageToActualSize(decoded, path);
    EXPECT_FALSE(actual.isSameObject(decoded));
    EXPECT_EQ(actual.size(), (PointSize{100, 50}));
}

TEST(BringImageToActualSize, PagesOfUnequalSizesStretchTheFirstToTheLargestSides) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "pages.tiff";
    writeTiffPages(path, {{800, 100}, {200, 600}});
    const Image actual = ImageTools::BringImageToActualSize(ImageTools::DecodeImage(path).value(), path);
    EXPECT_EQ(actual.size(), (PointSize{800, 600}));
    EXPECT_EQ(actual.pixelSize(), (PixelSize{800, 600}));
}

TEST(BringImageToActualSize, AFileWithoutAnyPictureGivesAnEmptyImage) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "empty.gif", std::string("GIF89a\5\0\5\0\0\0\0;", 14));
    const Image actual =
        ImageTools::BringImageToActualSize(filled({3, 3}, grey(1)), folder.path() / "empty.gif");
    EXPECT_EQ(actual.size(), (PointSize{0, 0}));
    EXPECT_FALSE(actual.hasPixels());
}

TEST(BringImageToActualSizeDeathTest, AFileThatCannotBeDecodedOrIsNotNamedIsFatal) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "fake.png", "no picture at all");
    const Image image = filled({3, 3}, grey(1));
    EXPECT_DEATH(ImageTools::BringImageToActualSize(image, folder.path() / "fake.png"), "cannot be measured");
    EXPECT_DEATH(ImageTools::BringImageToActualSize(image, {}), "not named");
}

TEST(ResizeImage, SqueezesTheWholePictureIntoTheNewSize) {
    const Image image = painted({400, 200}, [](int, int column) { return grey(column < 200 ? 40 : 200); });
    const Image resized = ImageTools::ResizeImage(image, 100, 100);
    EXPECT_EQ(resized.size(), (PointSize{100, 100}));
    EXPECT_EQ(resized.pixelSize(), (PixelSize{100, 100}));
    EXPECT_EQ(resized.pixel(50, 10), grey(40));
    EXPECT_EQ(resized.pixel(50, 90), grey(200));
}

TEST(ResizeImage, KeepsAFractionOfASizeInPoints) {
    const Image resized = ImageTools::ResizeImage(filled({4, 4}, grey(9)), 2.5, 1.25);
    EXPECT_EQ(resized.size(), (PointSize{2.5, 1.25}));
    EXPECT_EQ(resized.pixelSize(), (PixelSize{3, 2}));
}

} // namespace
} // namespace complexion
