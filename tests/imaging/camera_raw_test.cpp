// SPDX-License-Identifier: GPL-3.0-or-later

// Camera raw files have the structure of TIFF but contain sensor data. They are refused.
#include "imaging/codecs/camera_raw.h"

#include "imaging/image_tools.h"
#include "imaging/photo_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/photo_files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace std::string_literals;

constexpr unsigned kNewSubfileType = 254;
constexpr unsigned kPhotometric = 262;
constexpr unsigned kSubDirectories = 330;
constexpr unsigned kDngVersion = 50706;
constexpr unsigned kShort = 3;
constexpr unsigned kLong = 4;
constexpr unsigned kColorFilterArray = 32803;

/// A TIFF file with one row of grey pixels, which would open.
SampleTiff thumbnail(bool isBigEndian = false) {
    SampleTiff tiff;
    tiff.isBigEndian = isBigEndian;
    tiff.strip = std::string(16, '\x80');
    return tiff;
}

/// The file with a subdirectory appended that has one tag.
std::string withSubDirectory(SampleTiff tiff, unsigned name, unsigned value) {
    // The length of the file, which is the subdirectory's offset, does not depend on the value of its tag.
    tiff.main.push_back(tiff.longTag(kSubDirectories, 0));
    const std::size_t offset = tiff.bytes().size();
    tiff.main.back() = tiff.longTag(kSubDirectories, static_cast<std::uint32_t>(offset));
    return tiff.bytes() + tiff.number(1, 2) + tiff.number(name, 2) + tiff.number(kShort, 2) +
           tiff.number(1, 4) + tiff.number(value, 2) + "\0\0"s + tiff.number(0, 4);
}

Result<OpenedPhoto> opened(const std::string& file) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "photo.tif", file);
    return openPhoto(folder.path() / "photo.tif");
}

void expectRefused(const std::string& file) {
    EXPECT_TRUE(isCameraRaw(viewOf(file)));
    const Result<OpenedPhoto> photo = opened(file);
    ASSERT_FALSE(photo);
    EXPECT_EQ(photo.error().kind, ErrorKind::NotAPicture);
    EXPECT_FALSE(kTiffCodec.measure(viewOf(file)));
}

TEST(CameraRaw, AFileWithADngVersionIsRefused) {
    for (const bool isBigEndian : {false, true}) {
        SampleTiff tiff = thumbnail(isBigEndian);
        ASSERT_TRUE(opened(tiff.bytes()));
        tiff.main.push_back(SampleTiff::bytesTag(kDngVersion, "\1\4\0\0"s));
        expectRefused(tiff.bytes());
    }
}

TEST(CameraRaw, AThumbnailWithSensorDataInASubdirectoryIsRefused) {
    for (const bool isBigEndian : {false, true}) {
        SampleTiff tiff = thumbnail(isBigEndian);
        tiff.main.push_back(tiff.longTag(kNewSubfileType, 1));
        expectRefused(withSubDirectory(tiff, kPhotometric, kColorFilterArray));
        ASSERT_TRUE(opened(withSubDirectory(tiff, kPhotometric, 1))) << "an ordinary reduced copy";
    }
}

TEST(CameraRaw, ASignatureAfterTheHeaderIsDetected) {
    const std::string file = "II*\0\x10\0\0\0CR\2\0\0\0\0\0"s;
    EXPECT_TRUE(isCameraRaw(viewOf(file)));
}

TEST(CameraRaw, OrdinaryPicturesAreNotRefused) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "pages.tif";
    writeTiffPages(path, {{5, 4}, {3, 2}, {7, 1}});
    EXPECT_FALSE(isCameraRaw(viewOf(contentsOf(path))));
    EXPECT_FALSE(isCameraRaw(viewOf(encodedAs(kTiffCodec, noise({70, 70})))));
    EXPECT_FALSE(isCameraRaw(viewOf(encodedAs(kJpegCodec, noise({9, 9})))));
    EXPECT_FALSE(isCameraRaw({}));
}

TEST(CameraRaw, CyclicAndTruncatedDirectoriesAreHarmless) {
    // An empty directory that links to itself; one with more entries than the file has bytes.
    EXPECT_FALSE(isCameraRaw(viewOf("II*\0\x8\0\0\0\0\0\x8\0\0\0"s)));
    EXPECT_FALSE(isCameraRaw(viewOf("II*\0\x8\0\0\0\xff\xff"s)));
    EXPECT_FALSE(isCameraRaw(viewOf("II*\0\xff\xff\xff\xff"s)));
    const std::string whole = withSubDirectory(thumbnail(), kPhotometric, kColorFilterArray);
    for (std::size_t length = 0; length < whole.size(); ++length)
        isCameraRaw(viewOf(whole.substr(0, length)));
}

} // namespace
} // namespace complexion
