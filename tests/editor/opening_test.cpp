// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

#include <fstream>

namespace complexion {

namespace {

class Opening : public EditorTest {
protected:
    Notification dropped(const std::filesystem::path& path) const {
        return {kDragPerformed, UserInfo{{kPathKey, path.string()}}};
    }

    std::filesystem::path undecodable(const std::string& name = "fake.png") const {
        const std::filesystem::path path = platform.photos() / name;
        writeFile(path, "this is no picture");
        return path;
    }

    /// What is true after any photo was opened for the first time or again.
    void expectFreshlyOpened(const std::filesystem::path& path, const Image& picture) {
        EXPECT_EQ(controller->originalImagePath, path);
        EXPECT_TRUE(samePixels(controller->originalImage(), picture));
        EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
        EXPECT_EQ(controller->comboEffect->currentIndex(), 0);
        EXPECT_EQ(imageView->frame(), (Frame{0, 0, kRootSize.width, kRootSize.height}));
        EXPECT_TRUE(controller->boxHint->isHidden());
        EXPECT_TRUE(controller->boxHelp->isHidden());
        EXPECT_EQ(controller->stateImagesPath.size(), 1U);
        EXPECT_EQ(controller->currenState, 0);
        EXPECT_EQ(stateFiles().size(), 1U);
        EXPECT_TRUE(samePixels(decoded(currentPath()), picture));
        EXPECT_TRUE(controller->hasImage());
        EXPECT_FALSE(controller->canUndo());
        EXPECT_FALSE(controller->canRedo());
    }

