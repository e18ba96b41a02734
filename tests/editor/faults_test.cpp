// SPDX-License-Identifier: GPL-3.0-or-later

// What the system does to the editor while it works: full disks, files that are taken away or changed.
#include "tests/editor/editor_fixture.h"
#include "tests/fakes/full_disk.h"

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace complexion {

namespace {

/// The photo is a BMP: its states have 19 KB each, whatever is on them.
class Faults : public EditorTest {
protected:
    void openPhoto() { openThroughPanel(makePhoto("portrait.bmp")); }

    std::filesystem::path target(const std::string& name = "saved.bmp") const {
        return platform.photos() / name;
    }

    void expectSave(const std::filesystem::path& path, const char* alert) {
        const std::string extension = path.extension().string().substr(1);
        dialogs.expectSavePanel({{extension}, "portrait_retouched." + extension}, chosen(path));
        dialogs.expectAlert(alert, std::string_view(alert) == kSaveSuccess ? AlertStyle::Informational
                                                                           : AlertStyle::Warning);
    }
    std::string saveExpecting(const std::filesystem::path& path, const char* alert) {
        expectSave(path, alert);
        return printedBy([this] { controller->OnSaveImage(nullptr); });
    }

    /// No part of a picture lies about.
    static void expectNothingTemporaryIn(const std::filesystem::path& folder) {
        for (const std::string& name : filesIn(folder))
            EXPECT_FALSE(name.starts_with(".")) << folder / name;
    }

    /// A retouch works, is recorded, and can be saved.
    void expectWorkGoesOn() {
        const std::int64_t before = controller->currenState;
        retouch(2);
        EXPECT_EQ(controller->currenState, before + 1);
        EXPECT_TRUE(samePixels(decoded(currentPath()), controller->originalImage()));
        EXPECT_EQ(controller->originalImage().pixel(45, 25), kSkin);
        saveExpecting(target("afterwards.bmp"), kSaveSuccess);
        EXPECT_TRUE(samePixels(decoded(target("afterwards.bmp")), shown()));
        expectNothingTemporaryIn(platform.states());
        expectNothingTemporaryIn(platform.photos());
    }
};

// A full disk under the history.

TEST_F(Faults, ADiskThatIsFullAtTheOpeningCostsTheHistoryAlone) {
    const std::filesystem::path path = makePhoto("portrait.bmp");
    {
        const FullDisk full;
        openThroughPanel(path);
    }
    EXPECT_TRUE(samePixels(shown(), photo()));
    EXPECT_TRUE(controller->stateImagesPath.empty());
    EXPECT_TRUE(stateFiles().empty());
    EXPECT_FALSE(controller->canUndo());
    expectWorkGoesOn();
}

TEST_F(Faults, ADiskThatIsFullAtARetouchKeepsTheRetouchAndTheHistory) {
    openPhoto();
    retouch(0);
    const std::vector<std::string> files = stateFiles();
    {
        const FullDisk full;
        retouch(1);
    }
    EXPECT_EQ(shown().pixel(20, 20), kSkin);
    EXPECT_EQ(shown().pixel(30, 55), kSkin);
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_EQ(stateFiles(), files);
    controller->OnUndo(nullptr);
    EXPECT_TRUE(samePixels(shown(), photo()));
    expectWorkGoesOn();
}

TEST_F(Faults, ADiskThatIsFullAtARetouchAfterAnUndoKeepsWhatCameBefore) {
    openPhoto();
    retouch(0);
    retouch(1);
    controller->OnUndo(nullptr);
    controller->OnUndo(nullptr);
    {
        const FullDisk full;
        retouch(1);
    }
    EXPECT_EQ(shown().pixel(30, 55), kSkin);
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_EQ(stateFiles().size(), 1U);
    EXPECT_FALSE(controller->canRedo());
    expectWorkGoesOn();
}

TEST_F(Faults, ADiskThatIsFullUnderAFullHistoryKeepsItsOldestState) {
    controller->numberOfStates = 1;
    openPhoto();
    retouch(0);
    const std::vector<std::filesystem::path> paths = controller->stateImagesPath;
    ASSERT_EQ(paths.size(), 2U);
    {
        const FullDisk full;
        retouch(1);
    }
    EXPECT_EQ(controller->stateImagesPath, paths);
    EXPECT_EQ(stateFiles().size(), 2U);
    controller->OnUndo(nullptr);
    EXPECT_TRUE(samePixels(shown(), photo()));
    expectWorkGoesOn();
}

TEST_F(Faults, ADiskThatIsFullAtAReloadShowsThePhoto) {
    openPhoto();
    retouch(0);
    {
        const FullDisk full;
        reload();
    }
    EXPECT_TRUE(samePixels(shown(), photo()));
    EXPECT_TRUE(stateFiles().empty());
    retouch(1);
    EXPECT_EQ(stateFiles().size(), 1U);
    EXPECT_TRUE(samePixels(decoded(controller->stateImagesPath.back()), controller->originalImage()));
}

TEST_F(Faults, AHistoryThatOutgrowsItsDiskKeepsWhatFitsAndEveryRetouchOnTheScreen) {
    constexpr std::uint64_t kRoomForFive = 5 * 20 * 1024; // in whole pages
    const SmallDisk disk(platform.states(), kRoomForFive);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root can make a small disk";
    openPhoto();
    for (int i = 0; i < 5; ++i) { // clicks beside the blemishes are states too
        clickPixel({12, 12 + 5 * i});
        queues.runAll();
    }
    retouch(0);
    retouch(1);
    EXPECT_EQ(stateFiles().size(), 5U);
    EXPECT_EQ(controller->stateImagesPath.size(), 5U);
    EXPECT_EQ(controller->currenState, 4);
    for (const auto& path : controller->stateImagesPath)
        decoded(path); // whole
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_FALSE(samePixels(shown(), decoded(currentPath()))); // the retouches are not in it
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), shown()));

    controller->OnUndo(nullptr);
    EXPECT_TRUE(samePixels(shown(), decoded(currentPath())));
    expectWorkGoesOn(); // in the room of the states that were undone
    controller->windowWillClose();
    EXPECT_TRUE(stateFiles().empty());
}

