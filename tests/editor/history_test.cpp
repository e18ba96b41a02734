// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/history_fixture.h"

#include <cmath>
#include <limits>

namespace complexion {

namespace {

class NewController : public EditHistory {
protected:
    void SetUp() override {}
};

TEST_F(NewController, HasNoHistoryAndNoPhoto) {
    EXPECT_TRUE(controller->stateImagesPath.empty());
    EXPECT_EQ(controller->numberOfStates, 50);
    EXPECT_EQ(controller->currenState, -1);
    EXPECT_EQ(controller->originalImage().size(), (PointSize{0, 0}));
    EXPECT_EQ(controller->originalImageName, "");
    EXPECT_EQ(controller->originalImagePath, "");
    EXPECT_EQ(controller->originalImageExtension, "");
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_FALSE(controller->hasImage());
    EXPECT_FALSE(controller->canUndo());
    EXPECT_FALSE(controller->canRedo());
}

TEST_F(NewController, HasNoOutlets) {
    const ViewController bare(root.get(), dialogs, platform, queues);
    EXPECT_EQ(bare.view, root.get());
    EXPECT_TRUE(bare.imageView.isNull());
    EXPECT_TRUE(bare.boxHint.isNull());
    EXPECT_TRUE(bare.boxEditSettings.isNull());
    EXPECT_TRUE(bare.comboEffect.isNull());
    EXPECT_TRUE(bare.stepperEditAreaSize.isNull());
}

TEST_F(EditHistory, StateImagesAreNamedByMillisecondAndLowerCaseExtension) {
    platform.wallClock = 1479282091.234;
    openSmallPhoto("Portrait.PNG");
    EXPECT_EQ(controller->originalImageExtension, "PNG");
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(controller->stateImagesPath[0], platform.states() / "stateImage1479282091234.png");
    EXPECT_TRUE(contentsOf(controller->stateImagesPath[0]).starts_with("\x89PNG"));
}

TEST_F(EditHistory, AStateImagesMillisecondsAreTruncated) {
    platform.wallClock = 1479282091.2349;
    controller->originalImageExtension = "jpg";
    EXPECT_EQ(controller->MakeStateImagePath().filename(), "stateImage1479282091234.jpg");
    platform.wallClock = -0.0019;
    EXPECT_EQ(controller->MakeStateImagePath().filename(), "stateImage-1.jpg");
}

TEST_F(EditHistory, WithoutAnExtensionAStateImagesNameEndsInABareDot) {
    platform.wallClock = 12;
    EXPECT_EQ(controller->MakeStateImagePath().filename(), "stateImage12000.");
}

TEST_F(EditHistory, ATimeThatOverflowsIsFatal) {
    platform.wallClock = 1e300;
    EXPECT_DEATH(controller->MakeStateImagePath(), "");
    platform.wallClock = -1e300;
    EXPECT_DEATH(controller->MakeStateImagePath(), "");
    platform.wallClock = std::numeric_limits<double>::quiet_NaN();
    EXPECT_DEATH(controller->MakeStateImagePath(), "");
}

TEST_F(EditHistory, ALoadedPhotoIsStateZero) {
    openSmallPhoto();
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(controller->currenState, 0);
    expectFilesMatchHistory();
    EXPECT_TRUE(samePixels(decoded(currentPath()), controller->originalImage()));
}

TEST_F(EditHistory, EachStateFileHasTheImageOfItsStep) {
    openSmallPhoto();
    change(3);
    EXPECT_TRUE(samePixels(decoded(controller->stateImagesPath.at(0)), filled({4, 3}, kSkin)));
    EXPECT_TRUE(samePixels(decoded(controller->stateImagesPath.at(1)), filled({4, 3}, grey(1))));
    EXPECT_TRUE(samePixels(decoded(controller->stateImagesPath.at(2)), filled({4, 3}, grey(2))));
    EXPECT_TRUE(samePixels(decoded(controller->stateImagesPath.at(3)), filled({4, 3}, grey(3))));
}

TEST_F(EditHistory, GrowsToOneStateMoreThanItsBoundAndThenDropsTheOldest) {
    openSmallPhoto();
    change(49);
    EXPECT_EQ(count(), 50U);
    EXPECT_EQ(controller->currenState, 49);
    change(1);
    EXPECT_EQ(count(), 51U);
    EXPECT_EQ(controller->currenState, 50);
    expectFilesMatchHistory();

    for (int more = 0; more < 3; ++more) {
        const std::vector<std::filesystem::path> before = controller->stateImagesPath;
        change(1);
        EXPECT_EQ(count(), 51U);
        EXPECT_EQ(controller->currenState, 50);
        EXPECT_FALSE(std::filesystem::exists(before.front()));
        EXPECT_TRUE(std::equal(before.begin() + 1, before.end(), controller->stateImagesPath.begin()));
        expectFilesMatchHistory();
        EXPECT_TRUE(samePixels(decoded(currentPath()), controller->originalImage()));
    }
}

TEST_F(EditHistory, TheBoundAppliesToThePositionNotToTheLength) {
    controller->numberOfStates = 3;
    openSmallPhoto();
    change(5);
    EXPECT_EQ(count(), 4U);
    EXPECT_EQ(controller->currenState, 3);
    controller->OnUndo(nullptr);
    change(1);
    EXPECT_EQ(count(), 4U);
    EXPECT_EQ(controller->currenState, 3);
    change(1);
    EXPECT_EQ(count(), 4U);
    expectFilesMatchHistory();
}

TEST_F(EditHistory, PushAfterUndoForgetsRedoLastStateFirst) {
    openSmallPhoto();
    change(5);
    controller->currenState = 2;
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    FolderWatch watch(platform.states());

    change(1);

    EXPECT_EQ(count(), 4U);
    EXPECT_EQ(controller->currenState, 3);
    EXPECT_THAT(watch.events(),
                testing::ElementsAre("-" + before[5].filename().string(), "-" + before[4].filename().string(),
                                     "-" + before[3].filename().string(),
                                     "+" + currentPath().filename().string()));
    expectFilesMatchHistory();
}

TEST_F(EditHistory, AFullHistoryDropsItsOldestStateOnlyAfterWritingTheNewOne) {
    controller->numberOfStates = 2;
    openSmallPhoto();
    change(2);
    const std::string oldest = controller->stateImagesPath.front().filename();
    FolderWatch watch(platform.states());
    change(1);
    EXPECT_THAT(watch.events(), testing::ElementsAre("+" + currentPath().filename().string(), "-" + oldest));
}

TEST_F(EditHistory, OpeningAPhotoDeletesTheOldStatesBeforeWritingTheFirst) {
    openSmallPhoto("first.png");
    change(2);
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    FolderWatch watch(platform.states());

    openSmallPhoto("second.png");

    EXPECT_EQ(count(), 1U);
    EXPECT_THAT(watch.events(),
                testing::ElementsAre("-" + before[0].filename().string(), "-" + before[1].filename().string(),
                                     "-" + before[2].filename().string(),
                                     "+" + currentPath().filename().string()));
    expectFilesMatchHistory();
}

TEST_F(EditHistory, PushingClearsTheBusyFlag) {
    openSmallPhoto();
    controller->imageProcessing = true;
    change(1);
    EXPECT_FALSE(controller->imageProcessing);

    controller->numberOfStates = 1;
    controller->imageProcessing = true;
    change(1); // the history is full
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(EditHistory, TwoStatesOfOneMillisecondShareAFileWithTheLaterImage) {
    platform.wallClockStep = 0;
    openSmallPhoto();
    change(1);
    ASSERT_EQ(count(), 2U);
    EXPECT_EQ(controller->stateImagesPath[0], controller->stateImagesPath[1]);
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_EQ(stateFiles().size(), 1U);
    EXPECT_TRUE(samePixels(decoded(currentPath()), filled({4, 3}, grey(1))));

    controller->OnUndo(nullptr);
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_TRUE(samePixels(controller->originalImage(), filled({4, 3}, grey(1))));
}

TEST_F(EditHistory, RemoveStateImagesDeletesTheFilesInOrderAndKeepsTheList) {
    openSmallPhoto();
    change(2);
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    FolderWatch watch(platform.states());

    EXPECT_EQ(printedBy([this] { controller->RemoveStateImages(); }), "");

    EXPECT_THAT(watch.events(),
                testing::ElementsAre("-" + before[0].filename().string(), "-" + before[1].filename().string(),
                                     "-" + before[2].filename().string()));
    EXPECT_EQ(controller->stateImagesPath, before);
    EXPECT_EQ(controller->currenState, 2);
    EXPECT_TRUE(stateFiles().empty());
}

TEST_F(EditHistory, RemovingOneStateImageKeepsTheList) {
    openSmallPhoto();
    change(1);
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    EXPECT_EQ(printedBy([&] { controller->RemoveStateImageWithImagePath(before[0]); }), "");
    EXPECT_FALSE(std::filesystem::exists(before[0]));
    EXPECT_TRUE(std::filesystem::exists(before[1]));
    EXPECT_EQ(controller->stateImagesPath, before);
    EXPECT_THAT(printedBy([&] { controller->RemoveStateImageWithImagePath(before[0]); }),
                testing::StartsWith("Remove failed: "));
}

TEST_F(EditHistory, EffectsAndSavingAreNotRecorded) {
    openThroughPanel(makePhoto());
    retouch(0);
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    selectEffect(5);
    save(platform.photos() / "portrait_retouched.png");
    EXPECT_EQ(controller->stateImagesPath, before);
    EXPECT_EQ(controller->currenState, 1);
    expectFilesMatchHistory();
}

TEST_F(EditHistory, QuittingDeletesNoStateByItself) {
    openSmallPhoto();
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    controller->OnAppQuit(nullptr);
    EXPECT_EQ(stateFiles().size(), 1U);
}

} // namespace

} // namespace complexion