    /// A photo is open that has been worked on: retouched, stepped back, zoomed, with an effect.
    void workOnAPhoto() {
        openThroughPanel(makePhoto("worked_on.png"));
        retouch(0);
        retouch(1);
        controller->OnUndo(nullptr);
        selectEffect(4);
        controller->OnZoomIn(nullptr);
        drag(-3, 2);
    }
};

TEST_F(Opening, TheFirstPhotoIsChosenWithoutAQuestion) {
    const std::filesystem::path path = makePhoto();
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, AnotherPhotoIsChosenAfterAQuestion) {
    workOnAPhoto();
    const Image other = filled({40, 30}, grey(90));
    const std::filesystem::path path = makePhoto("other.png", other);
    dialogs.expectQuestion(kSelectQuestion, kFirstButton);
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
    expectFreshlyOpened(path, other);
}

TEST_F(Opening, NoKeepsTheOpenPhotoAndShowsNoPanel) {
    workOnAPhoto();
    expectUntouchedBy([this] {
        dialogs.expectQuestion(kSelectQuestion, kSecondButton);
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AnyAnswerButNoCountsAsYes) {
    workOnAPhoto();
    const std::filesystem::path path = makePhoto("other.png");
    dialogs.expectQuestion(kSelectQuestion, 1002);
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
    EXPECT_EQ(controller->originalImagePath, path);
}

TEST_F(Opening, ACancelledPanelChangesNothing) {
    workOnAPhoto();
    expectUntouchedBy([this] {
        dialogs.expectQuestion(kSelectQuestion, kFirstButton);
        dialogs.expectOpenPanel(cancelled());
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, ACancelledFirstPanelChangesNothing) {
    expectUntouchedBy([this] {
        dialogs.expectOpenPanel(cancelled());
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AChoiceWithoutAPathShowsTheLoadFailure) {
    workOnAPhoto();
    expectUntouchedBy([this] {
        dialogs.expectQuestion(kSelectQuestion, kFirstButton);
        dialogs.expectOpenPanel({.confirmed = true, .url = std::nullopt});
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AnUndecodableChoiceShowsTheLoadFailureAndLeavesEverything) {
    workOnAPhoto();
    const std::filesystem::path path = undecodable();
    expectUntouchedBy([&] {
        dialogs.expectQuestion(kSelectQuestion, kFirstButton);
        dialogs.expectOpenPanel(chosen(path));
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AnUndecodableFirstChoiceLeavesTheEmptyWindow) {
    const std::filesystem::path path = undecodable();
    expectUntouchedBy([&] {
        dialogs.expectOpenPanel(chosen(path));
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnSelectImage(nullptr);
    });
    EXPECT_FALSE(controller->boxHint->isHidden());
    EXPECT_FALSE(controller->boxHelp->isHidden());
    EXPECT_FALSE(controller->hasImage());
}

TEST_F(Opening, WhatIsNoFileOfPixelsShowsTheLoadFailure) {
    const std::string whole = contentsOf(makePhoto());
    writeFile(platform.photos() / "empty.png", "");
    writeFile(platform.photos() / "header_only.png", whole.substr(0, 20));
    std::filesystem::create_directory(platform.photos() / "folder.png");
    for (const char* name : {"empty.png", "header_only.png", "folder.png", "missing.png"}) {
        SCOPED_TRACE(name);
        expectUntouchedBy([&] {
            dialogs.expectOpenPanel(chosen(platform.photos() / name));
            dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
            controller->OnSelectImage(nullptr);
        });
    }
}

TEST_F(Opening, TheSourcesNameIsSplitAtItsLastDotAndKeepsItsCase) {
    const std::filesystem::path path = makePhoto("Portrait.final.JPG");
    openThroughPanel(path);
    EXPECT_EQ(controller->originalImageName, "Portrait.final");
    EXPECT_EQ(controller->originalImageExtension, "JPG");
    EXPECT_EQ(controller->originalImagePath, path);
    EXPECT_EQ(currentPath().extension(), ".jpg");
    EXPECT_TRUE(contentsOf(currentPath()).starts_with("\xFF\xD8\xFF"));
}

TEST_F(Opening, AllSevenTypesAreOpenedAndTheirStatesAreOfTheSameType) {
    for (const std::string_view type : ImageTools::kAcceptedTypes) {
        SCOPED_TRACE(type);
        const std::filesystem::path path = makePhoto("photo." + std::string(type));
        openThroughPanel(path);
        EXPECT_EQ(controller->originalImagePath, path);
        EXPECT_EQ(controller->originalImageExtension, type);
        EXPECT_EQ(currentPath().extension(), "." + std::string(type));
        EXPECT_TRUE(nearlySamePixels(decoded(currentPath()), photo(), 12));
    }
}

TEST_F(Opening, APhotoWithoutAnExtensionIsShownButHasNoHistory) {
    const std::filesystem::path path = platform.photos() / "portrait";
    writeFile(path, contentsOf(makePhoto()));
    openThroughPanel(path);
    EXPECT_EQ(controller->originalImageName, "portrait");
    EXPECT_EQ(controller->originalImageExtension, "");
    EXPECT_TRUE(samePixels(shown(), photo()));
    EXPECT_TRUE(controller->stateImagesPath.empty());
    EXPECT_EQ(controller->currenState, -1);
    EXPECT_TRUE(stateFiles().empty());
}

TEST_F(Opening, AHiddenFilesNameIsNoExtension) {
    const std::filesystem::path path = platform.photos() / ".png";
    writeFile(path, contentsOf(makePhoto()));
    openThroughPanel(path);
    EXPECT_EQ(controller->originalImageName, ".png");
    EXPECT_EQ(controller->originalImageExtension, "");
}

TEST_F(Opening, APhotoOfAnotherDensityHasOnePointForEachPixel) {
    // A JFIF header that states 300 dots per inch.
    std::string file = contentsOf(makePhoto("dense.jpg"));
    ASSERT_EQ(file.substr(6, 4), "JFIF");
    file[13] = 1;
    file.replace(14, 4, std::string("\x01\x2C\x01\x2C", 4));
    const std::filesystem::path path = platform.photos() / "dense.jpg";
    writeFile(path, file);
    ASSERT_NEAR(decoded(path).size().width, 80.0 * 72 / 300, 1e-9);

    openThroughPanel(path);

    EXPECT_EQ(controller->originalImage().size(), (PointSize{80, 60}));
    EXPECT_EQ(controller->originalImage().pixelSize(), kPhotoSize);
    EXPECT_EQ(decoded(currentPath()).size(), (PointSize{80, 60}));
}

TEST_F(Opening, AnotherPhotoLeavesNoFileOfTheFirst) {
    openThroughPanel(makePhoto("first.png"));
    retouch(0);
    retouch(1);
    const std::vector<std::filesystem::path> first = controller->stateImagesPath;
    ASSERT_EQ(first.size(), 3U);
    openThroughPanel(makePhoto("second.png"));
    for (const auto& path : first)
        EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_EQ(stateFiles().size(), 1U);
}

TEST_F(Opening, AnUnwrittenFirstStateIsSilent) {
    platform.loseTemporaryDirectory();
    openThroughPanel(makePhoto());
    EXPECT_TRUE(samePixels(shown(), photo()));
    EXPECT_TRUE(controller->stateImagesPath.empty());
    EXPECT_EQ(controller->currenState, -1);
}

// Drops.

TEST_F(Opening, ADroppedPhotoIsLoadedWithoutAQuestionOfTheEditor) {
    const std::filesystem::path path = makePhoto();
    controller->DragPerformed(dropped(path));
    expectFreshlyOpened(path, photo());

    workOnAPhoto();
    const Image other = filled({40, 30}, grey(90));
    const std::filesystem::path second = makePhoto("second.png", other);
    controller->DragPerformed(dropped(second));
    expectFreshlyOpened(second, other);
}

TEST_F(Opening, APhotoDroppedOnTheViewReachesTheEditorBeforeTheDropEnds) {
    const std::filesystem::path path = makePhoto();
    EXPECT_TRUE(drop(path));
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, ADropOverAnOpenPhotoAsksOnceOnly) {
    openThroughPanel(makePhoto("first.png"));
    const int before = dialogs.shown();
    const std::filesystem::path path = makePhoto("second.png");
    EXPECT_TRUE(drop(path));
    EXPECT_EQ(dialogs.shown(), before + 1);
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, AnUndecodableDropIsRefusedSilentlyAndLeavesEverything) {
    workOnAPhoto();
    const std::filesystem::path path = undecodable();
    expectUntouchedBy([&] { EXPECT_FALSE(drop(path)); });
}

TEST_F(Opening, AFileThatBecomesUndecodableAfterItsDropShowsTheLoadFailure) {
    workOnAPhoto();
    const std::filesystem::path path = undecodable();
    expectUntouchedBy([&] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->DragPerformed(dropped(path));
    });
}

TEST_F(Opening, ANotificationWithoutAPathShowsTheLoadFailure) {
    workOnAPhoto();
    expectUntouchedBy([this] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->DragPerformed({kDragPerformed, UserInfo{{"file", "photo.png"}}});
    });
}

TEST_F(Opening, ANotificationWithoutUserInformationIsFatal) {
    EXPECT_DEATH(controller->DragPerformed({kDragPerformed, std::nullopt}), "");
}

TEST_F(Opening, ADropIsNotHeardAfterTheControllerIsGone) {
    const std::filesystem::path path = makePhoto();
    controller.reset();
    NotificationCenter::defaultCenter().post(dropped(path));
    EXPECT_FALSE(imageView->image().has_value());
}

TEST_F(Opening, AnyBytesInAPathSurvive) {
    const std::filesystem::path path = platform.photos() / "caf\xE9.png"; // Latin-1, no UTF-8
    writeFile(path, contentsOf(makePhoto()));
    controller->DragPerformed(dropped(path));
    expectFreshlyOpened(path, photo());
    EXPECT_EQ(controller->originalImageName, "caf\xE9");
    EXPECT_EQ(controller->originalImageExtension, "png");
}

// "Open with".

TEST_F(Opening, AFileHandedOverByTheSystemIsLoaded) {
    const std::filesystem::path path = makePhoto();
    controller->OpenFile(path);
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, AnUndecodableFileHandedOverByTheSystemShowsTheLoadFailure) {
    const std::filesystem::path path = undecodable();
    expectUntouchedBy([&] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OpenFile(path);
    });
}

// Reload.

TEST_F(Opening, ReloadWithoutAPhotoDoesNothing) {
    expectUntouchedBy([this] { controller->OnResetImage(nullptr); });
}

TEST_F(Opening, ReloadAlwaysAsksAndNoChangesNothing) {
    openThroughPanel(makePhoto());
    expectUntouchedBy([this] {
        dialogs.expectQuestion(kReloadQuestion, kSecondButton);
        controller->OnResetImage(nullptr);
    });
}

TEST_F(Opening, ReloadThrowsAllEditsAway) {
    workOnAPhoto();
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
    workOnAPhoto();
    controller->boxHint->show();
    const Everything before = everything();
    reload();
    const Everything after = everything();
    EXPECT_NE(after.frame, (Frame{0, 0, kRootSize.width, kRootSize.height}));
    EXPECT_EQ(after.frame, before.frame);
    EXPECT_FALSE(after.hintHidden);
    EXPECT_TRUE(after.helpHidden);
    EXPECT_EQ(after.name, before.name);
    EXPECT_EQ(after.path, before.path);
    EXPECT_EQ(after.extension, before.extension);
}

TEST_F(Opening, ReloadReadsTheFileAsItIsNow) {
    openThroughPanel(makePhoto());
    const Image changed = filled({30, 30}, grey(77));
    makePhoto("portrait.png", changed);
    reload();
    EXPECT_TRUE(samePixels(controller->originalImage(), changed));
}

TEST_F(Opening, AReloadOfAFileThatIsNoPictureAnyMoreShowsTheLoadFailureAndLeavesEverything) {
    workOnAPhoto();
    undecodable("worked_on.png");
    expectUntouchedBy([this] {
        dialogs.expectQuestion(kReloadQuestion, kFirstButton);
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnResetImage(nullptr);
    });
}

TEST_F(Opening, AReloadOfADeletedFileShowsTheLoadFailureAndLeavesEverything) {
    workOnAPhoto();
    std::filesystem::remove(controller->originalImagePath);
    expectUntouchedBy([this] {
        dialogs.expectQuestion(kReloadQuestion, kFirstButton);
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnResetImage(nullptr);
    });
}

TEST_F(Opening, TheSettingsOfTheRepairOutliveAnotherPhoto) {
    openThroughPanel(makePhoto("first.png"));
    controller->stepperEditAreaSize->setIntegerValue(33);
    controller->sliderThreshold->setFloatValue(44.5F);
    controller->checkAutodetectColor->setChecked(false);
    controller->colorWellCustomColor->setColor(QColor(1, 2, 3));
    openThroughPanel(makePhoto("second.png"));
    EXPECT_EQ(controller->stepperEditAreaSize->integerValue(), 33);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 44.5F);
    EXPECT_FALSE(controller->checkAutodetectColor->isChecked());
    EXPECT_EQ(controller->colorWellCustomColor->color(), QColor(1, 2, 3));
}

TEST_F(Opening, AMissingControlIsFatal) {
    const std::filesystem::path path = makePhoto();
    delete controller->comboEffect.data();
    EXPECT_DEATH(controller->DragPerformed(dropped(path)), "gone");
}

} // namespace

} // namespace complexion
