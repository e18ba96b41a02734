// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/private_folder.h"
#include "tests/fakes/environment.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

namespace complexion {
namespace {

TEST(PrivateFolder, CanBeEnteredByTheUserOnly) {
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(std::filesystem::status(folder->path()).permissions(), std::filesystem::perms::owner_all);
}

TEST(PrivateFolder, IsCreatedInTmpdir) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->path().parent_path(), parent.path());
}

TEST(PrivateFolder, IsCreatedInVarTmpIfTmpdirIsNotSet) {
    const Environment variable("TMPDIR", "");
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->path().parent_path(), "/var/tmp");
}

TEST(PrivateFolder, IsRemovedWithItsContent) {
    std::filesystem::path path;
    {
        Result<PrivateFolder> folder = PrivateFolder::create();
        ASSERT_TRUE(folder);
        const PrivateFolder moved = std::move(*folder);
        path = moved.path();
        writeFile(path / "state", "x");
        ASSERT_TRUE(std::filesystem::exists(path / "state"));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(PrivateFolder, IsUnique) {
    const Result<PrivateFolder> one = PrivateFolder::create();
    const Result<PrivateFolder> other = PrivateFolder::create();
    EXPECT_NE(one->path(), other->path());
}

TEST(PrivateFolder, ReportsWhyItCannotBeCreated) {
    const Environment variable("TMPDIR", "/nowhere/at/all");
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_FALSE(folder);
    EXPECT_THAT(folder.error().message, testing::HasSubstr("/nowhere/at/all"));
}

/// Creates a private folder in `parent` in a child process that then ends abruptly. Returns the folder's
/// path.
std::filesystem::path folderOfAKilledProcess(const TemporaryFolder& parent) {
    const pid_t child = ::fork();
    if (child == 0) {
        const Result<PrivateFolder> folder = PrivateFolder::create();
        std::ofstream(folder->path() / "stateImage1.png") << "a face";
        ::_exit(0); // runs no destructors, like a kill
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    std::filesystem::path folder;
    for (const auto& entry : std::filesystem::directory_iterator(parent.path()))
        folder = entry.path();
    return folder;
}

TEST(PrivateFolder, OfAKilledProcessIsRemovedAtTheNextStart) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const std::filesystem::path left = folderOfAKilledProcess(parent);
    ASSERT_TRUE(std::filesystem::exists(left / "stateImage1.png"));
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_FALSE(std::filesystem::exists(left));
    EXPECT_TRUE(std::filesystem::exists(folder->path()));
}

TEST(PrivateFolder, OfARunningProcessIsKept) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const Result<PrivateFolder> first = PrivateFolder::create();
    const Result<PrivateFolder> second = PrivateFolder::create();
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(std::filesystem::exists(first->path()));
}

TEST(PrivateFolder, FoldersOfOtherProgramsAreKept) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const std::filesystem::path open = parent.path() / "complexion-abcdef"; // everyone may enter, so not ours
    std::filesystem::create_directory(open);
    std::filesystem::permissions(open, std::filesystem::perms(0755));
    const std::filesystem::path named = parent.path() / "complexion-notes";
    std::filesystem::create_directory(named);
    std::filesystem::permissions(named, std::filesystem::perms::owner_all);
    const std::filesystem::path target = parent.path() / "precious";
    std::filesystem::create_directory(target);
    std::filesystem::permissions(target, std::filesystem::perms::owner_all);
    std::filesystem::create_directory_symlink(target, parent.path() / "complexion-uvwxyz");
    std::ofstream(parent.path() / "complexion-ghijkl") << "a file";

    ASSERT_TRUE(PrivateFolder::create());
    EXPECT_TRUE(std::filesystem::exists(open));
    EXPECT_TRUE(std::filesystem::exists(target));
    EXPECT_TRUE(std::filesystem::exists(parent.path() / "complexion-uvwxyz"));
    EXPECT_TRUE(std::filesystem::exists(parent.path() / "complexion-ghijkl"));
}

} // namespace
} // namespace complexion
