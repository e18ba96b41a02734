// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "tests/fakes/full_disk.h"
#include "tests/fakes/photo_files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace complexion {
namespace {

/// The format of a file by its content.
std::string formatOf(const std::filesystem::path& path) {
    const Result<Bytes> file = readFile(path);
    const Codec* codec = file ? codecForContent(*file) : nullptr;
    return codec ? std::string(codec->name) : "none";
}

TEST(AcceptedTypes, AreSevenInAFixedOrder) {
    const std::vector<std::string_view> expected = {"jpg", "jpeg", "png", "tiff", "tif", "gif", "bmp"};
    EXPECT_TRUE(std::ranges::equal(ImageTools::kAcceptedTypes, expected));
}

TEST(SaveImage, WritesEachFormatUnderAnyName) {
    const TemporaryFolder folder;
    const Image image = noise({70, 70});
    const std::vector<std::pair<std::string, std::string>> formats = {
        {"jpg", "JPEG"}, {"jpeg", "JPEG"}, {"png", "PNG"}, {"tiff", "TIFF"},
        {"tif", "TIFF"}, {"gif", "GIF"},   {"bmp", "BMP"}};
    for (const auto& [format, name] : formats) {
        const std::filesystem::path path = folder.path() / ("any file name " + format);
        EXPECT_TRUE(ImageTools::SaveImage(image, path, format));
        EXPECT_EQ(formatOf(path), name);
        EXPECT_EQ(ImageTools::DecodeImage(path)->pixelSize(), (PixelSize{70, 70}));
    }
}

TEST(SaveImage, JpgAndJpegGiveIdenticalFiles) {
    const TemporaryFolder folder;
    const Image image = noise({70, 70});
    ASSERT_TRUE(ImageTools::SaveImage(image, folder.path() / "a", "jpg"));
    ASSERT_TRUE(ImageTools::SaveImage(image, folder.path() / "b", "jpeg"));
    EXPECT_EQ(*readFile(folder.path() / "a"), *readFile(folder.path() / "b"));
}

TEST(SaveImage, RefusesEveryOtherFormatAndWritesNothing) {
    const TemporaryFolder folder;
    for (const char* format : {"JPG", "Png", "webp", "", "jpg "})
        EXPECT_FALSE(ImageTools::SaveImage(noise({7, 7}), folder.path() / "a", format)) << format;
    EXPECT_EQ(filesIn(folder.path()).size(), 0U);
}

TEST(SaveImage, WritesOnePixelPerPointTruncated) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "a.png";
    ASSERT_TRUE(ImageTools::SaveImage(noise({100, 50}).withSize({100.7, 50.2}), path, "png"));
    EXPECT_EQ(ImageTools::DecodeImage(path)->pixelSize(), (PixelSize{100, 50}));
    ASSERT_TRUE(ImageTools::SaveImage(noise({400, 200}).withSize({200, 100}), path, "png"));
    EXPECT_EQ(ImageTools::DecodeImage(path)->pixelSize(), (PixelSize{200, 100}));
}

TEST(SaveImageDeathTest, AnInvalidSizeIsFatal) {
    const Image image = noise({4, 4});
    EXPECT_DEATH(ImageTools::SaveImage(image.withSize({std::nan(""), 4}), "a", "png"), "out of range");
    EXPECT_DEATH(
        ImageTools::SaveImage(image.withSize({4, std::numeric_limits<double>::infinity()}), "a", "png"),
        "out of range");
    EXPECT_DEATH(ImageTools::SaveImage(image.withSize({9223372036854775808.0, 4}), "a", "png"),
                 "out of range");
    EXPECT_DEATH(ImageTools::SaveImage(image.withSize({1e18, 4}), "a", "png"), "no bitmap");
    EXPECT_DEATH(ImageTools::SaveImage(Image(), "a", "png"), "no bitmap");
}

TEST(SaveImageDeathTest, TheSizeIsCheckedBeforeTheFormat) {
    const Image image = noise({4, 4});
    EXPECT_DEATH(ImageTools::SaveImage(Image(), "a", "webp"), "no bitmap");
    EXPECT_DEATH(ImageTools::SaveImage(image.withSize({std::nan(""), 4}), "a", "JPG"), "out of range");
    EXPECT_DEATH(ImageTools::SaveImage(image.withSize({4, 0.9}), "a", ""), "no bitmap");
}

TEST(SaveImage, ReplacesAnExistingFile) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "a.png";
    writeFile(path, "an older file");
    ASSERT_TRUE(ImageTools::SaveImage(noise({7, 7}), path, "png"));
    EXPECT_EQ(formatOf(path), "PNG");
    EXPECT_EQ(filesIn(folder.path()).size(), 1U);
}

