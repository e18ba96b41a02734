// SPDX-License-Identifier: GPL-3.0-or-later

// Saving does not keep the photo's coded pixels in memory.
#include "imaging/base/released_pages.h"
#include "imaging/containers/coded_pixels.h"
#include "imaging/photo_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/imaging/deep_files.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace complexion {
namespace {

constexpr PixelSize kSize = {640, 200}; // many pages

std::vector<test::DeepKind> kinds() {
    return {{.name = "PNG", .isPng = true, .rowsPerStrip = 10},
            {.name = "TIFF"},
            {.name = "tiled TIFF", .isTiled = true},
            {.name = "planar BigTIFF", .isPlanar = true, .mode = "wb8"},
            {.name = "TIFF of one strip", .rowsPerStrip = kSize.height}};
}

Bytes fileOf(const test::DeepKind& kind) {
    return test::deepFile(test::skinSamples(kSize, kind), kind);
}

TEST(ReleasedPixels, AreMostOfTheFile) {
    for (const test::DeepKind& kind : kinds()) {
        const Bytes file = fileOf(kind);
        std::size_t length = 0;
        for (const ByteView part : codedPixels(file))
            length += part.size();
        EXPECT_GT(length, file.size() * 9 / 10) << kind.name;
        EXPECT_LT(length, file.size()) << kind.name;
    }
    EXPECT_TRUE(codedPixels(bytesOf("GIF89a")).empty());
    EXPECT_TRUE(codedPixels({}).empty());
}

TEST(ReleasedPixels, LeaveEverythingElseAsItWas) {
    for (const test::DeepKind& kind : kinds()) {
        const Bytes before = fileOf(kind);
        Bytes file = before;
        const std::vector<ByteView> parts = codedPixels(file);
        releasePages(file, parts);
        EXPECT_GT(std::ranges::count(file, 0), static_cast<std::ptrdiff_t>(file.size() / 4)) << kind.name;
        const auto isReleased = [&](std::size_t i) {
            return std::ranges::any_of(parts, [at = &file[i]](ByteView part) {
                return at >= part.data() && at < part.data() + part.size();
            });
        };
        for (std::size_t i = 0; i < file.size(); ++i)
            ASSERT_TRUE(file[i] == before[i] || (file[i] == 0 && isReleased(i))) << kind.name << ", " << i;
    }
}

TEST(ReleasedPixels, DoNotHoldTheDirectory) {
    // A strip that is the whole file.
    const test::DeepKind kind = {.name = "TIFF", .rowsPerStrip = kSize.height};
    Bytes file = fileOf(kind);
    const std::vector<ByteView> parts = codedPixels(file);
    ASSERT_EQ(parts.size(), 1U);
    const auto setNumber = [&](std::uint64_t old, std::uint32_t value) {
        for (std::size_t i = file.size() - 3; i-- > 0;) // the directory is at the end
            if (numberAt(file, i, 4, ByteOrder::LittleEndian) == old) {
                setNumberAt(file, i, 4, ByteOrder::LittleEndian, value);
                return;
            }
        FAIL();
    };
    setNumber(parts[0].size(), static_cast<std::uint32_t>(file.size() - 8));
    EXPECT_TRUE(codedPixels(file).empty());
}

TEST(ReleasedPixels, AreSavedFromTheOpenPicture) {
    for (const test::DeepKind& kind : kinds()) {
        const TemporaryFolder folder;
        const std::filesystem::path photo = folder.path() / "photo";
        const std::filesystem::path saved = folder.path() / "saved";
        const Bytes file = fileOf(kind);
        writeFile(photo, {file.begin(), file.end()});
        const Result<OpenedPhoto> opened = openPhoto(photo);
        ASSERT_TRUE(opened) << kind.name;
        ASSERT_TRUE(savePhoto(opened->image, saved, opened->extension, photo));
        const Result<OpenedPhoto> again = openPhoto(saved);
        ASSERT_TRUE(again) << kind.name;
        EXPECT_TRUE(samePixels(again->image, opened->image)) << kind.name;
        EXPECT_FALSE(again->damage) << kind.name;
    }
}

} // namespace
} // namespace complexion
