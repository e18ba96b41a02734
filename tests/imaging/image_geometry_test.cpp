// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "tests/fakes/photo_files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {
namespace {

TEST(ImageActualSize, IsThePixelSizeAtAnyDensity) {
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

TEST(ImageActualSize, TheLargestPageMayBeAnyPage) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "pages.tiff";
    for (const std::vector<PixelSize>& pages : std::vector<std::vector<PixelSize>>{
             {{200, 600}, {800, 100}}, {{800, 600}, {7, 9}}, {{7, 9}, {800, 20}, {20, 600}, {9, 7}}}) {
        writeTiffPages(path, pages);
        EXPECT_EQ(ImageTools::ImageActualSize(path), (PointSize{800, 600})) << pages.size();
    }
}

TEST(ImageActualSize, FailsIfTheLargestSidesExceedTheLimit) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "pages.tiff";
    writeTiffPages(path, {{400'000, 1}, {1, 700}});
    EXPECT_EQ(ImageTools::ImageActualSize(path), std::nullopt);
    writeTiffPages(path, {{700, 1}, {1, 400'000}});
    EXPECT_EQ(ImageTools::ImageActualSize(path), std::nullopt);
    for (const PixelSize size : {PixelSize{20'000, 5}, PixelSize{5, 20'000}}) {
        writeTiffPages(path, {{size.width, 1}, {1, size.height}});
        EXPECT_EQ(ImageTools::ImageActualSize(path), (PointSize{1.0 * size.width, 1.0 * size.height}));
    }
}

TEST(ImageActualSize, FailsForAnUndecodableFile) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "fake.png", "no picture at all");
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path() / "fake.png"), std::nullopt);
    writeFile(folder.path() / "begun.png", "\x89PNG\r\n\x1a\n, but not a picture");
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path() / "begun.png"), std::nullopt);
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path() / "missing.png"), std::nullopt);
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path()), std::nullopt);
}

TEST(ImageActualSize, IsZeroForAFileWithoutPictures) {
    const TemporaryFolder folder;
    // A GIF of a 5 by 5 screen that ends before its first frame.
    writeFile(folder.path() / "empty.gif", std::string("GIF89a\5\0\5\0\0\0\0;", 14));
    EXPECT_EQ(ImageTools::ImageActualSize(folder.path() / "empty.gif"), (PointSize{0, 0}));
}

TEST(ImageActualSizeDeathTest, AnEmptyPathIsFatal) {
    EXPECT_DEATH((void)ImageTools::ImageActualSize({}), "not named");
}

TEST(BringImageToActualSize, APhotoAt300DpiBecomesANewImageWithOnePointPerPixel) {
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

TEST(BringImageToActualSize, APhotoAt72DpiIsReturnedItself) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.jpg";
    writeJpeg(path, shaded({300, 200}), 72);
    const Image decoded = ImageTools::DecodeImage(path).value();
    EXPECT_TRUE(ImageTools::BringImageToActualSize(decoded, path).isSameObject(decoded));
}

TEST(BringImageToActualSize, ATinyDifferenceInSizeGivesANewImage) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.jpg";
    writeJpeg(path, shaded({100, 50}), 72);
    const Image decoded = ImageTools::DecodeImage(path)->withSize({99.9999999, 50});
    const Image actual = ImageTools::BringImageToActualSize(decoded, path);
    EXPECT_FALSE(actual.isSameObject(decoded));
    EXPECT_EQ(actual.size(), (PointSize{100, 50}));
}

TEST(BringImageToActualSize, TheFirstPageIsStretchedToTheLargestSides) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "pages.tiff";
    writeTiffPages(path, {{800, 100}, {200, 600}});
    const Image actual = ImageTools::BringImageToActualSize(ImageTools::DecodeImage(path).value(), path);
    EXPECT_EQ(actual.size(), (PointSize{800, 600}));
    EXPECT_EQ(actual.pixelSize(), (PixelSize{800, 600}));
}

TEST(BringImageToActualSize, AFileWithoutPicturesGivesAnEmptyImage) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "empty.gif", std::string("GIF89a\5\0\5\0\0\0\0;", 14));
    const Image actual =
        ImageTools::BringImageToActualSize(filled({3, 3}, grey(1)), folder.path() / "empty.gif");
    EXPECT_EQ(actual.size(), (PointSize{0, 0}));
    EXPECT_FALSE(actual.hasPixels());
}

