// SPDX-License-Identifier: GPL-3.0-or-later

// A full disk while the editor writes states and results.
#include "tests/editor/faults_fixture.h"
#include "tests/fakes/full_disk.h"

namespace complexion {

namespace {

// The history on a full disk.

TEST_F(Faults, AFullDiskAtOpeningDisablesOnlyTheHistory) {
    const std::filesystem::path path = makePhoto("portrait.bmp");
    {
        const FullDisk full;
        openThroughPanel(path);
    }
    EXPECT_TRUE(samePixels(shown(), photo()));
    EXPECT_TRUE(controller->stateImagesPath.empty());
    EXPECT_TRUE(stateFiles().empty());
    EXPECT_FALSE(controller->canUndo());
    expectEditorWorks();
}

TEST_F(Faults, AFullDiskAtARepairKeepsTheRepairAndTheHistory) {
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
    expectEditorWorks();
}

TEST_F(Faults, AFullDiskAtARepairAfterAnUndoKeepsTheEarlierStates) {
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
    expectEditorWorks();
}

TEST_F(Faults, AFullDiskKeepsTheOldestStateOfAFullHistory) {
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
    expectEditorWorks();
}

TEST_F(Faults, AFullDiskAtReloadingShowsThePhoto) {
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

TEST_F(Faults, AHistoryThatOutgrowsItsDiskKeepsTheStatesThatFit) {
    constexpr std::uint64_t kRoomForFive = 5 * 20 * 1024; // a state takes 20 KiB, in whole pages
    const SmallDisk disk(platform.states(), kRoomForFive);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root can make a small disk";
    openPhoto();
    for (int i = 0; i < 5; ++i) { // clicks beside the blemishes create states, too
        clickPixel({12, 12 + 5 * i});
        queues.runAll();
    }
    retouch(0);
    retouch(1);
    EXPECT_EQ(stateFiles().size(), 5U);
    EXPECT_EQ(controller->stateImagesPath.size(), 5U);
    EXPECT_EQ(controller->currenState, 4);
    for (const auto& path : controller->stateImagesPath)
        decoded(path); // must not be torn
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_FALSE(samePixels(shown(), decoded(currentPath()))); // without the last repairs
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), shown()));

    controller->OnUndo(nullptr);
    EXPECT_TRUE(samePixels(shown(), decoded(currentPath())));
    expectEditorWorks(); // dropping the undone states makes room
    controller->windowWillClose();
    EXPECT_TRUE(stateFiles().empty());
}

// The result on a full disk.

TEST_F(Faults, AFullDiskAtSavingShowsTheFailureAndChangesNothing) {
    openPhoto();
    retouch(0);
    retouch(1);
    controller->OnUndo(nullptr);
    selectEffect(3);
    expectUnchangedBy([this] {
        const FullDisk full;
        saveExpecting(target(), kSaveFailure);
    });
    EXPECT_FALSE(std::filesystem::exists(target()));
    expectNoTemporaryFilesIn(platform.photos());
    saveExpecting(target(), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(target()), shown()));
}

TEST_F(Faults, AFailedSaveLeavesNothingOnASmallDisk) {
    const std::filesystem::path folder = target("stick");
    std::filesystem::create_directory(folder);
    const SmallDisk disk(folder, 16 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root can make a small disk";
    openPhoto();
    retouch(0);
    saveExpecting(folder / "saved.bmp", kSaveFailure);
    EXPECT_TRUE(filesIn(folder).empty());
    expectEditorWorks();
}

TEST_F(Faults, ADiskWithoutRoomForTheMetadataStillGetsThePicture) {
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
    expectNoTemporaryFilesIn(platform.photos());
    saveExpecting(target("saved.png"), kSaveSuccess);
    EXPECT_NE(contentsOf(target("saved.png")).find(artist), std::string::npos);
}

} // namespace

} // namespace complexion
