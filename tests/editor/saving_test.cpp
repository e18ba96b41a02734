// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/saving_fixture.h"
#include "tests/fakes/system_calls.h"

#include <cerrno>

namespace complexion {

namespace {

TEST_F(Saving, WithoutAPhotoThereIsNoDialog) {
    EXPECT_EQ(printedBy([this] { controller->OnSaveImage(nullptr); }), "");
    EXPECT_EQ(dialogs.shownCount(), 0);
}

TEST_F(Saving, ProposesTheSourcesNameWithALowerCaseExtension) {
    const std::vector<std::pair<std::string, SavePanel>> cases = {
        {"IMG_0042.JPG", {{"jpg"}, "IMG_0042_retouched.jpg"}},
        {"Portrait.TIFF", {{"tiff"}, "Portrait_retouched.tiff"}},
        {"a.b.jpeg", {{"jpeg"}, "a.b_retouched.jpeg"}},
        {"one.png", {{"png"}, "one_retouched.png"}},
        {"two.Gif", {{"gif"}, "two_retouched.gif"}},
        {"three.bmp", {{"bmp"}, "three_retouched.bmp"}},
        {"four.tif", {{"tif"}, "four_retouched.tif"}},
    };
    for (const auto& [name, panel] : cases) {
        SCOPED_TRACE(name);
        openThroughPanel(makePhoto(name));
        saveWith(panel, cancelled(), "");
    }
}

TEST_F(Saving, ACancelledPanelWritesAndPrintsNothing) {
    openThroughPanel(makePhoto());
    const std::vector<std::string> before = filesIn(platform.photos());
    expectUnchangedBy(
        [this] { EXPECT_EQ(saveWith({{"png"}, "portrait_retouched.png"}, cancelled(), ""), ""); });
    EXPECT_EQ(filesIn(platform.photos()), before);
}

TEST_F(Saving, AConfirmedPanelWithoutAPathIsFatal) {
    openThroughPanel(makePhoto());
    EXPECT_DEATH(
        {
            dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"},
                                    {.confirmed = true, .url = std::nullopt});
            controller->OnSaveImage(nullptr);
        },
        "");
}

TEST_F(Saving, ANewFileIsWrittenAndTheFailedRemovalPrinted) {
    openThroughPanel(makePhoto());
    retouch(0);
    const std::filesystem::path path = target("new.png");
    const std::string printed = saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_EQ(printed, "Remove failed: No such file or directory\n");
    EXPECT_TRUE(samePixels(decoded(path), shown()));
}

TEST_F(Saving, AllSevenTypesAreSavedInTheSourcesFormat) {
    const std::map<std::string_view, std::string> starts = {
        {"jpg", "\xFF\xD8\xFF"}, {"jpeg", "\xFF\xD8\xFF"}, {"png", "\x89PNG"}, {"tiff", "II"},
        {"tif", "II"},           {"gif", "GIF8"},          {"bmp", "BM"},
    };
    for (const std::string_view type : ImageTools::kAcceptedTypes) {
        SCOPED_TRACE(type);
        const std::string extension(type);
        openThroughPanel(makePhoto("portrait." + extension));
        retouch(1);
        const std::filesystem::path path = target("saved." + extension);
        saveWith({{extension}, "portrait_retouched." + extension}, chosen(path), kSaveSuccess);
        EXPECT_TRUE(contentsOf(path).starts_with(starts.at(type)));
        EXPECT_TRUE(nearlySamePixels(decoded(path), shown(), 12));
    }
}

TEST_F(Saving, ATiffIsWrittenForAnUpperCaseSource) {
    openThroughPanel(makePhoto("Portrait.TIFF"));
    const std::filesystem::path path = target("Portrait_retouched.tiff");
    saveWith({{"tiff"}, "Portrait_retouched.tiff"}, chosen(path), kSaveSuccess);
    EXPECT_TRUE(contentsOf(path).starts_with("II") || contentsOf(path).starts_with("MM"));
    EXPECT_TRUE(samePixels(decoded(path), photo()));
}

TEST_F(Saving, TheResultOfALosslessSourceDiffersOnlyInTheDisc) {
    openThroughPanel(makePhoto());
    retouch(1);
    const std::filesystem::path path = target("saved.png");
    save(path);
    const Image saved = decoded(path);
    const Image before = photo();
    for (int row = 0; row < kPhotoSize.height; ++row)
        for (int column = 0; column < kPhotoSize.width; ++column) {
            const int y = row - 30;
            const int x = column - 55;
            if (x * x + y * y >= 100) {
                ASSERT_EQ(saved.pixel(row, column), before.pixel(row, column)) << row << ", " << column;
            }
        }
    EXPECT_EQ(saved.pixel(30, 55), kSkin);
}

TEST_F(Saving, SavingChangesNothingInTheEditor) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    controller->OnUndo(nullptr);
    selectEffect(6);
    controller->OnZoomIn(nullptr);
    expectUnchangedBy([this] { save(target("saved.png")); });
    EXPECT_TRUE(controller->canRedo());
}

