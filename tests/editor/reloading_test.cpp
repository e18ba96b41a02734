// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/opening_fixture.h"

namespace complexion {

namespace {

TEST_F(Opening, ReloadWithoutAPhotoDoesNothing) {
    expectUnchangedBy([this] { controller->OnResetImage(nullptr); });
}

TEST_F(Opening, ReloadAlwaysAsksAndAnsweringNoChangesNothing) {
    openThroughPanel(makePhoto());
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kReloadQuestion, kSecondButton);
        controller->OnResetImage(nullptr);
    });
}

TEST_F(Opening, ReloadDiscardsAllEdits) {
    editPhoto();
    const std::vector<std::filesystem::path> before = controller->stateImagesPath;
    reload();
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_EQ(controller->comboEffect->currentIndex(), 0);
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_EQ(stateFiles().size(), 1U);
    EXPECT_TRUE(samePixels(decoded(currentPath()), photo()));
    for (const auto& path : before)
        EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Opening, ReloadKeepsZoomPanBoxesAndSource) {
    editPhoto();
    controller->boxHint->show();
    const ObservableState before = observableState();
    reload();
    const ObservableState after = observableState();
    EXPECT_NE(after.frame, (Frame{0, 0, kRootSize.width, kRootSize.height}));
    EXPECT_EQ(after.frame, before.frame);
    EXPECT_FALSE(after.hintHidden);
    EXPECT_TRUE(after.helpHidden);
    EXPECT_EQ(after.name, before.name);
    EXPECT_EQ(after.path, before.path);
    EXPECT_EQ(after.extension, before.extension);
}

TEST_F(Opening, ReloadReadsTheCurrentFile) {
    openThroughPanel(makePhoto());
    const Image changed = filled({30, 30}, grey(77));
    makePhoto("portrait.png", changed);
    reload();
    EXPECT_TRUE(samePixels(controller->originalImage(), changed));
}

TEST_F(Opening, ReloadingAFileThatIsNoLongerAPictureShowsTheLoadFailureAndChangesNothing) {
    editPhoto();
    undecodable("worked_on.png");
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kReloadQuestion, kFirstButton);
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnResetImage(nullptr);
    });
}

TEST_F(Opening, ReloadingADeletedFileShowsTheLoadFailureAndChangesNothing) {
    editPhoto();
    std::filesystem::remove(controller->originalImagePath);
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kReloadQuestion, kFirstButton);
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnResetImage(nullptr);
    });
}

} // namespace

} // namespace complexion
