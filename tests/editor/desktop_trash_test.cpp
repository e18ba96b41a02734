// SPDX-License-Identifier: GPL-3.0-or-later

// The desktop's trash folders, and what happens if they cannot be used.
#include "editor/desktop_trash.h"

#include "tests/fakes/environment.h"
#include "tests/fakes/full_disk.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/system_calls.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cerrno>

namespace complexion {

namespace {

/// The home trash is on the same file system as the file. No test may put a trash at the top of that one.
class HomeTrash : public testing::Test {
protected:
    HomeTrash() { writeFile(file, "a face"); }

    /// The files in the trash, or in its `info` folder.
    std::vector<std::string> trashed(const char* folder = "files") const { return filesIn(trash / folder); }
    bool isInPlace() const { return contentsOf(file) == "a face"; }

    TemporaryFolder root;
    std::filesystem::path data = root.path() / "data";
    std::filesystem::path trash = data / "Trash";
    std::filesystem::path file = root.path() / "face.jpg";
    Environment dataHome{"XDG_DATA_HOME", data.string()};
};

TEST_F(HomeTrash, IsCreatedForTheUserAlone) {
    EXPECT_TRUE(moveToTrash(file, file));
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(contentsOf(trash / "files/face.jpg"), "a face");
    for (const char* folder : {"", "files", "info"})
        EXPECT_EQ(std::filesystem::status(trash / folder).permissions(), std::filesystem::perms::owner_all)
            << folder;
}

TEST_F(HomeTrash, IsInTheHomeFolderByDefault) {
    const Environment none("XDG_DATA_HOME", std::nullopt);
    const Environment home("HOME", (root.path() / "home").string());
    EXPECT_TRUE(moveToTrash(file, file));
    EXPECT_EQ(contentsOf(root.path() / "home/.local/share/Trash/files/face.jpg"), "a face");
}

TEST_F(HomeTrash, EncodesThePathLikeAUrl) {
    const std::filesystem::path original = root.path() / "AZaz09-_.~ @[`{/:%\x01\x7f\xc3\xa4";
    std::filesystem::create_directory(original.parent_path());
    EXPECT_TRUE(moveToTrash(file, original));
    const std::string info = contentsOf(trash / "info" / (original.filename().string() + ".trashinfo"));
    const std::string expected = "/AZaz09-_.~%20%40%5B%60%7B/%3A%25%01%7F%C3%A4\nDeletionDate=";
    EXPECT_NE(info.find(expected), std::string::npos) << info;
}

TEST_F(HomeTrash, ListsARelativePathFromTheRoot) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(root.path());
    EXPECT_TRUE(moveToTrash("face.jpg", "face.jpg"));
    std::filesystem::current_path(before);
    EXPECT_NE(contentsOf(trash / "info/face.jpg.trashinfo").find("Path=" + file.string() + "\n"),
              std::string::npos);
}

TEST_F(HomeTrash, GivesAFileWhoseNameIsInUseANumber) {
    std::filesystem::create_directories(trash / "files");
    writeFile(trash / "files/face.jpg", "a file without an entry");
    EXPECT_TRUE(moveToTrash(file, file));
    EXPECT_EQ(contentsOf(trash / "files/face.jpg"), "a file without an entry");
    EXPECT_EQ(contentsOf(trash / "files/face.2.jpg"), "a face");
    EXPECT_EQ(trashed("info"), std::vector<std::string>{"face.2.jpg.trashinfo"});
}

// What the system refuses at the home trash, it also refuses at the top of the file system.
TEST_F(HomeTrash, LosesNothingIfItCannotBeUsed) {
    const FailingCalls noTop(SystemCall::Mkdir, EACCES, 1000);
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_TRUE(isInPlace());
    EXPECT_FALSE(std::filesystem::exists(trash));
}

TEST_F(HomeTrash, LosesNothingIfNoNameIsFree) {
    std::filesystem::create_directories(trash / "files");
    std::filesystem::create_directories(trash / "info");
    const FailingCalls noTop(SystemCall::Mkdir, EACCES, 1000, 3); // after Trash, files and info
    const FailingCalls taken(SystemCall::Open, EEXIST, 1'000'000);
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_TRUE(isInPlace());
    EXPECT_EQ(taken.failedCount(), 10'000);
}

TEST_F(HomeTrash, KeepsNoEntryOfAFileThatCannotBeMoved) {
    const FailingCalls failing(SystemCall::Renameat2, EPERM);
    const FailingCalls noTop(SystemCall::Mkdir, EACCES, 1000, 4); // after data, Trash, files and info
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_TRUE(isInPlace());
    EXPECT_EQ(failing.failedCount(), 1);
    EXPECT_TRUE(trashed().empty());
    EXPECT_TRUE(trashed("info").empty());
}

TEST_F(HomeTrash, KeepsNoEntryThatCouldNotBeWritten) {
    const FailingCalls noTop(SystemCall::Mkdir, EACCES, 1000, 4); // after data, Trash, files and info
    const FailingCalls failing(SystemCall::Close, EIO);
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_EQ(failing.failedCount(), 1);
    EXPECT_TRUE(isInPlace());
    EXPECT_TRUE(trashed("info").empty());
}

TEST_F(HomeTrash, LosesNothingIfTheFileSystemsCannotBeTold) {
    // From the second examination on; the first is of the file itself.
    const FailingCalls unreadable(SystemCall::Lstat, EACCES, 1000, 1);
    const FailingCalls noTop(SystemCall::Mkdir, EACCES, 1000);
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_GT(unreadable.failedCount(), 1);
    EXPECT_TRUE(isInPlace());
}

TEST_F(HomeTrash, TakesNoMissingFileNorOneFromAMissingFolder) {
    EXPECT_FALSE(moveToTrash(root.path() / "missing.jpg", root.path() / "missing.jpg"));
    EXPECT_FALSE(moveToTrash(file, root.path() / "missing/face.jpg"));
    EXPECT_TRUE(isInPlace());
    EXPECT_FALSE(std::filesystem::exists(trash));
}

/// The file is on a file system of its own, and the home trash is not.
class TopTrash : public testing::Test {
protected:
    TopTrash() {
        if (disk.isMounted())
            writeFile(file, "a face");
    }
    void SetUp() override {
        if (!disk.isMounted())
            GTEST_SKIP() << "only root can make a small disk";
    }

    static std::filesystem::path made(std::filesystem::path folder) {
        std::filesystem::create_directory(folder);
        return folder;
    }
    bool isInPlace() const { return contentsOf(file) == "a face"; }

    TemporaryFolder root;
    std::filesystem::path stick = made(root.path() / "stick");
    SmallDisk disk{stick, 256 * 1024};
    std::filesystem::path own = stick / (".Trash-" + std::to_string(::getuid()));
    std::filesystem::path shared = stick / ".Trash";
    std::filesystem::path file = stick / "face.jpg";
    Environment dataHome{"XDG_DATA_HOME", (root.path() / "data").string()};
};

TEST_F(TopTrash, IsUsedIfNoHomeTrashIsKnown) {
    const Environment noData("XDG_DATA_HOME", std::nullopt);
    const Environment noHome("HOME", std::nullopt);
    EXPECT_TRUE(moveToTrash(file, file));
    EXPECT_EQ(contentsOf(own / "files/face.jpg"), "a face");
}

// For example, because another program has put a file there.
TEST_F(TopTrash, IsUsedIfTheHomeTrashIsUnusable) {
    const Environment homeOnTheStick("XDG_DATA_HOME", (stick / "data").string());
    int number = 1;
    for (const char* name : {"Trash", "Trash/files", "Trash/info"}) {
        std::filesystem::remove_all(stick / "data");
        std::filesystem::create_directories((stick / "data" / name).parent_path());
        writeFile(stick / "data" / name, "not a folder");
        writeFile(file, "a face");
        EXPECT_TRUE(moveToTrash(file, file)) << name;
        EXPECT_EQ(filesIn(own / "files").size(), static_cast<std::size_t>(number++)) << name;
    }
}

TEST_F(TopTrash, IsNotTheSharedOneUnlessThatIsAProtectedFolder) {
    std::filesystem::create_directory(stick / "elsewhere");
    std::filesystem::permissions(stick / "elsewhere", std::filesystem::perms(01777));
    std::filesystem::create_symlink("elsewhere", shared);
    EXPECT_TRUE(moveToTrash(file, file));
    EXPECT_EQ(contentsOf(own / "files/face.jpg"), "a face");
    EXPECT_TRUE(filesIn(stick / "elsewhere").empty());
    std::filesystem::remove(shared);

    writeFile(shared, "not a folder");
    writeFile(file, "another face");
    EXPECT_TRUE(moveToTrash(file, file));
    EXPECT_EQ(contentsOf(own / "files/face.2.jpg"), "another face");
}

TEST_F(TopTrash, IsTheUsersOwnIfTheSharedOneHasNoRoomForTheUser) {
    std::filesystem::create_directory(shared);
    std::filesystem::permissions(shared, std::filesystem::perms(01777));
    const FailingCalls refused(SystemCall::Mkdir, EACCES);
    EXPECT_TRUE(moveToTrash(file, file));
    EXPECT_EQ(contentsOf(own / "files/face.jpg"), "a face");
    EXPECT_TRUE(filesIn(shared).empty());
}

TEST_F(TopTrash, IsNeverALinkNorAnotherUsersFolder) {
    std::filesystem::create_directory(stick / "elsewhere");
    std::filesystem::create_directory_symlink("elsewhere", own);
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_TRUE(isInPlace());
    EXPECT_TRUE(filesIn(stick / "elsewhere").empty());
    std::filesystem::remove(own);

    std::filesystem::create_directory(own);
    ASSERT_EQ(::chown(own.c_str(), 65534, 65534), 0);
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_TRUE(isInPlace());
    EXPECT_TRUE(filesIn(own).empty());
}

TEST_F(TopTrash, IsNotMadeOnAFullDisk) {
    const FailingCalls full(SystemCall::Mkdir, ENOSPC, 3);
    EXPECT_FALSE(moveToTrash(file, file));
    EXPECT_TRUE(isInPlace());
}

} // namespace

} // namespace complexion
