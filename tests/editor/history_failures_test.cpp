// SPDX-License-Identifier: GPL-3.0-or-later

// State files that cannot be written or deleted.
#include "tests/editor/history_fixture.h"

namespace complexion {

namespace {

TEST_F(EditHistory, AnUnwritableStateIsLeftOutButTheUndoneStatesAreDropped) {
    openSmallPhoto();
    change(4);
    controller->currenState = 2;
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    platform.removeTemporaryDirectory();
    controller->imageProcessing = true;

    change(1);

    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_EQ(controller->currenState, 2);
    EXPECT_THAT(controller->stateImagesPath, testing::ElementsAre(before[0], before[1], before[2]));
    expectFilesMatchHistory();
    EXPECT_FALSE(controller->canRedo());
}

TEST_F(EditHistory, AFullHistoryKeepsAllItsStatesIfTheNewOneCannotBeWritten) {
    controller->numberOfStates = 3;
    openSmallPhoto();
    change(3);
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    platform.removeTemporaryDirectory();
    controller->imageProcessing = true;

    change(1);

    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_EQ(controller->currenState, 3);
    EXPECT_EQ(controller->stateImagesPath, before);
    expectFilesMatchHistory();
}

TEST_F(EditHistory, AnUnwritableStateShowsNoMessageAndKeepsTheChange) {
    openThroughPanel(makePhoto());
    platform.removeTemporaryDirectory();
    retouch(0);
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(EditHistory, AnUnwritableFirstStateLeavesTheListEmptyAndThePositionUnchanged) {
    platform.removeTemporaryDirectory();
    openSmallPhoto();
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(controller->currenState, -1);
    EXPECT_TRUE(controller->hasImage());

    platform.restoreTemporaryDirectory();
    change(1);
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(controller->currenState, 0);
    expectFilesMatchHistory();
}

TEST_F(EditHistory, AfterAnUnwritableFirstStateUndoAndRedoRespectTheList) {
    openSmallPhoto("first.png");
    change(3);
    platform.removeTemporaryDirectory();
    openSmallPhoto("second.png");
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(controller->currenState, 3); // outside the list

    expectUnchangedBy([this] {
        controller->OnUndo(nullptr);
        controller->OnRedo(nullptr);
    });
    EXPECT_FALSE(controller->canUndo());
    EXPECT_FALSE(controller->canRedo());

    platform.restoreTemporaryDirectory();
    change(1);
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(controller->currenState, 4);
    expectUnchangedBy([this] {
        controller->OnUndo(nullptr);
        controller->OnRedo(nullptr);
    });
}

TEST_F(EditHistory, AFullHistoryWithoutStatesIsFatal) {
    openSmallPhoto();
    controller->RemoveStateImages();
    controller->stateImagesPath.clear();
    controller->currenState = controller->numberOfStates;
    EXPECT_DEATH(controller->PushStateImage(), "empty history");
}

TEST_F(EditHistory, AMissingFileIsReportedAndTheOthersAreDeleted) {
    openSmallPhoto();
    change(2);
    std::filesystem::remove(controller->stateImagesPath[1]);

    const std::string printed = printedBy([this] { controller->RemoveStateImages(); });

    EXPECT_THAT(printed, testing::MatchesRegex("Remove failed: [^\n]+\n"));
    EXPECT_TRUE(stateFiles().empty());
}

TEST_F(EditHistory, AnotherPhotoIsOpenedEvenIfOldStatesCannotBeDeleted) {
    openSmallPhoto("first.png");
    change(2);
    for (const auto& path : controller->stateImagesPath)
        std::filesystem::remove(path);
    const std::string printed = printedBy([this] { openSmallPhoto("second.png"); });
    EXPECT_THAT(printed, testing::MatchesRegex("(Remove failed: [^\n]+\n)(Remove failed: [^\n]+\n)(Remove "
                                               "failed: [^\n]+\n)"));
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(controller->currenState, 0);
    expectFilesMatchHistory();
}

} // namespace

} // namespace complexion
