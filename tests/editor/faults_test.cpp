// SPDX-License-Identifier: GPL-3.0-or-later

// Files that other programs remove or replace, and targets that are not regular files.
#include "tests/editor/faults_fixture.h"

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace complexion {

namespace {

// Files that are removed or replaced.

TEST_F(Faults, RemovingTheStateFolderLosesOnlyTheHistory) {
    openPhoto();
    retouch(0);
    std::filesystem::remove_all(platform.states());
    retouch(1);
    EXPECT_EQ(shown().pixel(30, 55), kSkin);
    const Image before = shown();
    controller->OnUndo(nullptr);
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_TRUE(shown().isSameObject(before));
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), before));

    const std::filesystem::path next = makePhoto("next.png");
    const std::string printed = printedBy([&] { openThroughPanel(next); });
    EXPECT_THAT(printed, testing::MatchesRegex("(Remove failed: No such file or directory\n){2}"));
    EXPECT_TRUE(samePixels(shown(), photo()));
    retouch(2);
    EXPECT_EQ(shown().pixel(45, 25), kSkin);
    EXPECT_EQ(printedBy([this] { controller->windowWillClose(); }), "");
    std::filesystem::create_directory(platform.states());
}

TEST_F(Faults, UndoDoesNotBlockOnAStateThatIsNotARegularFile) {
    using Replace = std::function<void(const std::filesystem::path&)>;
    const std::vector<std::pair<std::string, Replace>> kinds = {
        {"folder", [](const auto& path) { std::filesystem::create_directory(path); }},
        {"named pipe", [](const auto& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }},
        {"endless device", [](const auto& path) { std::filesystem::create_symlink("/dev/zero", path); }},
        {"link to nowhere", [](const auto& path) { std::filesystem::create_symlink("nowhere", path); }},
        {"link to itself", [](const auto& path) { std::filesystem::create_symlink(path, path); }},
        {"empty file", [](const auto& path) { writeFile(path, ""); }},
    };
    openPhoto();
    retouch(0);
    const std::filesystem::path earlier = controller->stateImagesPath.front();
    for (const auto& [name, replace] : kinds) {
        SCOPED_TRACE(name);
        std::filesystem::remove(earlier);
        replace(earlier);
        expectUnchangedBy([this] { controller->OnUndo(nullptr); });
    }
}

TEST_F(Faults, ASourceThatIsNotARegularFileCannotBeReloadedButItsResultCanBeSaved) {
    openPhoto();
    retouch(0);
    const std::filesystem::path source = controller->originalImagePath;
    std::filesystem::remove(source);
    ASSERT_EQ(::mkfifo(source.c_str(), 0600), 0);
    for (const char* const name : {"pipe", "device"}) {
        SCOPED_TRACE(name);
        expectUnchangedBy([this] {
            dialogs.expectQuestion(kReloadQuestion, kFirstButton);
            dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
            controller->OnResetImage(nullptr);
        });
        saveExpecting(target(), kSaveSuccess);
        EXPECT_TRUE(samePixels(decoded(target()), shown()));
        std::filesystem::remove(source);
        std::filesystem::create_symlink("/dev/zero", source);
    }
}

TEST_F(Faults, AStateFileOpenedAsAPhotoIsDeletedWithItsHistory) {
    openPhoto();
    retouch(0);
    const Image retouched = shown();
    openThroughPanel(std::filesystem::path(currentPath()));
    EXPECT_TRUE(samePixels(shown(), retouched));
    EXPECT_EQ(stateFiles().size(), 1U);
    dialogs.expectQuestion(kReloadQuestion, kFirstButton);
    dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
    controller->OnResetImage(nullptr);
    EXPECT_TRUE(samePixels(shown(), retouched));
}

// Targets that are not regular files.

TEST_F(Faults, AFolderAsTheTargetIsKeptWithItsContent) {
    openPhoto();
    retouch(0);
    for (const char* const inner : {"", "letter.txt"}) {
        std::filesystem::create_directory(target());
        if (*inner)
            writeFile(target() / inner, "a letter");
        const std::string printed = saveExpecting(target(), kSaveFailure);
        EXPECT_THAT(printed, testing::MatchesRegex("Remove failed: [^\n]+\n"));
        EXPECT_EQ(filesIn(target()).size(), *inner ? 1U : 0U);
    }
    expectEditorWorks();
}

TEST_F(Faults, ALinkAsTheTargetIsReplacedAndItsDestinationKept) {
    openPhoto();
    retouch(0);
    const std::filesystem::path source = controller->originalImagePath;
    const std::string photoBytes = contentsOf(source);
    const std::filesystem::path nowhere = platform.photos() / "nowhere.bmp";
    for (const std::filesystem::path& named : {source, nowhere, std::filesystem::path("/dev/full")}) {
        SCOPED_TRACE(named);
        std::filesystem::create_symlink(named, target());
        saveExpecting(target(), kSaveSuccess);
        EXPECT_EQ(std::filesystem::symlink_status(target()).type(), std::filesystem::file_type::regular);
        EXPECT_TRUE(samePixels(decoded(target()), shown()));
        std::filesystem::remove(target());
    }
    std::filesystem::create_hard_link(source, target());
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), shown()));
    EXPECT_EQ(contentsOf(source), photoBytes);
    EXPECT_FALSE(std::filesystem::exists(nowhere));
}

TEST_F(Faults, ANamedPipeAsTheTargetIsReplacedWithoutBlocking) {
    openPhoto();
    ASSERT_EQ(::mkfifo(target().c_str(), 0600), 0);
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), photo()));
}

TEST_F(Faults, ANameThatIsTooLongShowsTheFailure) {
    openPhoto();
    expectUnchangedBy([this] { saveExpecting(target(std::string(300, 'n') + ".bmp"), kSaveFailure); });
    expectNoTemporaryFilesIn(platform.photos());
}

TEST_F(Faults, AnotherUsersFileInASharedFolderIsKept) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can act as two users";
    constexpr unsigned kNobody = 65534;
    const std::filesystem::path shared = target("shared");
    std::filesystem::create_directory(shared);
    std::filesystem::permissions(shared, std::filesystem::perms(01777)); // as /tmp has
    writeFile(shared / "saved.bmp", "somebody's own");
    openPhoto();
    expectSave(shared / "saved.bmp", kSaveFailure);
    ::setfsgid(kNobody);
    ::setfsuid(kNobody);
    controller->OnSaveImage(nullptr);
    ::setfsuid(0);
    ::setfsgid(0);
    EXPECT_EQ(contentsOf(shared / "saved.bmp"), "somebody's own");
    EXPECT_THAT(filesIn(shared), testing::ElementsAre("saved.bmp"));
}

} // namespace

} // namespace complexion
