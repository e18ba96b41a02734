// SPDX-License-Identifier: GPL-3.0-or-later

// Pictures of formats that are not read are refused by the name of their format.
#include "imaging/containers/other_formats.h"

#include "imaging/codecs/codec.h"
#include "imaging/photo_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace complexion {
namespace {

using namespace std::string_literals;

/// A file of the ISO base media format that begins with the brand.
std::string media(const std::string& brand) {
    return "\0\0\0\x18"s + "ftyp" + brand + "\0\0\0\0"s + std::string(40, 'x');
}

std::optional<std::string_view> formatOf(const std::string& start) {
    return otherFormatOf({reinterpret_cast<const std::uint8_t*>(start.data()), start.size()});
}

TEST(OtherFormats, AreNamedByTheirSignatures) {
    const std::vector<std::pair<std::string, std::string_view>> files = {
        {media("heic"), "HEIC"},
        {media("mif1"), "HEIF"},
        {media("avif"), "AVIF"},
        {media("crx "), kCameraRaw},
        {media("isom"), "movie"},
        {"RIFF\x10\x20\0\0WEBPVP8 "s, "WebP"},
        {"8BPS\0\1"s, "Photoshop"},
        {"%PDF-1.7"s, "PDF"},
        {"\xff\x0a\xfa\x7f"s, "JPEG XL"},
        {"\0\0\0\x0cJXL \r\n\x87\n"s, "JPEG XL"},
        {"\0\0\0\x0cjP  \r\n\x87\n"s, "JPEG 2000"},
        {"\xff\x4f\xff\x51\0\x2f"s, "JPEG 2000"},
        {"gimp xcf v011"s, "XCF"},
        {"FUJIFILMCCD-RAW 0201"s, kCameraRaw},
        {"IIRO\x08\0\0\0"s, kCameraRaw},
        {"IIU\0\x18\0\0\0"s, kCameraRaw}};
    for (const auto& [start, format] : files) {
        ASSERT_TRUE(formatOf(start)) << format;
        EXPECT_EQ(*formatOf(start), format);
    }
}

TEST(OtherFormats, AreNotFoundInOtherFiles) {
    for (const std::string& start :
         {""s, "R"s, "not a picture"s, "RIFF\x10\x20\0\0WAVE"s, "somewhere WEBP"s, "12345678heic"s})
        EXPECT_FALSE(formatOf(start)) << start;
    for (const Codec* codec : codecs())
        EXPECT_FALSE(formatOf(encodedAs(*codec, noise({16, 8})))) << codec->name;
}

TEST(OtherFormats, AreTheReasonWhyAPhotoDoesNotOpen) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "photo.jpg";
    for (const auto& [content, message, isNamed] :
         {std::tuple(media("heic"), "HEIC", true),
          std::tuple("a letter"s, "a file of another kind", false)}) {
        writeFile(path, content);
        const Result<OpenedPhoto> photo = openPhoto(path);
        ASSERT_FALSE(photo);
        EXPECT_EQ(photo.error().kind, ErrorKind::NotAPicture);
        EXPECT_EQ(photo.error().message, message);
        EXPECT_EQ(otherFormatOf(photo.error()).has_value(), isNamed);
    }
}

} // namespace
} // namespace complexion
