// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/state_image_files.h"
#include "imaging/image_tools.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

namespace complexion {

namespace {

class StateFiles : public testing::Test {
protected:
    std::filesystem::path path(const std::string& name = "state.png") const { return folder.path() / name; }

    TemporaryFolder folder;
    StateImageFiles files;
    Image image = skinWithBlemishes({30, 20}, {{10, 10}});
};

TEST_F(StateFiles, ReadingReturnsTheWrittenImageItself) {
    ASSERT_TRUE(files.write(image, path("state.jpg"), "jpg"));
    const auto read = files.read(path("state.jpg"));
    ASSERT_TRUE(read.has_value());
    EXPECT_TRUE(read->isSameObject(image));
}

TEST_F(StateFiles, TheFileCanBeDecodedByAnyProgram) {
    for (const std::string_view type : ImageTools::kAcceptedTypes) {
        SCOPED_TRACE(type);
        const std::filesystem::path file = path("state." + std::string(type));
        ASSERT_TRUE(files.write(image, file, type));
        EXPECT_TRUE(nearlySamePixels(decoded(file), image, 12));
    }
}

TEST_F(StateFiles, AnUnknownFormatOrFolderIsNotWritten) {
    EXPECT_FALSE(files.write(image, path(), "webp"));
    EXPECT_FALSE(files.write(image, path(), "PNG"));
    EXPECT_FALSE(files.write(image, path(), ""));
    EXPECT_FALSE(files.write(image, folder.path() / "nowhere" / "state.png", "png"));
    EXPECT_TRUE(filesIn(folder.path()).empty());
}

TEST_F(StateFiles, ALaterWriteReplacesTheImage) {
    const Image later = filled({5, 5}, kSkin);
    ASSERT_TRUE(files.write(image, path(), "png"));
    ASSERT_TRUE(files.write(later, path(), "png"));
    EXPECT_TRUE(files.read(path())->isSameObject(later));
    EXPECT_TRUE(samePixels(decoded(path()), later));
}

TEST_F(StateFiles, AReplacedFileIsDecoded) {
    ASSERT_TRUE(files.write(image, path(), "png"));
    const Image other = filled({5, 5}, kBlemish);
    ASSERT_TRUE(ImageTools::SaveImage(other, path("other.png"), "png"));
    std::filesystem::rename(path("other.png"), path());
    const auto read = files.read(path());
    ASSERT_TRUE(read.has_value());
    EXPECT_TRUE(samePixels(*read, other));
}

TEST_F(StateFiles, AReplacedFileWithTheSameBytesIsDecoded) {
    ASSERT_TRUE(files.write(image, path(), "png"));
    std::filesystem::copy_file(path(), path("copy.png"));
    std::filesystem::rename(path("copy.png"), path());
    const auto read = files.read(path());
    ASSERT_TRUE(read.has_value());
    EXPECT_FALSE(read->isSameObject(image));
    EXPECT_TRUE(samePixels(*read, image));
}

TEST_F(StateFiles, AFileThatWasNotWrittenHereIsDecoded) {
    ASSERT_TRUE(ImageTools::SaveImage(image, path(), "png"));
    const auto read = files.read(path());
    ASSERT_TRUE(read.has_value());
    EXPECT_TRUE(samePixels(*read, image));
}

TEST_F(StateFiles, ReadingADeletedOrInvalidFileFails) {
    ASSERT_TRUE(files.write(image, path(), "png"));
    std::filesystem::remove(path());
    EXPECT_FALSE(files.read(path()).has_value());
    writeFile(path(), "not a picture");
    EXPECT_FALSE(files.read(path()).has_value());
}

TEST_F(StateFiles, AnImageThatItsFormatCannotHoldIsNotWritten) {
    EXPECT_TRUE(files.write(filled({65501, 1}, kSkin), path("wide.jpg"), "jpg"));
    EXPECT_FALSE(std::filesystem::exists(path("wide.jpg")));
    EXPECT_FALSE(files.read(path("wide.jpg")).has_value());
}

TEST_F(StateFiles, AnImageThatItsFormatCannotHoldDoesNotReplaceAnEarlierFile) {
    ASSERT_TRUE(files.write(image, path("state.jpg"), "jpg"));
    EXPECT_TRUE(files.write(filled({65501, 1}, kSkin), path("state.jpg"), "jpg"));
    const auto read = files.read(path("state.jpg"));
    // Reading returns the file's content, not the image that could not be written.
    ASSERT_TRUE(read);
    EXPECT_TRUE(samePixels(*read, decoded(path("state.jpg"))));
}

TEST_F(StateFiles, RemovingDeletesTheFileSilently) {
    ASSERT_TRUE(files.write(image, path(), "png"));
    EXPECT_EQ(printedBy([this] { files.remove(path()); }), "");
    EXPECT_FALSE(std::filesystem::exists(path()));
    EXPECT_FALSE(files.read(path()).has_value());
}

TEST_F(StateFiles, AFailedRemovalIsPrinted) {
    const std::string printed = printedBy([this] { files.remove(path()); });
    EXPECT_EQ(printed, "Remove failed: No such file or directory\n");
    EXPECT_EQ(printedBy([this] { removeFile(path()); }), printed);
}

TEST_F(StateFiles, AFileThatCannotBeRemovedIsStillRead) {
    ASSERT_TRUE(files.write(image, path(), "png"));
    const std::string printed = printedBy([this] {
        const ReadOnly readOnly(folder.path());
        files.remove(path());
    });
    EXPECT_THAT(printed, testing::MatchesRegex("Remove failed: [^\n]+\n"));
    const auto read = files.read(path());
    ASSERT_TRUE(read.has_value());
    EXPECT_TRUE(samePixels(*read, image));
}

} // namespace

} // namespace complexion
