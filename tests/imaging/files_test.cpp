// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/files.h"

#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>

namespace complexion {
namespace {

FileContents contentsOf(const std::string& text) {
    FileContents contents;
    const auto half = static_cast<std::ptrdiff_t>(text.size() / 2);
    contents.append(Bytes(text.begin(), text.begin() + half));
    contents.append(Bytes(text.begin() + half, text.end()));
    return contents;
}

std::string textOf(const std::filesystem::path& path) {
    const Result<Bytes> bytes = readFile(path);
    return bytes ? std::string(bytes->begin(), bytes->end()) : "(unreadable)";
}

TEST(WriteFileAtomically, WritesAllPartsAndLeavesNoOtherFile) {
    const TemporaryFolder folder;
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contentsOf("skin deep")));
    EXPECT_EQ(textOf(folder.path() / "a"), "skin deep");
    EXPECT_EQ(filesIn(folder.path()).size(), 1U);
}

TEST(WriteFileAtomically, WritesMorePartsThanTheSystemTakesAtOnceAndSkipsEmptyOnes) {
    FileContents contents;
    contents.append({});
    for (int i = 0; i < 5000; ++i)
        contents.append(Bytes(static_cast<std::size_t>(i % 7), static_cast<std::uint8_t>(i)));
    contents.append({});
    const TemporaryFolder folder;
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contents));
    EXPECT_TRUE(*readFile(folder.path() / "a") == contents.joined());
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", {}));
    EXPECT_TRUE(readFile(folder.path() / "a")->empty());
}

TEST(WriteFileAtomically, ReplacesAnExistingFile) {
    const TemporaryFolder folder;
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contentsOf("a long first text")));
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contentsOf("short")));
    EXPECT_EQ(textOf(folder.path() / "a"), "short");
}

TEST(WriteFileAtomically, WritesBesideANameOfTheGreatestLength) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / std::string(255, 'n');
    ASSERT_TRUE(writeFileAtomically(path, contentsOf("x")));
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(WriteFileAtomically, FailsInAMissingFolder) {
    const TemporaryFolder folder;
    EXPECT_FALSE(writeFileAtomically(folder.path() / "none" / "a", contentsOf("x")));
}

TEST(WriteFileAtomically, AFolderAtTheTargetIsLeftAloneAndNothingElseStays) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "a");
    EXPECT_FALSE(writeFileAtomically(folder.path() / "a", contentsOf("x")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "a"));
    EXPECT_EQ(filesIn(folder.path()).size(), 1U);
}

TEST(WriteFileAtomically, GivesTheModeThatNewFilesHave) {
    const TemporaryFolder folder;
    const mode_t before = ::umask(0027);
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contentsOf("x")));
    ::umask(before);
    struct stat status = {};
    ASSERT_EQ(::stat((folder.path() / "a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST(ReadFile, RefusesWhatIsNoRegularFileWithoutWaiting) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(readFile(folder.path() / "pipe"));
    EXPECT_FALSE(readFile(folder.path()));
    EXPECT_FALSE(readFile(folder.path() / "missing"));
}

TEST(FlushToDisk, TellsWhetherTheFileIsThere) {
    const TemporaryFolder folder;
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contentsOf("x")));
    EXPECT_TRUE(flushToDisk(folder.path() / "a"));
    EXPECT_FALSE(flushToDisk(folder.path() / "b"));
}

} // namespace
} // namespace complexion
