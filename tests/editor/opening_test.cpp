// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/opening_fixture.h"

namespace complexion {

namespace {

TEST_F(Opening, TheFirstPhotoIsChosenWithoutAQuestion) {
    const std::filesystem::path path = makePhoto();
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, AnotherPhotoIsChosenAfterAQuestion) {
    editPhoto();
    const Image other = filled({40, 30}, grey(90));
    const std::filesystem::path path = makePhoto("other.png", other);
    dialogs.expectQuestion(kSelectQuestion, kFirstButton);
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
    expectFreshlyOpened(path, other);
}

TEST_F(Opening, AnsweringNoKeepsThePhotoAndShowsNoPanel) {
    editPhoto();
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kSelectQuestion, kSecondButton);
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AnyAnswerExceptNoCountsAsYes) {
    editPhoto();
    const std::filesystem::path path = makePhoto("other.png");
    dialogs.expectQuestion(kSelectQuestion, 1002);
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
    EXPECT_EQ(controller->originalImagePath, path);
}

TEST_F(Opening, ACancelledPanelChangesNothing) {
    editPhoto();
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kSelectQuestion, kFirstButton);
        dialogs.expectOpenPanel(cancelled());
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, ACancelledFirstPanelChangesNothing) {
    expectUnchangedBy([this] {
        dialogs.expectOpenPanel(cancelled());
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AChoiceWithoutAPathShowsTheLoadFailure) {
    editPhoto();
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kSelectQuestion, kFirstButton);
        dialogs.expectOpenPanel({.confirmed = true, .url = std::nullopt});
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AnUndecodableChoiceShowsTheLoadFailureAndChangesNothing) {
    editPhoto();
    const std::filesystem::path path = undecodable();
    expectUnchangedBy([&] {
        dialogs.expectQuestion(kSelectQuestion, kFirstButton);
        dialogs.expectOpenPanel(chosen(path));
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnSelectImage(nullptr);
    });
}

TEST_F(Opening, AnUndecodableFirstChoiceKeepsTheEmptyWindow) {
    const std::filesystem::path path = undecodable();
    expectUnchangedBy([&] {
        dialogs.expectOpenPanel(chosen(path));
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OnSelectImage(nullptr);
    });
    EXPECT_FALSE(controller->boxHint->isHidden());
    EXPECT_FALSE(controller->boxHelp->isHidden());
    EXPECT_FALSE(controller->hasImage());
}

TEST_F(Opening, InvalidFilesShowTheLoadFailure) {
    const std::string whole = contentsOf(makePhoto());
    writeFile(platform.photos() / "empty.png", "");
    writeFile(platform.photos() / "header_only.png", whole.substr(0, 20));
    std::filesystem::create_directory(platform.photos() / "folder.png");
    for (const char* name : {"empty.png", "header_only.png", "folder.png", "missing.png"}) {
        SCOPED_TRACE(name);
        expectUnchangedBy([&] {
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

TEST_F(Opening, StatesHaveTheTypeOfThePhotoForAllSevenTypes) {
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

TEST_F(Opening, APhotoWithAnotherExtensionIsSavedInTheFormatOfItsContent) {
    struct Case {
        std::string name;
        std::string content; // its format
        std::string stem;
        std::string extension; // of the name, in its case
    };
    for (const auto& [name, content, stem, extension] :
         std::vector<Case>{{"portrait.jfif", "jpg", "portrait", "jfif"},
                           {"portrait.JPE", "jpg", "portrait", "JPE"},
                           {"portrait.mpo", "jpg", "portrait", "mpo"},
                           {"portrait.dib", "bmp", "portrait", "dib"},
                           {"portrait", "png", "portrait", ""},
                           {".png", "gif", ".png", ""},
                           {"portrait.webp", "tiff", "portrait", "webp"}}) {
        SCOPED_TRACE(name);
        const std::filesystem::path path = platform.photos() / name;
        std::filesystem::rename(makePhoto("made." + content), path);
        controller->OpenFile(path);
        EXPECT_EQ(controller->originalImageName, stem);
        EXPECT_EQ(controller->originalImageExtension, extension);
        EXPECT_EQ(controller->currenState, 0);
        EXPECT_EQ(currentPath().extension(), "." + content);
        retouch(0);
        EXPECT_TRUE(controller->canUndo());
        controller->OnUndo(nullptr);
        EXPECT_TRUE(nearlySamePixels(shown(), photo(), 12));

        const std::filesystem::path result = platform.photos() / (stem + "_retouched." + content);
        dialogs.expectSavePanel({{content}, result.filename()}, chosen(result));
        dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
        printedBy([this] { controller->OnSaveImage(nullptr); });
        EXPECT_TRUE(nearlySamePixels(decoded(result), shown(), 12));
        EXPECT_TRUE(std::filesystem::exists(path));
    }
}

TEST_F(Opening, ASourceWithoutAnExtensionCanBeReplacedByItsResult) {
    const std::filesystem::path path = platform.photos() / "portrait";
    std::filesystem::rename(makePhoto(), path);
    controller->OpenFile(path);
    retouch(0);
    dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"}, chosen(path));
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    printedBy([this] { controller->OnSaveImage(nullptr); });
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
}

TEST_F(Opening, ReloadingUpdatesTheFormatOfTheContent) {
    const std::filesystem::path path = platform.photos() / "portrait";
    std::filesystem::rename(makePhoto("made.png"), path);
    controller->OpenFile(path);
    EXPECT_EQ(currentPath().extension(), ".png");
    std::filesystem::rename(makePhoto("made.bmp"), path);
    reload();
    EXPECT_EQ(currentPath().extension(), ".bmp");
    openThroughPanel(makePhoto("next.png"));
    EXPECT_EQ(currentPath().extension(), ".png");
}

TEST_F(Opening, ThePhotosDamageIsReportedUntilTheNextPhoto) {
    const std::filesystem::path path = makePhoto("cut.bmp");
    const std::string whole = contentsOf(path);
    writeFile(path, whole.substr(0, whole.size() / 2));
    EXPECT_FALSE(controller->photoDamage());
    openThroughPanel(path);
    ASSERT_TRUE(controller->photoDamage());
    EXPECT_EQ(controller->photoDamage()->kind, ErrorKind::Damaged);
    writeFile(path, whole);
    reload();
    EXPECT_FALSE(controller->photoDamage());
    writeFile(path, whole.substr(0, whole.size() / 2));
    reload();
    EXPECT_TRUE(controller->photoDamage());
    openThroughPanel(makePhoto());
    EXPECT_FALSE(controller->photoDamage());
}

TEST_F(Opening, AHiddenFilesNameIsNotAnExtension) {
    const std::filesystem::path path = platform.photos() / ".png";
    writeFile(path, contentsOf(makePhoto()));
    openThroughPanel(path);
    EXPECT_EQ(controller->originalImageName, ".png");
    EXPECT_EQ(controller->originalImageExtension, "");
}

TEST_F(Opening, APhotoOfAnyDensityHasOnePointPerPixel) {
    // A JFIF header with 300 dots per inch.
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

TEST_F(Opening, OpeningAnotherPhotoDeletesTheStatesOfTheFirst) {
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

TEST_F(Opening, AnUnwritableFirstStateShowsNoMessage) {
    platform.removeTemporaryDirectory();
    openThroughPanel(makePhoto());
    EXPECT_TRUE(samePixels(shown(), photo()));
    EXPECT_TRUE(controller->stateImagesPath.empty());
    EXPECT_EQ(controller->currenState, -1);
}

TEST_F(Opening, OpeningAnotherPhotoKeepsTheSettings) {
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

} // namespace

} // namespace complexion
