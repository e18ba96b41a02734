// SPDX-License-Identifier: GPL-3.0-or-later

// Files that are read in a child give what they give when they are read in this process.
#include "imaging/codecs/codec.h"
#include "imaging/screen_colors.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/imaging/deep_files.h"
#include "tests/imaging/hostile_files.h"

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <thread>

namespace complexion {
namespace {

class PictureReading : public testing::Test {
protected:
    static void SetUpTestSuite() { m_reader.emplace(); }
    static void TearDownTestSuite() { m_reader.reset(); }

    static Result<FilePicture> readHere(const std::filesystem::path& path, ReadingPurpose purpose) {
        const std::shared_ptr<ReaderProcess> process = ReaderProcess::installed();
        installReader(nullptr);
        Result<FilePicture> picture = readPictureFile(path, purpose);
        installReader(process);
        return picture;
    }

    static Result<PixelSize> measureHere(const std::filesystem::path& path) {
        const std::shared_ptr<ReaderProcess> process = ReaderProcess::installed();
        installReader(nullptr);
        Result<PixelSize> size = measuredFile(path);
        installReader(process);
        return size;
    }

    /// What a file gives, here and in a child.
    static void expectSame(const std::filesystem::path& path) {
        SCOPED_TRACE(path);
        for (const ReadingPurpose purpose : {ReadingPurpose::Look, ReadingPurpose::Edit}) {
            const Result<FilePicture> here = readHere(path, purpose);
            const Result<FilePicture> inChild = readPictureFile(path, purpose);
            ASSERT_EQ(bool(inChild), bool(here)) << (here ? inChild.error().message : here.error().message);
            if (here)
                expectSamePicture(*inChild, *here);
            else
                EXPECT_EQ(inChild.error().kind, here.error().kind);
        }
        expectSameSize(path);
    }

    static void expectSameSize(const std::filesystem::path& path) {
        const Result<PixelSize> here = measureHere(path);
        const Result<PixelSize> inChild = measuredFile(path);
        ASSERT_EQ(bool(inChild), bool(here)) << (here ? inChild.error().message : here.error().message);
        if (here)
            EXPECT_EQ(*inChild, *here);
        else
            EXPECT_EQ(inChild.error().kind, here.error().kind);
    }

    static void expectSamePicture(const FilePicture& inChild, const FilePicture& here) {
        EXPECT_TRUE(samePixels(inChild.decoded.image, here.decoded.image));
        EXPECT_EQ(inChild.decoded.image.size(), here.decoded.image.size());
        EXPECT_EQ(inChild.decoded.image.profile(), here.decoded.image.profile());
        EXPECT_EQ(inChild.decoded.damage.has_value(), here.decoded.damage.has_value());
        EXPECT_EQ(inChild.container, here.container);
        EXPECT_EQ(inChild.actualSize, here.actualSize);
        EXPECT_EQ(inChild.losses, here.losses);
        ASSERT_EQ(inChild.decoded.image.deepAlpha(), here.decoded.image.deepAlpha());
        if (here.decoded.image.deepAlpha()) {
            EXPECT_TRUE(deepPixelsOf(inChild.decoded.image) == deepPixelsOf(here.decoded.image));
        }
    }

    static std::vector<std::uint16_t> deepPixelsOf(const Image& image) {
        const PixelSize size = image.pixelSize();
        std::vector<RGBA64> pixels(static_cast<std::size_t>(size.area()));
        image.readDeep({0, 0, size.width, size.height}, pixels.data(), size.width);
        std::vector<std::uint16_t> samples;
        for (const RGBA64 pixel : pixels)
            samples.insert(samples.end(), {pixel.red, pixel.green, pixel.blue, pixel.alpha});
        return samples;
    }

    std::filesystem::path written(const std::string& bytes) const {
        const std::filesystem::path path = m_folder.path() / "file";
        writeFile(path, bytes);
        return path;
    }

