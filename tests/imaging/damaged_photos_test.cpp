// SPDX-License-Identifier: GPL-3.0-or-later

// A damaged photo opens as far as it can be decoded, and the damage is reported.
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/png_files.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace std::string_literals;

std::string textOf(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

std::vector<std::uint8_t> noiseSamples(PixelSize size) {
    std::vector<std::uint8_t> samples;
    for (const RGBA32 pixel : pixelsOf(noise(size)))
        samples.insert(samples.end(), {pixel.red(), pixel.green(), pixel.blue()});
    return samples;
}

/// A JPEG file as cameras write it: sequential without restart markers, or progressive.
std::string cameraJpeg(bool isProgressive) {
    constexpr PixelSize kSize{120, 90};
    JpegRecipe recipe;
    recipe.size = kSize;
    recipe.adjust = [isProgressive](jpeg_compress_struct& info) {
        if (isProgressive)
            jpeg_simple_progression(&info);
    };
    return textOf(jpegFile(recipe, noiseSamples(kSize)));
}

std::string interlacedPng() {
    constexpr PixelSize kSize{120, 90};
    return textOf(pngFile({.size = kSize, .interlaced = true}, noiseSamples(kSize)));
}

/// An 8-bit BMP file with run-length coding: one run per row, and the end marker.
std::string runLengthBmp() {
    constexpr int kHeight = 40;
    std::string codes;
    for (int row = 0; row < kHeight; ++row)
        codes += "\x20\x01\0\0"s;
    codes += "\0\1"s;
    const std::string palette = "\0\0\0\0\xff\x80\x40\0"s;
    const auto number = [](std::size_t value) { return littleNumber(value, 4); };
    const std::size_t start = 14 + 40 + palette.size();
    return "BM" + number(start + codes.size()) + number(0) + number(start) + number(40) + number(32) +
           number(kHeight) + "\1\0\x08\0"s + number(1) + number(codes.size()) + number(2835) + number(2835) +
           number(2) + number(0) + palette + codes;
}

Result<OpenedPhoto> opened(const std::string& file) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "photo", file);
    return openPhoto(folder.path() / "photo");
}

struct Sample {
    std::string name;
    std::string file;
};

std::vector<Sample> samples() {
    std::vector<Sample> all;
    for (const Codec* codec : codecs()) {
        all.push_back({std::string(codec->name), encodedAs(*codec, noise({130, 300}))});
        all.push_back({std::string(codec->name) + ", small", encodedAs(*codec, noise({40, 30}))});
    }
    all.push_back({"a camera's JPEG", cameraJpeg(false)});
    all.push_back({"progressive JPEG", cameraJpeg(true)});
    all.push_back({"interlaced PNG", interlacedPng()});
    all.push_back({"BMP in runs", runLengthBmp()});
    return all;
}

TEST(DamagedPhotos, AnIntactPhotoHasNoDamage) {
    for (const auto& [name, file] : samples()) {
        const Result<OpenedPhoto> photo = opened(file);
        ASSERT_TRUE(photo) << name << ": " << photo.error().message;
        EXPECT_FALSE(photo->damage) << name << ": " << photo->damage->message;
    }
}

TEST(DamagedPhotos, TruncationIsReported) {
    for (const auto& [name, file] : samples()) {
        const std::size_t start = name.starts_with("BMP in") ? 70 : file.size() / 3;
        for (const std::size_t length :
             {start + 20, file.size() / 2, file.size() * 3 / 4, file.size() * 9 / 10}) {
            // A TIFF file written here has its directory first, so only rows are lost.
            const Result<OpenedPhoto> photo = opened(file.substr(0, length));
            if (!photo)
                continue; // too short to be decoded
            EXPECT_TRUE(photo->damage) << name << ", " << length << " of " << file.size();
        }
        const Result<OpenedPhoto> most = opened(file.substr(0, file.size() * 9 / 10));
        EXPECT_TRUE(most || name == "PNG, small") << name << " must show the remaining rows";
    }
}

TEST(DamagedPhotos, OverwrittenBytesAreReported) {
    for (const bool isProgressive : {false, true}) {
        std::string file = cameraJpeg(isProgressive);
        file.replace(file.size() / 2, 2, "\xff\xd9"); // a premature end marker
        const Result<OpenedPhoto> photo = opened(file);
        ASSERT_TRUE(photo);
        EXPECT_TRUE(photo->damage) << isProgressive;
    }
    std::string png = encodedAs(kPngCodec, noise({130, 300}));
    png[png.size() / 2] ^= 1;
    const Result<OpenedPhoto> photo = opened(png);
    ASSERT_TRUE(photo);
    EXPECT_TRUE(photo->damage);
}

TEST(DamagedPhotos, AJpegThatLacksOnlyItsEndMarkerIsIntact) {
    for (const bool isProgressive : {false, true}) {
        const std::string file = cameraJpeg(isProgressive);
        const Result<OpenedPhoto> photo = opened(file.substr(0, file.size() - 2));
        ASSERT_TRUE(photo);
        EXPECT_FALSE(photo->damage) << isProgressive;
    }
}

TEST(DamagedPhotos, BytesBetweenJpegSegmentsAreNotDamage) {
    std::string file = cameraJpeg(false);
    file.insert(2, "stray");
    const Result<OpenedPhoto> photo = opened(file);
    ASSERT_TRUE(photo);
    EXPECT_FALSE(photo->damage);
}

TEST(OpenedPhotos, HaveTheExtensionOfTheirContent) {
    const std::vector<std::pair<const Codec*, std::string>> formats = {{&kJpegCodec, "jpg"},
                                                                       {&kPngCodec, "png"},
                                                                       {&kTiffCodec, "tiff"},
                                                                       {&kGifCodec, "gif"},
                                                                       {&kBmpCodec, "bmp"}};
    for (const auto& [codec, extension] : formats) {
        const Result<OpenedPhoto> photo = opened(encodedAs(*codec, noise({20, 10})));
        ASSERT_TRUE(photo);
        EXPECT_EQ(photo->extension, extension);
    }
    // A multi-picture file is a JPEG file followed by others.
    const std::string first = encodedAs(kJpegCodec, noise({20, 10}));
    const Result<OpenedPhoto> photo = opened(first + encodedAs(kJpegCodec, noise({30, 10}, 2)));
    ASSERT_TRUE(photo);
    EXPECT_EQ(photo->extension, "jpg");
    EXPECT_EQ(photo->image.pixelSize(), (PixelSize{20, 10}));
    EXPECT_FALSE(photo->damage);
}

TEST(OpenedPhotos, FailuresHaveAKind) {
    const TemporaryFolder folder;
    const auto kindOf = [](const std::filesystem::path& path) {
        const Result<OpenedPhoto> photo = openPhoto(path);
        EXPECT_FALSE(photo);
        return photo ? ErrorKind::CannotWrite : photo.error().kind;
    };
    EXPECT_EQ(kindOf(folder.path() / "missing"), ErrorKind::CannotRead);
    EXPECT_EQ(kindOf(folder.path()), ErrorKind::CannotRead);
    writeFile(folder.path() / "text", "not a picture");
    EXPECT_EQ(kindOf(folder.path() / "text"), ErrorKind::NotAPicture);
    writeFile(folder.path() / "cut", encodedAs(kPngCodec, noise({20, 10})).substr(0, 30));
    EXPECT_EQ(kindOf(folder.path() / "cut"), ErrorKind::Damaged);
}

} // namespace
} // namespace complexion