TEST_F(Saving, SavingTwiceToOnePathReplacesTheFirstFile) {
    openThroughPanel(makePhoto());
    const std::filesystem::path path = target("saved.png");
    save(path);
    EXPECT_TRUE(samePixels(decoded(path), photo()));
    retouch(0);
    const std::string printed = saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
    EXPECT_FALSE(samePixels(decoded(path), photo()));
}

TEST_F(Saving, TheFileHasTheEffectButTheWorkingImageDoesNot) {
    const Image coloured = painted(kPhotoSize, [](int row, int column) {
        return RGBA32(static_cast<std::uint8_t>(150 + row), static_cast<std::uint8_t>(100 + column), 90, 255);
    });
    openThroughPanel(makePhoto("coloured.png", coloured));
    selectEffect(5);
    const std::filesystem::path path = target("noir.png");
    save(path);
    const Image saved = decoded(path);
    EXPECT_TRUE(samePixels(saved, shown()));
    for (const RGBA32 pixel : pixelsOf(saved)) {
        ASSERT_EQ(pixel.red(), pixel.green());
        ASSERT_EQ(pixel.red(), pixel.blue());
    }
    EXPECT_TRUE(samePixels(controller->originalImage(), coloured));
}

TEST_F(Saving, DuringARepairTheShownImageIsSaved) {
    openThroughPanel(makePhoto());
    clickPixel(blemishes()[0]);
    queues.runBackground();
    ASSERT_TRUE(controller->imageProcessing);
    save(target("saved.png"));
    EXPECT_TRUE(samePixels(decoded(target("saved.png")), photo()));
    EXPECT_TRUE(controller->imageProcessing);
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
}

TEST_F(Saving, ARepairThatFinishesWhileThePanelIsOpenIsSaved) {
    openThroughPanel(makePhoto());
    clickPixel(blemishes()[0]);
    dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"}, chosen(target("saved.png")));
    dialogs.whileItIsShown([this] { queues.runAll(); });
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    printedBy([this] { controller->OnSaveImage(nullptr); });
    EXPECT_EQ(decoded(target("saved.png")).pixel(20, 20), kSkin);
}

TEST_F(Saving, ADeletedImageOrViewIsFatal) {
    openThroughPanel(makePhoto());
    EXPECT_DEATH(
        {
            imageView->setImage(std::nullopt);
            dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"}, chosen(target("saved.png")));
            controller->OnSaveImage(nullptr);
        },
        "gone");
    EXPECT_DEATH(
        {
            delete controller->imageView.data();
            dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"}, chosen(target("saved.png")));
            controller->OnSaveImage(nullptr);
        },
        "gone");
}

// Failures.

TEST_F(Saving, AFileThatCannotBeWrittenShowsTheFailure) {
    openThroughPanel(makePhoto());
    const std::filesystem::path path = platform.photos() / "nowhere" / "saved.png";
    const std::string printed = saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveFailure);
    EXPECT_THAT(printed, testing::MatchesRegex("Remove failed: [^\n]+\n"));
}

TEST_F(Saving, AFileThatCannotBeFlushedShowsTheFailure) {
    openThroughPanel(makePhoto());
    const FailingCalls failing(SystemCall::Fsync, EIO);
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(target("saved.png")), kSaveFailure);
    EXPECT_EQ(failing.failedCount(), 1);
}

TEST_F(Saving, InAReadOnlyFolderNothingIsDeletedAndTheFailureIsShown) {
    openThroughPanel(makePhoto());
    const std::filesystem::path folder = platform.photos() / "locked";
    std::filesystem::create_directory(folder);
    const std::filesystem::path path = folder / "saved.png";
    writeFile(path, "an earlier file");
    std::string printed;
    {
        const ReadOnly readOnly(folder);
        printed = saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveFailure);
    }
    EXPECT_THAT(printed, testing::MatchesRegex("Remove failed: [^\n]+\n"));
    EXPECT_EQ(contentsOf(path), "an earlier file");
    EXPECT_THAT(filesIn(folder), testing::ElementsAre("saved.png"));
}

TEST_F(Saving, AFailedSaveMovesTheEarlierFileToTheTrash) {
    openThroughPanel(makePhoto());
    controller->originalImageExtension = "webp"; // not supported
    const std::filesystem::path path = target("saved.webp");
    writeFile(path, "an earlier file");
    const std::string printed = saveWith({{"webp"}, "portrait_retouched.webp"}, chosen(path), kSaveFailure);
    EXPECT_EQ(printed, "");
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(contentsOf(platform.trash() / "files/saved.webp"), "an earlier file");
}

TEST_F(Saving, TheEarlierFileIsSetAsideAndThenDeleted) {
    openThroughPanel(makePhoto());
    save(target("saved.png"));
    FolderWatch watch(platform.photos());
    save(target("saved.png"));
    EXPECT_THAT(watch.events(), testing::ElementsAre("-saved.png", "+saved (replaced).png", "+saved.png",
                                                     "-saved (replaced).png"));
}