TEST(SaveImage, FailsSilentlyInAMissingFolderAndOverAFolder) {
    const TemporaryFolder folder;
    testing::internal::CaptureStdout();
    EXPECT_FALSE(ImageTools::SaveImage(noise({7, 7}), folder.path() / "none" / "a.png", "png"));
    std::filesystem::create_directory(folder.path() / "a.png");
    EXPECT_FALSE(ImageTools::SaveImage(noise({7, 7}), folder.path() / "a.png", "png"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "a.png"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(SaveImage, KeepsTheOldFileInAReadOnlyFolder) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "a.png", "an older file");
    {
        const ReadOnly readOnly(folder.path());
        EXPECT_FALSE(ImageTools::SaveImage(noise({7, 7}), folder.path() / "a.png", "png"));
    }
    EXPECT_EQ(contentsOf(folder.path() / "a.png"), "an older file");
}

TEST(SaveImage, KeepsOnlyTheOldFileOnAFullDisk) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "a.png", "an older file");
    {
        const FullDisk full(1000);
        EXPECT_FALSE(ImageTools::SaveImage(noise({70, 70}), folder.path() / "a.png", "png"));
    }
    EXPECT_EQ(contentsOf(folder.path() / "a.png"), "an older file");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"a.png"});
}

TEST(SaveImage, AnImageThatTheFormatCannotHoldCountsAsSavedWithoutAFile) {
    const TemporaryFolder folder;
    EXPECT_TRUE(ImageTools::SaveImage(filled({65'501, 1}, grey(1)), folder.path() / "wide.jpg", "jpg"));
    EXPECT_EQ(filesIn(folder.path()).size(), 0U);
}

TEST(SaveImage, LosslessFormatsKeepEveryOpaquePixel) {
    const TemporaryFolder folder;
    const Image image = noise({300, 130});
    for (const char* format : {"png", "tiff", "bmp"}) {
        ASSERT_TRUE(ImageTools::SaveImage(image, folder.path() / format, format));
        EXPECT_EQ(pixelsOf(*ImageTools::DecodeImage(folder.path() / format)), pixelsOf(image)) << format;
    }
}

TEST(SaveImage, KeepsTransparencyAsFarAsTheFormatAllows) {
    const TemporaryFolder folder;
    const Image image = painted({64, 64}, [](int row, int column) {
        return row < 32 ? RGBA32() : (column < 32 ? RGBA32(100, 50, 20, 128) : RGBA32(200, 100, 40, 255));
    });
    for (const char* format : {"png", "tiff", "bmp"}) {
        ASSERT_TRUE(ImageTools::SaveImage(image, folder.path() / format, format));
        const Image saved = *ImageTools::DecodeImage(folder.path() / format);
        EXPECT_EQ(saved.pixel(0, 0), RGBA32()) << format;
        EXPECT_EQ(saved.pixel(40, 50), RGBA32(200, 100, 40, 255)) << format;
        EXPECT_EQ(saved.pixel(40, 5).alpha(), 128) << format;
        EXPECT_NEAR(saved.pixel(40, 5).red(), 100, 1) << format;
    }
    ASSERT_TRUE(ImageTools::SaveImage(image, folder.path() / "gif", "gif"));
    const Image saved = *ImageTools::DecodeImage(folder.path() / "gif");
    EXPECT_EQ(saved.pixel(0, 0).alpha(), 0);
    EXPECT_EQ(saved.pixel(40, 50), RGBA32(200, 100, 40, 255));
}

TEST(SaveImage, WritesADensityOf72DpiAndTheImagesProfile) {
    const TemporaryFolder folder;
    const Image image = noise({90, 70}).withProfile(ColorProfile::fromIcc(wideProfile()));
    for (const char* format : {"jpg", "png", "tiff", "bmp"}) {
        ASSERT_TRUE(ImageTools::SaveImage(image, folder.path() / format, format));
        const Image saved = *ImageTools::DecodeImage(folder.path() / format);
        EXPECT_NEAR(saved.size().width, 90, 0.02) << format;
        EXPECT_EQ(saved.profile(), image.profile()) << format;
    }
}

TEST(DecodeImage, DetectsTheFormatByContentNotByName) {
    const TemporaryFolder folder;
    const Image image = noise({30, 20});
    ASSERT_TRUE(ImageTools::SaveImage(image, folder.path() / "photo.jpg", "png"));
    EXPECT_EQ(pixelsOf(*ImageTools::DecodeImage(folder.path() / "photo.jpg")), pixelsOf(image));
}

TEST(DecodeImage, FailsForWhatIsNotAPicture) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "fake.png", "no picture at all");
    writeFile(folder.path() / "empty.jpg", "");
    EXPECT_FALSE(ImageTools::DecodeImage(folder.path() / "fake.png"));
    EXPECT_FALSE(ImageTools::DecodeImage(folder.path() / "empty.jpg"));
    EXPECT_FALSE(ImageTools::DecodeImage(folder.path() / "missing.jpg"));
    EXPECT_FALSE(ImageTools::DecodeImage(folder.path()));
}

} // namespace
} // namespace complexion