    TemporaryFolder m_folder;

private:
    inline static std::optional<InstalledReader> m_reader;
};

TEST_F(PictureReading, GivesTheSameInAChildForEveryFormatAndSize) {
    for (const Codec* const codec : codecs())
        for (const PixelSize size :
             {PixelSize{1, 1}, PixelSize{257, 130}, PixelSize{3000, 70}, PixelSize{3, 9000}}) {
            SCOPED_TRACE(codec->name);
            expectSame(written(encodedAs(*codec, noise(size))));
        }
}

TEST_F(PictureReading, GivesTheSameForPicturesThatAreTurned) {
    for (const Codec* const codec : {&kJpegCodec, &kPngCodec})
        for (int orientation = 1; orientation <= 8; ++orientation)
            expectSame(written(withExif(encodedAs(*codec, noise({90, 70})), orientation, "Nobody")));
}

TEST_F(PictureReading, GivesTheSameForDamagedFiles) {
    for (const Codec* const codec : codecs()) {
        const std::string whole = encodedAs(*codec, noise({90, 300}));
        for (const std::size_t length : {whole.size() / 2, whole.size() - 20, std::size_t{30}})
            expectSame(written(whole.substr(0, length)));
    }
}

TEST_F(PictureReading, GivesTheSameForAProfile) {
    const Image image = noise({90, 70}).withProfile(ColorProfile::fromIcc(wideProfile()));
    ASSERT_FALSE(image.profile().isSrgb());
    for (const Codec* const codec : {&kJpegCodec, &kPngCodec, &kTiffCodec})
        expectSame(written(encodedAs(*codec, image)));
}

TEST_F(PictureReading, GivesTheSameColorsForAnyProfile) {
    for (const Bytes& icc : {wideProfile(), tableProfile()}) {
        const Image image = noise({90, 70}).withProfile(ColorProfile::fromIcc(icc));
        const std::filesystem::path path = written(encodedAs(kPngCodec, image));
        const Result<FilePicture> here = readHere(path, ReadingPurpose::Look);
        const Result<FilePicture> inChild = readPictureFile(path, ReadingPurpose::Look);
        ASSERT_TRUE(here && inChild);
        const ColorProfile& own = here->decoded.image.profile();
        const ColorProfile& other = inChild->decoded.image.profile();
        // This process does not open it.
        EXPECT_FALSE(own.screenTables());
        ASSERT_TRUE(other.screenTables());
        EXPECT_TRUE(samePixels(inChild->decoded.image.transformed(screenTransform(other)),
                               here->decoded.image.transformed(screenTransform(own))));
        for (const RgbColor color : {RgbColor{0.8, 0.6, 0.5}, RgbColor{0, 1, 0.25}}) {
            EXPECT_NE(own.fromSrgb(color), color);
            EXPECT_EQ(other.fromSrgb(color), own.fromSrgb(color));
        }
    }
}

TEST_F(PictureReading, GivesTheSameForAFileInMemory) {
    const std::string file = encodedAs(kJpegCodec, noise({90, 70}));
    const Result<FilePicture> inMemory = readPictureInMemory(viewOf(file));
    ASSERT_TRUE(inMemory);
    expectSamePicture(*inMemory, *readHere(written(file), ReadingPurpose::Look));
    EXPECT_FALSE(readPictureInMemory(viewOf("nothing")));
}

TEST_F(PictureReading, GivesTheSameFor16Bits) {
    for (const bool isPng : {true, false})
        for (const int orientation : {1, 6}) {
            const test::DeepKind kind = {
                .name = "", .isPng = isPng, .hasAlpha = true, .orientation = orientation};
            const Bytes file = test::deepFile(test::skinSamples({257, 130}, kind), kind);
            expectSame(written({file.begin(), file.end()}));
        }
}

TEST_F(PictureReading, GivesTheSameForTheWidestPictures) {
    expectSame(written(encodedAs(kPngCodec, noise({1'000'000, 2}))));
}

/// An edit of the picture as a JPEG file; what is not edited is encoded as the file has it.
std::string editedFile(const Result<FilePicture>& picture) {
    return picture ? encodedAs(kJpegCodec, withPixels(picture->decoded.image, {{20, 20}}, kSkin)) : "";
}

TEST_F(PictureReading, KeepsTheJpegFileForExactEdits) {
    for (const int orientation : {1, 6})
        for (const ReadingPurpose purpose : {ReadingPurpose::Edit, ReadingPurpose::Look}) {
            const std::string file = withExif(encodedAs(kJpegCodec, noise({300, 70})), orientation, "Nobody");
            const std::filesystem::path path = written(file);
            const std::string here = editedFile(readHere(path, purpose));
            const std::string inChild = editedFile(readPictureFile(path, purpose));
            EXPECT_TRUE(inChild == here) << orientation << ", " << int(purpose) << ": " << inChild.size()
                                         << " bytes in place of " << here.size();
        }
}

TEST_F(PictureReading, RefusesWhatIsNoPictureFile) {
    expectSame(written("this is no picture"));
    expectSame(written(""));
    expectSame(m_folder.path());
    expectSame(m_folder.path() / "nothing");
}

TEST_F(PictureReading, GivesTheSameForHostileFiles) {
    for (const HostileFile& file : hostileFiles()) {
        SCOPED_TRACE(file.name);
        const std::filesystem::path path = written(file.bytes);
        const Result<FilePicture> here = readHere(path, ReadingPurpose::Look);
        const Result<FilePicture> inChild = readPictureFile(path, ReadingPurpose::Look);
        ASSERT_EQ(bool(inChild), bool(here)) << (here ? inChild.error().message : here.error().message);
        if (here)
            expectSamePicture(*inChild, *here);
        expectSameSize(path);
    }
}

TEST_F(PictureReading, GivesTheSameForRealFiles) {
    const char* const folder = std::getenv("COMPLEXION_TEST_PHOTOS");
    if (folder == nullptr)
        GTEST_SKIP() << "COMPLEXION_TEST_PHOTOS is not set";
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && ++count)
            expectSame(entry.path());
    std::cout << count << " files compared\n";
    EXPECT_GT(count, 0);
}

TEST_F(PictureReading, ReadsSeveralFilesAtOnce) {
    const std::filesystem::path path = written(encodedAs(kPngCodec, noise({257, 130})));
    std::vector<std::thread> threads;
    std::atomic<int> read = 0;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { read += readPictureFile(path, ReadingPurpose::Look) ? 1 : 0; });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(read, 4);
}

} // namespace
} // namespace complexion