TEST(BringImageToActualSizeDeathTest, AnUndecodableFileOrAnEmptyPathIsFatal) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "fake.png", "no picture at all");
    const Image image = filled({3, 3}, grey(1));
    EXPECT_DEATH(ImageTools::BringImageToActualSize(image, folder.path() / "fake.png"), "cannot be measured");
    EXPECT_DEATH(ImageTools::BringImageToActualSize(image, {}), "not named");
}

TEST(ResizeImage, DoesNotKeepTheAspectRatio) {
    const Image image = painted({400, 200}, [](int, int column) { return grey(column < 200 ? 40 : 200); });
    const Image resized = ImageTools::ResizeImage(image, 100, 100);
    EXPECT_EQ(resized.size(), (PointSize{100, 100}));
    EXPECT_EQ(resized.pixelSize(), (PixelSize{100, 100}));
    EXPECT_EQ(resized.pixel(50, 10), grey(40));
    EXPECT_EQ(resized.pixel(50, 90), grey(200));
}

TEST(BringImageToActualSize, ADifferentHeightAloneGivesANewImage) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.png";
    ASSERT_TRUE(ImageTools::SaveImage(shaded({100, 50}), path, "png"));
    const Image decoded = ImageTools::DecodeImage(path)->withSize({100, 50.5});
    const Image actual = ImageTools::BringImageToActualSize(decoded, path);
    EXPECT_FALSE(actual.isSameObject(decoded));
    EXPECT_EQ(actual.size(), (PointSize{100, 50}));
    EXPECT_EQ(actual.pixelSize(), (PixelSize{100, 50}));
}

TEST(ResizeImage, ToOnePixelGivesTheMeanColor) {
    const Image resized = ImageTools::ResizeImage(filled({40, 40}, grey(90)), 1, 1);
    EXPECT_EQ(pixelsOf(resized), std::vector<RGBA32>{grey(90)});
}

TEST(ResizeImage, ToZeroGivesAnImageWithoutPixels) {
    const Image image = filled({4, 4}, grey(9));
    for (const PointSize size : {PointSize{0, 3}, PointSize{3, 0}, PointSize{0, 0}}) {
        const Image resized = ImageTools::ResizeImage(image, size.width, size.height);
        EXPECT_EQ(resized.size(), size);
        EXPECT_FALSE(resized.hasPixels());
    }
}

TEST(ResizeImage, OfAnImageWithoutPixelsIsTransparent) {
    const Image resized = ImageTools::ResizeImage(Image::empty({7, 5}), 3, 2);
    EXPECT_EQ(resized.size(), (PointSize{3, 2}));
    EXPECT_EQ(pixelsOf(resized), std::vector<RGBA32>(6));
}

TEST(ResizeImageDeathTest, ASizeOutOfRangeIsFatal) {
    const Image image = filled({4, 4}, grey(9));
    EXPECT_DEATH((void)ImageTools::ResizeImage(image, -1, 3), "out of range");
    EXPECT_DEATH((void)ImageTools::ResizeImage(image, 3, -1), "out of range");
    EXPECT_DEATH((void)ImageTools::ResizeImage(image, 3e8, 0), "out of range");
    EXPECT_DEATH((void)ImageTools::ResizeImage(image, 0, std::nan("")), "out of range");
}

TEST(ResizeImage, ASideMayBeAsLongAsTheMaximumArea) {
    // The limit is 2^28 pixels. With a height of 0, no pixels are allocated.
    const Image image = filled({4, 4}, grey(9));
    constexpr double kMaxSide = 268'435'456;
    EXPECT_EQ(ImageTools::ResizeImage(image, kMaxSide, 0).size(), (PointSize{kMaxSide, 0}));
    EXPECT_DEATH((void)ImageTools::ResizeImage(image, kMaxSide + 1, 0), "out of range");
}

TEST(ResizeImage, KeepsFractionsOfPoints) {
    const Image resized = ImageTools::ResizeImage(filled({4, 4}, grey(9)), 2.5, 1.25);
    EXPECT_EQ(resized.size(), (PointSize{2.5, 1.25}));
    EXPECT_EQ(resized.pixelSize(), (PixelSize{3, 2}));
}

} // namespace
} // namespace complexion
