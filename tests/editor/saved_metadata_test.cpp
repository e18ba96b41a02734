// SPDX-License-Identifier: GPL-3.0-or-later

// What saving carries from the photo to the result: metadata, dates and orientation.
#include "tests/editor/saving_fixture.h"

#include <sys/xattr.h>

namespace complexion {

namespace {

/// A picture with a different colour in each quarter, so that all eight orientations differ.
Image quarters(PixelSize size) {
    return painted(size, [size](int row, int column) {
        const bool top = row < size.height / 2;
        const bool left = column < size.width / 2;
        if (top)
            return left ? RGBA32(200, 40, 40, 255) : RGBA32(40, 200, 40, 255);
        return left ? RGBA32(40, 40, 200, 255) : RGBA32(220, 220, 220, 255);
    });
}

TEST_F(Saving, CarriesTheSourcesMetadata) {
    for (const std::string extension : {"jpg", "png"}) {
        SCOPED_TRACE(extension);
        const std::filesystem::path source = makePhoto("portrait." + extension);
        writeFile(source, withExif(contentsOf(source), 1, "A photographer of faces"));
        openThroughPanel(source);
        EXPECT_EQ(contentsOf(currentPath()).find("A photographer of faces"), std::string::npos);
        retouch(0);
        save(target("saved." + extension));
        EXPECT_NE(contentsOf(target("saved." + extension)).find("A photographer of faces"),
                  std::string::npos);
        EXPECT_TRUE(nearlySamePixels(decoded(target("saved." + extension)), shown(), 4));
    }
}

TEST_F(Saving, AMissingSourceLosesOnlyTheMetadata) {
    openThroughPanel(makePhoto());
    retouch(0);
    std::filesystem::remove(controller->originalImagePath);
    const std::filesystem::path path = target("saved.png");
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
}

TEST_F(Saving, AReplacedPhotosMetadataAndOrientationAreCarried) {
    const std::filesystem::path path = makePhoto("portrait.png");
    writeFile(path, withExif(contentsOf(path), 6, "A photographer of faces"));
    openThroughPanel(path);
    retouch(0);
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_NE(contentsOf(path).find("A photographer of faces"), std::string::npos);
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
}

TEST_F(Saving, CarriesTheSourcesCreationDate) {
    const std::filesystem::path source = makePhoto();
    openThroughPanel(source);
    save(target("saved.png"));
    const auto time = ImageTools::ImageCreationDate(source);
    const auto saved = ImageTools::ImageCreationDate(target("saved.png"));
    if (getxattr(target("saved.png").c_str(), "user.crtime_usec", nullptr, 0) < 0)
        GTEST_SKIP() << "the temporary folder's file system cannot store a creation date";
    EXPECT_LT(std::chrono::abs(saved - time), std::chrono::microseconds(1));
}

TEST_F(Saving, CarriesAnOldCreationDate) {
    const std::filesystem::path source = makePhoto();
    // 2016-11-16 07:41:31.234 UTC, in microseconds, little-endian.
    constexpr std::uint64_t kMicroseconds = 1'479'282'091'234'000;
    std::array<unsigned char, 8> value{};
    for (std::size_t i = 0; i < value.size(); ++i)
        value[i] = static_cast<unsigned char>(kMicroseconds >> (8 * i));
    if (setxattr(source.c_str(), "user.crtime_usec", value.data(), value.size(), 0) != 0)
        GTEST_SKIP() << "the temporary folder's file system cannot store a creation date";
    openThroughPanel(source);
    save(target("saved.png"));
    EXPECT_EQ(ImageTools::ImageCreationDate(target("saved.png")).time_since_epoch(),
              std::chrono::microseconds(kMicroseconds));
}

TEST_F(Saving, ARotatedPhotoIsEditedUprightAndSavedRotated) {
    constexpr PixelSize kStored{64, 48};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const std::filesystem::path source = makePhoto("turned.png", quarters(kStored));
        const Image stored = decoded(source);
        writeFile(source, withExif(contentsOf(source), orientation, "photographer"));
        const Image upright = turnedUpright(quarters(kStored), orientationFromTag(orientation));

        openThroughPanel(source);
        EXPECT_TRUE(samePixels(controller->originalImage(), upright));
        EXPECT_TRUE(samePixels(decoded(currentPath()), upright));
        EXPECT_EQ(contentsOf(currentPath()).find("eXIf"), std::string::npos);

        save(target("saved.png"));
        // With the tag it decodes upright; without it, the stored pixels have the source's orientation.
        EXPECT_TRUE(samePixels(decoded(target("saved.png")), upright));
        std::string untagged = contentsOf(target("saved.png"));
        const std::size_t chunk = untagged.find("eXIf");
        ASSERT_NE(chunk, std::string::npos);
        const std::filesystem::path renamed = target("untagged.png");
        const auto length = static_cast<unsigned char>(untagged[chunk - 1]) +
                            (static_cast<std::size_t>(static_cast<unsigned char>(untagged[chunk - 2])) << 8);
        untagged.erase(chunk - 4, length + 12);
        writeFile(renamed, untagged);
        EXPECT_TRUE(samePixels(decoded(renamed), stored));
    }
}

TEST_F(Saving, ARotatedJpegIsSavedRotated) {
    constexpr PixelSize kStored{64, 48};
    const std::filesystem::path source = makePhoto("turned.jpg", quarters(kStored));
    writeFile(source, withExif(contentsOf(source), 6, "photographer"));
    const Image upright = turnedUpright(quarters(kStored), Orientation::RightTop);
    openThroughPanel(source);
    EXPECT_EQ(controller->originalImage().pixelSize(), (PixelSize{48, 64}));
    EXPECT_TRUE(nearlySamePixels(controller->originalImage(), upright, 4));
    save(target("saved.jpg"));
    EXPECT_TRUE(nearlySamePixels(decoded(target("saved.jpg")), upright, 8));
    EXPECT_NE(contentsOf(target("saved.jpg")).find("photographer"), std::string::npos);
}

TEST_F(Saving, AFormatWithoutAnOrientationIsSavedUpright) {
    // A PNG file with a BMP extension: the BMP file that is written cannot have an orientation.
    const std::filesystem::path png = makePhoto("turned.png", quarters({64, 48}));
    const std::filesystem::path source = target("turned.bmp");
    writeFile(source, withExif(contentsOf(png), 6, "photographer"));
    const Image upright = turnedUpright(quarters({64, 48}), Orientation::RightTop);
    openThroughPanel(source);
    save(target("saved.bmp"));
    EXPECT_TRUE(samePixels(decoded(target("saved.bmp")), upright));
}

} // namespace

} // namespace complexion
