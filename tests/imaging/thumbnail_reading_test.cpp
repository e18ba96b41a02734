// SPDX-License-Identifier: GPL-3.0-or-later

// The thumbnails that cameras put into their photos.
#include "imaging/reading/thumbnail_reading.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"
#include "tests/fakes/temporary_folder.h"

namespace complexion {
namespace {

constexpr PixelSize kLargePhoto = {2400, 1800};
constexpr int kTolerance = 4; // of a thumbnail's own JPEG coding

class ThumbnailReading : public testing::Test {
protected:
    /// A file with a photo of one colour, and a thumbnail.
    std::filesystem::path photo(const Image& image, const std::string& thumbnail, int orientation = 1) const {
        SampleTiff exif = cameraExif(orientation);
        exif.thumbnail = thumbnail;
        const std::filesystem::path path = m_folder.path() / "photo.jpg";
        writeFile(path, withSegments(encodedAs(kJpegCodec, image),
                                     jpegSegmentOf(0xe1, std::string("Exif\0\0", 6) + exif.bytes())));
        return path;
    }
    static Image large(PixelSize size = kLargePhoto) { return filled(size, grey(90)); }

    /// Dark on the left.
    static Image half(PixelSize size) {
        return painted(size, [size](int, int column) { return grey(column * 2 < size.width ? 30 : 220); });
    }

    /// What a child gives, which is what this process gives without one.
    static Result<Image> thumbnailIn(const std::filesystem::path& path) {
        const Result<Image> here = readEmbeddedThumbnail(path);
        const InstalledReader reader;
        Result<Image> inChild = readEmbeddedThumbnail(path);
        EXPECT_EQ(bool(inChild), bool(here));
        if (inChild && here) {
            EXPECT_TRUE(samePixels(*inChild, *here));
            EXPECT_EQ(inChild->profile(), here->profile());
        } else if (!here) {
            EXPECT_EQ(inChild.error().message, here.error().message);
        }
        return inChild;
    }

    TemporaryFolder m_folder;
};

TEST_F(ThumbnailReading, GivesTheThumbnailInsteadOfThePhoto) {
    const Image thumbnail = half({160, 120});
    const Result<Image> read = thumbnailIn(photo(large(), encodedAs(kJpegCodec, thumbnail)));
    ASSERT_TRUE(read) << read.error().message;
    EXPECT_TRUE(nearlySamePixels(*read, thumbnail, kTolerance));
}

TEST_F(ThumbnailReading, TurnsItUprightAsThePhoto) {
    const Image thumbnail = half({160, 120});
    const std::string file = encodedAs(kJpegCodec, thumbnail);
    for (int tag = 1; tag <= 8; ++tag) {
        const Result<Image> read = thumbnailIn(photo(large(), file, tag));
        ASSERT_TRUE(read) << read.error().message;
        EXPECT_TRUE(
            nearlySamePixels(*read, turnedUpright(thumbnail, static_cast<Orientation>(tag)), kTolerance))
            << tag;
    }
}

TEST_F(ThumbnailReading, GivesItThePhotosProfile) {
    const Image wide = large().withProfile(ColorProfile::fromIcc(wideProfile()));
    const Result<Image> read = thumbnailIn(photo(wide, encodedAs(kJpegCodec, half({160, 120}))));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->profile(), wide.profile());
}

TEST_F(ThumbnailReading, AcceptsRoundedSizesOfTheWholePhotoOnly) {
    const Image wide = large({3000, 2000});
    for (const int height : {105, 106, 107, 108, 120}) {
        const Result<Image> read = thumbnailIn(photo(wide, encodedAs(kJpegCodec, half({160, height}))));
        EXPECT_EQ(bool(read), height == 106 || height == 107) << height;
    }
    EXPECT_FALSE(thumbnailIn(photo(large({1800, 2400}), encodedAs(kJpegCodec, half({160, 120})))));
}

TEST_F(ThumbnailReading, IsForLargePhotosOnly) {
    EXPECT_FALSE(thumbnailIn(photo(large({2000, 1500}), encodedAs(kJpegCodec, half({160, 120})))));
    const std::filesystem::path png = m_folder.path() / "photo.png";
    writeFile(png, encodedAs(kPngCodec, large()));
    EXPECT_FALSE(thumbnailIn(png));
}

TEST_F(ThumbnailReading, GivesNoneThatIsMissingDamagedOrNoThumbnail) {
    const std::string file = encodedAs(kJpegCodec, noise({160, 120}));
    EXPECT_FALSE(thumbnailIn(photo(large(), "")));
    EXPECT_FALSE(thumbnailIn(photo(large(), file.substr(0, file.size() / 2))));
    EXPECT_FALSE(thumbnailIn(photo(large(), encodedAs(kPngCodec, noise({160, 120})))));
    EXPECT_FALSE(thumbnailIn(photo(large(), encodedAs(kJpegCodec, filled({1200, 900}, grey(10))))));
    EXPECT_FALSE(thumbnailIn(m_folder.path() / "missing.jpg"));
}

} // namespace
} // namespace complexion
