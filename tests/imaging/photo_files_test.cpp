// SPDX-License-Identifier: GPL-3.0-or-later

// Opening and saving in one call give the same results as the separate steps.
#include "imaging/photo_files.h"

#include "imaging/base/orientation.h"
#include "imaging/containers/other_formats.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/creation_date.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <optional>

namespace complexion {
namespace {

using namespace std::string_literals;

constexpr CreationDate kDate{std::chrono::seconds(1234567890)};

class PhotoFiles : public testing::Test {
protected:
    /// A photo with a creation date; in JPEG and PNG also rotated and with an artist.
    std::filesystem::path photo(std::string_view format) const {
        const std::filesystem::path path = folder.path() / ("photo." + std::string(format));
        EXPECT_TRUE(ImageTools::SaveImage(noise({90, 70}), path, format));
        if (format == "jpg" || format == "png")
            writeFile(path, withExif(contentsOf(path), 6, "Nobody"));
        setCreationDate(path, kDate);
        return path;
    }

    std::string savedInSteps(const Image& image, std::string_view format,
                             const std::filesystem::path& source) const {
        const std::filesystem::path path = folder.path() / "steps";
        const Image stored = turnedForStorage(image, ImageTools::CarriedOrientation(source, format));
        if (ImageTools::SaveImage(stored, path, format))
            ImageTools::ChangeImageExif(source, path, stored);
        return taken(path);
    }
    std::string savedAtOnce(const Image& image, std::string_view format,
                            const std::filesystem::path& source) const {
        const std::filesystem::path path = folder.path() / "once";
        EXPECT_TRUE(savePhoto(image, path, format, source));
        return taken(path);
    }

    /// The file's bytes, date and permissions. Deletes the file.
    static std::string taken(const std::filesystem::path& path) {
        if (!std::filesystem::exists(path))
            return "no file";
        const std::string bytes = contentsOf(path);
        const bool isDated = creationDate(path) == kDate;
        const auto mode = static_cast<int>(std::filesystem::status(path).permissions());
        std::filesystem::remove(path);
        return bytes + (isDated ? " of old" : " of now") + std::to_string(mode);
    }