TEST_F(Saving, ASuccessfulSaveOverAFileLeavesNothingInTheTrash) {
    openThroughPanel(makePhoto());
    writeFile(target("saved.png"), "an earlier file");
    save(target("saved.png"));
    EXPECT_FALSE(std::filesystem::exists(platform.trash() / "files/saved.png"));
    EXPECT_FALSE(std::filesystem::exists(target("saved (replaced).png")));
}

TEST_F(Saving, AnImageThatTheFormatCannotHoldCountsAsSavedWithoutAFile) {
    // A PNG file with a JPEG extension, one pixel wider than the JPEG library can write.
    const std::filesystem::path source = target("wide.jpg");
    ASSERT_TRUE(ImageTools::SaveImage(filled({65501, 2}, kSkin), source, "png"));
    openThroughPanel(source);
    const std::filesystem::path path = target("saved.jpg");
    saveWith({{"jpg"}, "wide_retouched.jpg"}, chosen(path), kSaveSuccess);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Saving, OnlyASaveThatWroteNoFileShowsANotice) {
    const std::filesystem::path source = target("wide.jpg");
    ASSERT_TRUE(ImageTools::SaveImage(filled({65501, 2}, kSkin), source, "png"));
    openThroughPanel(source);
    int notices = 0;
    QObject::connect(controller.get(), &ViewController::noticed, controller.get(), [&] { ++notices; });
    saveWith({{"jpg"}, "wide_retouched.jpg"}, chosen(target("saved.jpg")), kSaveSuccess);
    EXPECT_EQ(notices, 1);
    openThroughPanel(makePhoto("face.png"));
    notices = 0;
    saveWith({{"png"}, "face_retouched.png"}, chosen(target("saved.png")), kSaveSuccess);
    EXPECT_EQ(notices, 0);
}

TEST_F(Saving, WorkIsUnsavedUntilAFileIsWritten) {
    openThroughPanel(makePhoto());
    EXPECT_FALSE(controller->hasUnsavedWork());
    retouch(0);
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(target("no folder/saved.png")), kSaveFailure);
    EXPECT_TRUE(controller->hasUnsavedWork());
    save(target("saved.png"));
    EXPECT_FALSE(controller->hasUnsavedWork());
}

TEST_F(Saving, WorkThatTheFormatCannotHoldStaysUnsaved) {
    const std::filesystem::path source = target("wide.jpg");
    ASSERT_TRUE(ImageTools::SaveImage(filled({65501, 2}, kSkin), source, "png"));
    openThroughPanel(source);
    controller->comboEffect->setCurrentIndex(1);
    EXPECT_TRUE(controller->hasUnsavedWork());
    saveWith({{"jpg"}, "wide_retouched.jpg"}, chosen(target("saved.jpg")), kSaveSuccess);
    EXPECT_TRUE(controller->hasUnsavedWork());
}

TEST_F(Saving, AnImageThatTheFormatCannotHoldStillRemovesTheEarlierFile) {
    const std::filesystem::path source = target("wide.jpg");
    ASSERT_TRUE(ImageTools::SaveImage(filled({65501, 2}, kSkin), source, "png"));
    openThroughPanel(source);
    const std::filesystem::path path = target("saved.jpg");
    writeFile(path, "an earlier file");
    saveWith({{"jpg"}, "wide_retouched.jpg"}, chosen(path), kSaveSuccess);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(contentsOf(platform.trash() / "files/saved.jpg"), "an earlier file");
}

TEST_F(Saving, TheResultHasThePermissionsOfThePhoto) {
    const std::filesystem::path path = makePhoto();
    std::filesystem::permissions(path, std::filesystem::perms(0600));
    openThroughPanel(path);
    save(target("saved.png"));
    EXPECT_EQ(std::filesystem::status(target("saved.png")).permissions(), std::filesystem::perms(0600));
    save(path);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
}

TEST_F(Saving, TheSourceCanBeReplaced) {
    const std::filesystem::path path = makePhoto();
    openThroughPanel(path);
    retouch(0);
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
}

TEST_F(Saving, LongWorkIsAnnouncedAndEndsBeforeTheAlert) {
    openThroughPanel(makePhoto());
    int running = 0;
    int began = 0;
    QObject::connect(controller.get(), &ViewController::longWorkBegan, controller.get(), [&] {
        ++running;
        ++began;
    });
    QObject::connect(controller.get(), &ViewController::longWorkEnded, controller.get(), [&] { --running; });
    dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"}, chosen(target("saved.png")));
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    dialogs.whileItIsShown([&] { EXPECT_EQ(running, 0); });
    printedBy([this] { controller->OnSaveImage(nullptr); });
    EXPECT_EQ(began, 1);
    EXPECT_EQ(running, 0);
}

} // namespace

} // namespace complexion
