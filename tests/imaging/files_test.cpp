// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/files.h"

#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

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

TEST(WriteFileAtomically, WritesMorePartsThanOneSystemCallAccepts) {
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

TEST(WriteFileAtomically, WritesAFileOfTheLongestName) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / std::string(255, 'n');
    ASSERT_TRUE(writeFileAtomically(path, contentsOf("x")));
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(WriteFileAtomically, FailsInAMissingFolder) {
    const TemporaryFolder folder;
    EXPECT_FALSE(writeFileAtomically(folder.path() / "none" / "a", contentsOf("x")));
}

TEST(WriteFileAtomically, KeepsAFolderAtTheTargetAndLeavesNoOtherFile) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "a");
    EXPECT_FALSE(writeFileAtomically(folder.path() / "a", contentsOf("x")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "a"));
    EXPECT_EQ(filesIn(folder.path()).size(), 1U);
}

TEST(WriteFileAtomically, GivesTheFileDefaultPermissions) {
    const TemporaryFolder folder;
    const mode_t before = ::umask(0027);
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contentsOf("x")));
    ::umask(before);
    struct stat status = {};
    ASSERT_EQ(::stat((folder.path() / "a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

mode_t modeOf(const std::filesystem::path& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

TEST(WriteFileAtomically, RestrictsThePermissionsToTheGivenReaders) {
    const TemporaryFolder folder;
    const std::filesystem::path source = folder.path() / "source";
    const std::filesystem::path path = folder.path() / "a";
    ASSERT_TRUE(writeFileAtomically(source, contentsOf("x")));
    const mode_t before = ::umask(0022);
    for (const auto& [ofSource, expected] : std::vector<std::pair<mode_t, mode_t>>{{0600, 0600},
                                                                                   {0400, 0600},
                                                                                   {0640, 0640},
                                                                                   {0604, 0604},
                                                                                   {0644, 0644},
                                                                                   {0666, 0644},
                                                                                   {0755, 0644}}) {
        ASSERT_EQ(::chmod(source.c_str(), ofSource), 0);
        ASSERT_TRUE(writeFileAtomically(path, contentsOf("y"), readersOf(source)));
        EXPECT_EQ(modeOf(path), expected);
    }
    // Members of a different group may have been among the source's "others".
    for (const auto& [ofSource, expected] :
         std::vector<std::pair<mode_t, mode_t>>{{0640, 0600}, {0604, 0600}, {0644, 0644}}) {
        ASSERT_EQ(::chmod(source.c_str(), ofSource), 0);
        Readers readers = *readersOf(source);
        readers.group = *readers.group + 1;
        ASSERT_TRUE(writeFileAtomically(path, contentsOf("y"), readers));
        EXPECT_EQ(modeOf(path), expected);
    }
    ::umask(before);
    EXPECT_FALSE(readersOf(folder.path() / "missing"));
}

TEST(MoveWithoutReplacing, KeepsAnExistingFile) {
    const TemporaryFolder folder;
    const std::filesystem::path from = folder.path() / "from";
    const std::filesystem::path to = folder.path() / "to";
    ASSERT_TRUE(writeFileAtomically(from, contentsOf("new")));
    ASSERT_TRUE(writeFileAtomically(to, contentsOf("old")));
    EXPECT_FALSE(moveWithoutReplacing(from, to));
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(textOf(from), "new");
    EXPECT_EQ(textOf(to), "old");
    EXPECT_TRUE(moveWithoutReplacing(from, folder.path() / "free"));
    EXPECT_EQ(textOf(folder.path() / "free"), "new");
    EXPECT_FALSE(std::filesystem::exists(from));
}

TEST(NameWithSuffix, InsertsTheSuffixBeforeTheExtensionAndShortensTheName) {
    const TemporaryFolder folder;
    const auto name = [&folder](const std::string& of) {
        return nameWithSuffix(of, " (2)", folder.path()).string();
    };
    EXPECT_EQ(name("a.b.png"), "a.b (2).png");
    EXPECT_EQ(name("a"), "a (2)");
    EXPECT_EQ(name(".png"), ".png (2)");
    EXPECT_EQ(name("a. long sentence with a dot somewhere in it"),
              "a. long sentence with a dot somewhere in it (2)");
    EXPECT_EQ(name(std::string(255, 'n')), std::string(251, 'n') + " (2)");
    EXPECT_EQ(name(std::string(251, 'n') + ".png"), std::string(247, 'n') + " (2).png");
    // Each umlaut has two bytes and is not split; 251 bytes are available.
    std::string umlauts;
    for (int i = 0; i < 127; ++i)
        umlauts += "\xc3\xa4";
    EXPECT_EQ(name(umlauts), umlauts.substr(0, 250) + " (2)");
    std::string rings; // å ends in an odd byte
    for (int i = 0; i < 127; ++i)
        rings += "\xc3\xa5";
    EXPECT_EQ(name(rings), rings.substr(0, 250) + " (2)");
}

TEST(NameWithSuffix, TreatsAnExtensionOfMoreThan32BytesAsPartOfTheName) {
    const TemporaryFolder folder;
    const std::string extension = "." + std::string(31, 'e');
    EXPECT_EQ(nameWithSuffix("a" + extension, "-1", folder.path()), "a-1" + extension);
    EXPECT_EQ(nameWithSuffix("a" + extension + "e", "-1", folder.path()), "a" + extension + "e-1");
}

TEST(NameWithSuffix, LeavesSpareBytes) {
    const TemporaryFolder folder;
    EXPECT_EQ(nameWithSuffix(std::string(255, 'n'), "-1", folder.path(), 10), std::string(243, 'n') + "-1");
}

TEST(NameWithSuffix, AllowsNamesOf255BytesWhereTheFileSystemIsUnknown) {
    const TemporaryFolder folder;
    EXPECT_EQ(nameWithSuffix(std::string(300, 'n'), "-1", folder.path() / "missing"),
              std::string(253, 'n') + "-1");
}

TEST(NameWithSuffix, DropsABrokenSequenceWhole) {
    const TemporaryFolder folder;
    EXPECT_EQ(nameWithSuffix(std::string(300, '\x80'), "-1", folder.path()), "-1");
}

/// An access control list in the file system's format (version 2): one more user may read.
bool setAccessControlList(const std::filesystem::path& path) {
    struct Entry {
        std::uint16_t tag;
        std::uint16_t permissions;
        std::uint32_t id;
    };
    struct {
        std::uint32_t version = 2;
        std::array<Entry, 5> entries = {
            {{0x01, 6, ~0U}, {0x02, 4, 1}, {0x04, 4, ~0U}, {0x10, 4, ~0U}, {0x20, 4, ~0U}}};
    } const list;
    return ::setxattr(path.c_str(), "system.posix_acl_access", &list, sizeof list, 0) == 0;
}

TEST(ReadersOf, AFileWithAnAccessControlListAreNotItsGroup) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "a";
    ASSERT_TRUE(writeFileAtomically(path, contentsOf("x")));
    EXPECT_TRUE(readersOf(path)->group);
    if (!setAccessControlList(path))
        GTEST_SKIP() << "this file system has no access control lists";
    EXPECT_FALSE(readersOf(path)->group);
}

TEST(ReadFile, RefusesWhatIsNotARegularFileWithoutBlocking) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(readFile(folder.path() / "pipe"));
    EXPECT_FALSE(readFile(folder.path()));
    EXPECT_FALSE(readFile(folder.path() / "missing"));
}

TEST(FlushToDisk, FailsForAMissingFile) {
    const TemporaryFolder folder;
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contentsOf("x")));
    EXPECT_TRUE(flushToDisk(folder.path() / "a"));
    EXPECT_FALSE(flushToDisk(folder.path() / "b"));
}

TEST(FlushToDisk, WorksInAFolderWithWriteButWithoutReadPermission) {
    const TemporaryFolder folder;
    const std::filesystem::path drop = folder.path() / "drop";
    std::filesystem::create_directory(drop);
    std::filesystem::permissions(drop, std::filesystem::perms(0333));
    EXPECT_TRUE(asNobody(
        [&drop] { return writeFileAtomically(drop / "a", contentsOf("x")) && flushToDisk(drop / "a"); }));
    std::filesystem::permissions(drop, std::filesystem::perms(0755));
    EXPECT_EQ(textOf(drop / "a"), "x");
}

} // namespace
} // namespace complexion