// A full disk under the result.

TEST_F(Faults, ADiskThatIsFullAtTheSaveShowsTheFailureAndChangesNothing) {
    openPhoto();
    retouch(0);
    retouch(1);
    controller->OnUndo(nullptr);
    selectEffect(3);
    expectUntouchedBy([this] {
        const FullDisk full;
        saveExpecting(target(), kSaveFailure);
    });
    EXPECT_FALSE(std::filesystem::exists(target()));
    expectNothingTemporaryIn(platform.photos());
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), shown()));
}

TEST_F(Faults, ASmallDiskThatIsFullAtTheSaveIsLeftAsItWas) {
    const std::filesystem::path folder = target("stick");
    std::filesystem::create_directory(folder);
    const SmallDisk disk(folder, 16 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root can make a small disk";
    openPhoto();
    retouch(0);
    saveExpecting(folder / "saved.bmp", kSaveFailure);
    EXPECT_TRUE(filesIn(folder).empty());
    expectWorkGoesOn();
}

TEST_F(Faults, ADiskWithoutRoomForTheMetadataKeepsThePicture) {
    const std::string artist(60'000, 'A');
    const std::filesystem::path source = makePhoto();
    writeFile(source, withExif(contentsOf(source), 1, artist));
    openThroughPanel(source);
    retouch(0);
    {
        const FullDisk full(20'000); // enough for the pixels
        saveExpecting(target("saved.png"), kSaveSuccess);
    }
    EXPECT_TRUE(samePixels(decoded(target("saved.png")), shown()));
    EXPECT_EQ(contentsOf(target("saved.png")).find(artist), std::string::npos);
    expectNothingTemporaryIn(platform.photos());
    saveExpecting(target("saved.png"), kSaveSuccess);
    EXPECT_NE(contentsOf(target("saved.png")).find(artist), std::string::npos);
}

// Files that are taken away, or made into something else.

TEST_F(Faults, AHistorysFolderThatIsRemovedCostsTheHistoryAlone) {
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

TEST_F(Faults, AStateThatBecameSomethingElseThanAPictureIsNotWaitedFor) {
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
        expectUntouchedBy([this] { controller->OnUndo(nullptr); });
    }
}

TEST_F(Faults, ASourceThatBecameSomethingElseThanAPictureCannotBeReloadedAndCanBeSavedFrom) {
    openPhoto();
    retouch(0);
    const std::filesystem::path source = controller->originalImagePath;
    std::filesystem::remove(source);
    ASSERT_EQ(::mkfifo(source.c_str(), 0600), 0);
    for (const char* const name : {"pipe", "device"}) {
        SCOPED_TRACE(name);
        expectUntouchedBy([this] {
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

TEST_F(Faults, AStateOpenedAsAPhotoIsShownAndGoesWithItsHistory) {
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

// Targets that are no usual files.

TEST_F(Faults, AFolderAsTheTargetIsLeftAloneWithWhatIsInIt) {
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
    expectWorkGoesOn();
}

TEST_F(Faults, ALinkAsTheTargetIsReplacedAndWhatItNamesIsLeftAlone) {
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

TEST_F(Faults, ANamedPipeAsTheTargetIsReplacedWithoutWaiting) {
    openPhoto();
    ASSERT_EQ(::mkfifo(target().c_str(), 0600), 0);
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), photo()));
}

TEST_F(Faults, ANameThatIsTooLongShowsTheFailure) {
    openPhoto();
    expectUntouchedBy([this] { saveExpecting(target(std::string(300, 'n') + ".bmp"), kSaveFailure); });
    expectNothingTemporaryIn(platform.photos());
}

TEST_F(Faults, AFileOfAnotherUserInASharedFolderIsLeftAlone) {
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
