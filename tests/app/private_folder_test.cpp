// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/private_folder.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <optional>

namespace complexion {
namespace {

/// An environment variable's value for as long as it lives.
class Environment {
public:
    Environment(const char* name, const std::string& value) : m_name(name) {
        if (const char* before = std::getenv(name))
            m_before = before;
        setenv(name, value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        if (m_before)
            setenv(m_name, m_before->c_str(), 1);
        else
            unsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<std::string> m_before;
};

TEST(PrivateFolder, OnlyTheUserMayEnter) {
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(std::filesystem::status(folder->path()).permissions(), std::filesystem::perms::owner_all);
}

TEST(PrivateFolder, StandsInTheTemporaryDirectoryThatIsSet) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->path().parent_path(), parent.path());
}

TEST(PrivateFolder, StandsInVarTmpWhenNoneIsSet) {
    const Environment variable("TMPDIR", "");
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->path().parent_path(), "/var/tmp");
}

TEST(PrivateFolder, GoesWithAllThatIsInIt) {
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

TEST(PrivateFolder, EachRunHasItsOwn) {
    const Result<PrivateFolder> one = PrivateFolder::create();
    const Result<PrivateFolder> other = PrivateFolder::create();
    EXPECT_NE(one->path(), other->path());
}

TEST(PrivateFolder, SaysWhyThereIsNone) {
    const Environment variable("TMPDIR", "/nowhere/at/all");
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_FALSE(folder);
    EXPECT_THAT(folder.error().message, testing::HasSubstr("/nowhere/at/all"));
}

/// What `create` in another process leaves at `place` when it is killed; the path of the folder.
std::filesystem::path folderOfAKilledRun(const TemporaryFolder& parent) {
    const pid_t child = ::fork();
    if (child == 0) {
        const Result<PrivateFolder> folder = PrivateFolder::create();
        std::ofstream(folder->path() / "stateImage1.png") << "a face";
        ::_exit(0); // no destructor runs, as when it is killed
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    std::filesystem::path left;
    for (const auto& entry : std::filesystem::directory_iterator(parent.path()))
        left = entry.path();
    return left;
}

TEST(PrivateFolder, WhatAKilledRunLeftGoesAtTheNextStart) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const std::filesystem::path left = folderOfAKilledRun(parent);
    ASSERT_TRUE(std::filesystem::exists(left / "stateImage1.png"));
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_FALSE(std::filesystem::exists(left));
    EXPECT_TRUE(std::filesystem::exists(folder->path()));
}

TEST(PrivateFolder, AFolderThatALivingRunOwnsStays) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const Result<PrivateFolder> first = PrivateFolder::create();
    const Result<PrivateFolder> second = PrivateFolder::create();
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(std::filesystem::exists(first->path()));
}

TEST(PrivateFolder, WhatOthersPutBesideItStays) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const std::filesystem::path open = parent.path() / "complexion-abcdef"; // not made by us: all may enter
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