    TemporaryFolder folder;
};

TEST_F(PhotoFiles, SavingInOneCallEqualsTheSteps) {
    for (const std::string_view from : {"jpg", "png", "tiff", "gif", "bmp"})
        for (const std::string_view to : {"jpg", "png", "tiff", "gif", "bmp"}) {
            const std::filesystem::path source = photo(from);
            const Image image = noise({120, 80}, 2);
            EXPECT_TRUE(savedAtOnce(image, to, source) == savedInSteps(image, to, source))
                << from << " to " << to;
        }
}

TEST_F(PhotoFiles, WithoutASourceSavingEqualsTheSteps) {
    const Image image = noise({20, 10});
    for (const std::string_view to : {"jpg", "png"})
        EXPECT_TRUE(savedAtOnce(image, to, folder.path() / "nothing") ==
                    savedInSteps(image, to, folder.path() / "nothing"));
}

TEST_F(PhotoFiles, ADamagedSourceIsHarmless) {
    const std::filesystem::path source = photo("jpg");
    const std::string whole = contentsOf(source);
    const Image image = noise({20, 10});
    for (const std::size_t length : {3U, 20U, 60U, 200U}) {
        writeFile(source, whole.substr(0, length));
        for (const std::string_view to : {"jpg", "png"})
            EXPECT_TRUE(savedAtOnce(image, to, source) == savedInSteps(image, to, source)) << length;
    }
}

TEST_F(PhotoFiles, SavingFailsLikeSaveImage) {
    const std::filesystem::path path = folder.path() / "result";
    EXPECT_FALSE(savePhoto(noise({4, 4}), path, "JPG", photo("jpg")));
    EXPECT_FALSE(savePhoto(noise({4, 4}), folder.path() / "none" / "result", "jpg", photo("jpg")));
    EXPECT_TRUE(savePhoto(filled({1, 65600}, kSkin), path, "gif", photo("gif"))); // too tall for the format
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(PhotoFiles, AnExistingFileGetsTheMetadataOfAPhotoThatTheFormatCannotHold) {
    const std::filesystem::path path = folder.path() / "result";
    ASSERT_TRUE(ImageTools::SaveImage(noise({20, 10}), path, "png"));
    const std::string before = contentsOf(path);
    EXPECT_TRUE(savePhoto(filled({1, 65600}, kSkin), path, "gif", photo("png")));
    EXPECT_NE(contentsOf(path), before);
    EXPECT_NE(contentsOf(path).find("Nobody"), std::string::npos);
}

TEST_F(PhotoFiles, AFailedSaveLeavesAnExistingFileUnchanged) {
    const std::filesystem::path path = folder.path() / "result";
    ASSERT_TRUE(ImageTools::SaveImage(noise({20, 10}), path, "png"));
    const std::string before = contentsOf(path);
    EXPECT_FALSE(savePhoto(noise({4, 4}), path, "JPG", photo("jpg")));
    EXPECT_EQ(contentsOf(path), before);
}

TEST_F(PhotoFiles, TheSizeIsCheckedBeforeTheFormat) {
    const std::filesystem::path source = photo("png");
    EXPECT_DEATH(savePhoto(Image(), folder.path() / "result", "webp", source), "no bitmap");
    EXPECT_DEATH(savePhoto(noise({4, 4}).withSize({4, 0.5}), folder.path() / "result", "JPG", source),
                 "no bitmap");
}

TEST_F(PhotoFiles, OpeningInOneCallEqualsTheSteps) {
    for (const std::string_view format : ImageTools::kAcceptedTypes) {
        const std::filesystem::path path = photo(format);
        const Result<OpenedPhoto> opened = openPhoto(path);
        ASSERT_TRUE(opened) << format;
        const Image& once = opened->image;
        const Image steps = ImageTools::BringImageToActualSize(*ImageTools::DecodeImage(path), path);
        EXPECT_TRUE(samePixels(once, steps)) << format;
        EXPECT_EQ(once.size(), steps.size());
        EXPECT_EQ(once.profile(), steps.profile());
    }
}

TEST_F(PhotoFiles, APhotoOfAnyDensityOpensAtOnePointPerPixel) {
    const std::filesystem::path path = folder.path() / "dense.jpg";
    writeFile(path, withSegments(encodedAs(kJpegCodec, shaded({90, 60})),
                                 jpegSegmentOf(0xe1, "Exif\0\0"s + cameraExif(1).bytes()), false));
    ASSERT_LT(ImageTools::DecodeImage(path)->size().width, 90); // 300 pixels per inch
    const Result<OpenedPhoto> photo = openPhoto(path);
    ASSERT_TRUE(photo);
    EXPECT_EQ(photo->image.size(), (PointSize{90, 60}));
    EXPECT_TRUE(samePixels(photo->image, *ImageTools::DecodeImage(path)));
}

TEST_F(PhotoFiles, OpeningAnUndecodableFileFails) {
    const auto kindOfFailure = [](const std::filesystem::path& path) -> std::optional<ErrorKind> {
        const Result<OpenedPhoto> opened = openPhoto(path);
        return opened ? std::nullopt : std::optional(opened.error().kind);
    };
    EXPECT_EQ(kindOfFailure(folder.path() / "nothing"), ErrorKind::CannotRead);
    EXPECT_EQ(kindOfFailure(folder.path()), ErrorKind::CannotRead);
    const std::filesystem::path path = photo("png");
    writeFile(path, contentsOf(path).substr(0, 30));
    EXPECT_EQ(kindOfFailure(path), ErrorKind::Damaged);
    writeFile(path, "no picture");
    EXPECT_EQ(kindOfFailure(path), ErrorKind::NotAPicture);
}

TEST_F(PhotoFiles, OnlyAFileOfAnotherFormatIsNamedAfterIt) {
    const std::filesystem::path path = folder.path() / "picture";
    writeFile(path, "8BPS");
    EXPECT_EQ(openPhoto(path).error().message, "Photoshop");
    // Too short for the signature "IIU\0" of a camera raw file.
    writeFile(path, "IIU");
    EXPECT_NE(openPhoto(path).error().message, kCameraRaw);
    EXPECT_EQ(openPhoto(path).error().kind, ErrorKind::NotAPicture);
    // Other reasons take precedence.
    writeFile(path, "8BPS");
    std::filesystem::resize_file(path, kMaxFile + 1);
    EXPECT_EQ(openPhoto(path).error().kind, ErrorKind::TooLarge);
}

TEST(CanHold, JpegAndGifLimitTheSides) {
    for (const std::string_view format : {"jpg", "jpeg"}) {
        EXPECT_TRUE(canHold(format, {65500, 65500}));
        EXPECT_FALSE(canHold(format, {65501, 1}));
        EXPECT_FALSE(canHold(format, {1, 65501}));
    }
    EXPECT_TRUE(canHold("gif", {65535, 65535}));
    EXPECT_FALSE(canHold("gif", {65536, 1}));
    EXPECT_FALSE(canHold("gif", {1, 65536}));
    for (const std::string_view format : {"png", "tiff", "bmp"})
        EXPECT_TRUE(canHold(format, {70000, 70000}));
    EXPECT_FALSE(canHold("webp", {1, 1}));
}

} // namespace
} // namespace complexion
