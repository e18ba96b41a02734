// SPDX-License-Identifier: GPL-3.0-or-later

// Setting aside the file that a save replaces.
#include "editor/set_aside.h"

#include "editor/desktop_trash.h"
#include "imaging/base/files.h"
#include "tests/editor/faults_fixture.h"
#include "tests/fakes/full_disk.h"
#include "tests/fakes/system_calls.h"

#include <cerrno>

namespace complexion {

namespace {

class SetAsideTest : public Faults {
protected:
    /// Writes a file that is to be replaced.
    std::filesystem::path makeEarlierFile(const std::string& name = "saved.bmp") const {
        writeFile(target(name), "an earlier file");
        return target(name);
    }

    /// The names of the files in the photos' folder.
    std::vector<std::string> names() const { return filesIn(platform.photos()); }

    std::string trashInfo(const std::string& name) const {
        return contentsOf(platform.trash() / "info" / (name + ".trashinfo"));
    }
};

TEST_F(SetAsideTest, RenamesTheFileAndDeletesItWhenDiscarded) {
    const std::filesystem::path path = makeEarlierFile();
    EXPECT_EQ(printedBy([&] {
                  SetAsideFile file(path);
                  EXPECT_THAT(names(), testing::ElementsAre("saved (replaced).bmp"));
                  EXPECT_EQ(contentsOf(target("saved (replaced).bmp")), "an earlier file");
                  file.discard();
                  EXPECT_TRUE(names().empty());
              }),
              "");
}

TEST_F(SetAsideTest, KeepsTheFileUnlessToldOtherwise) {
    {
        const SetAsideFile file(makeEarlierFile());
    }
    EXPECT_EQ(contentsOf(target("saved (replaced).bmp")), "an earlier file");
}

TEST_F(SetAsideTest, OverwritesNoOtherFile) {
    writeFile(target("saved (replaced).bmp"), "somebody's");
    writeFile(target("saved (replaced 2).bmp"), "else");
    SetAsideFile file(makeEarlierFile());
    EXPECT_EQ(contentsOf(target("saved (replaced).bmp")), "somebody's");
    EXPECT_EQ(contentsOf(target("saved (replaced 3).bmp")), "an earlier file");
    file.discard();
    EXPECT_EQ(names().size(), 2U);
}

TEST_F(SetAsideTest, ShortensTheLongestName) {
    const std::string name = std::string(251, 'n') + ".bmp";
    SetAsideFile file(makeEarlierFile(name));
    EXPECT_FALSE(std::filesystem::exists(target(name)));
    EXPECT_THAT(names(), testing::ElementsAre(std::string(240, 'n') + " (replaced).bmp"));
    file.moveToTrash();
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(filesIn(platform.trash() / "files").size(), 1U);
}

TEST_F(SetAsideTest, ReportsAFileThatCannotBeRenamed) {
    EXPECT_EQ(printedBy([&] { SetAsideFile(target("missing.bmp")).discard(); }),
              "Remove failed: No such file or directory\n");
    std::filesystem::create_directory(target("folder.bmp"));
    EXPECT_EQ(printedBy([&] { SetAsideFile(target("folder.bmp")).discard(); }),
              "Remove failed: Is a directory\n");
    EXPECT_THAT(names(), testing::ElementsAre("folder.bmp"));
}

TEST_F(SetAsideTest, ReportsThatNoNameIsFree) {
    const std::filesystem::path path = makeEarlierFile();
    const FailingCalls taken(SystemCall::Renameat2, EEXIST, 1'000'000);
    EXPECT_EQ(printedBy([&] { SetAsideFile(path).discard(); }), "Remove failed: File exists\n");
    EXPECT_EQ(taken.failedCount(), 10'000);
    EXPECT_EQ(contentsOf(path), "an earlier file");
}

TEST_F(SetAsideTest, RenamesAFileInTheCurrentFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(makeEarlierFile().parent_path());
    {
        const SetAsideFile file("saved.bmp");
    }
    std::filesystem::current_path(before);
    EXPECT_THAT(names(), testing::ElementsAre("saved (replaced).bmp"));
}

TEST_F(SetAsideTest, MovesTheFileToTheTrashWithItsOriginalPath) {
    const std::filesystem::path path = makeEarlierFile("a b%\xc3\xa4.bmp");
    SetAsideFile file(path);
    file.moveToTrash();
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(contentsOf(platform.trash() / "files/a b%\xc3\xa4.bmp"), "an earlier file");
    EXPECT_THAT(trashInfo("a b%\xc3\xa4.bmp"),
                testing::MatchesRegex("\\[Trash Info\\]\nPath=/.*/photos/a%20b%25%C3%A4\\.bmp\n"
                                      "DeletionDate=....-..-..T..:..:..\n"));
    EXPECT_EQ(std::filesystem::status(platform.trash()).permissions(), std::filesystem::perms(0700));
}

TEST_F(SetAsideTest, MovesTwoFilesOfOneNameToTheTrash) {
    SetAsideFile(makeEarlierFile()).moveToTrash();
    SetAsideFile(makeEarlierFile()).moveToTrash();
    EXPECT_THAT(filesIn(platform.trash() / "files"), testing::ElementsAre("saved.2.bmp", "saved.bmp"));
    EXPECT_EQ(filesIn(platform.trash() / "info").size(), 2U);
}

TEST_F(SetAsideTest, KeepsTheFileIfThereIsNoTrash) {
    const std::filesystem::path stick = target("stick");
    std::filesystem::create_directories(stick);
    const SmallDisk disk(stick, 64 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root can make a small disk";
    writeFile(stick / (".Trash-" + std::to_string(::getuid())), "not a folder");
    writeFile(stick / "saved.bmp", "an earlier file");
    SetAsideFile(stick / "saved.bmp").moveToTrash();
    EXPECT_FALSE(std::filesystem::exists(stick / "saved.bmp"));
    EXPECT_EQ(contentsOf(stick / "saved (replaced).bmp"), "an earlier file");
}

TEST_F(SetAsideTest, UsesTheTrashOfTheFilesOwnFileSystem) {
    const std::filesystem::path stick = target("stick");
    std::filesystem::create_directories(stick);
    const SmallDisk disk(stick, 64 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root can make a small disk";
    std::filesystem::create_directory(stick / "album");
    writeFile(stick / "album/saved.bmp", "an earlier file");
    SetAsideFile(stick / "album/saved.bmp").moveToTrash();
    const std::filesystem::path trash = stick / (".Trash-" + std::to_string(::getuid()));
    EXPECT_EQ(contentsOf(trash / "files/saved.bmp"), "an earlier file");
    EXPECT_THAT(contentsOf(trash / "info/saved.bmp.trashinfo"),
                testing::HasSubstr("\nPath=album/saved.bmp\n"));
    EXPECT_TRUE(filesIn(stick / "album").empty());
    EXPECT_FALSE(std::filesystem::exists(platform.trash()));

    // An administrator's shared trash folder has precedence, but only with the sticky bit.
    std::filesystem::create_directory(stick / ".Trash");
    writeFile(stick / "album/saved.bmp", "a second file");
    SetAsideFile(stick / "album/saved.bmp").moveToTrash();
    EXPECT_EQ(contentsOf(trash / "files/saved.2.bmp"), "a second file");
    std::filesystem::permissions(stick / ".Trash", std::filesystem::perms(01777));
    writeFile(stick / "album/saved.bmp", "a third file");
    SetAsideFile(stick / "album/saved.bmp").moveToTrash();
    EXPECT_EQ(contentsOf(stick / ".Trash" / std::to_string(::getuid()) / "files/saved.bmp"), "a third file");
}

TEST_F(SetAsideTest, KeepsTheFileOnAFullDisk) {
    const std::filesystem::path stick = target("stick");
    std::filesystem::create_directories(stick);
    const SmallDisk disk(stick, 32 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root can make a small disk";
    openPhoto();
    retouch(0);
    writeFile(stick / "saved.bmp", std::string(31 * 1024, 'x'));
    saveExpecting(stick / "saved.bmp", kSaveFailure);
    EXPECT_FALSE(std::filesystem::exists(stick / "saved.bmp"));
    EXPECT_EQ(contentsOf(stick / "saved (replaced).bmp"), std::string(31 * 1024, 'x'));
}

TEST_F(SetAsideTest, MovesAReplacedSourceToTheTrashWhenTheSaveFails) {
    openPhoto();
    retouch(0);
    const std::filesystem::path source = controller->originalImagePath;
    const std::string photoBytes = contentsOf(source);
    {
        const FullDisk full;
        saveExpecting(source, kSaveFailure);
    }
    EXPECT_FALSE(std::filesystem::exists(source));
    EXPECT_EQ(contentsOf(platform.trash() / "files/portrait.bmp"), photoBytes);
    saveExpecting(source, kSaveSuccess); // the work can still be saved
    EXPECT_TRUE(samePixels(decoded(source), shown()));
}

} // namespace

} // namespace complexion
