// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

#include <sys/xattr.h>

namespace complexion {

namespace {

class Saving : public EditorTest {
protected:
    std::filesystem::path target(const std::string& name) const { return platform.photos() / name; }

    /// Runs the save action, expecting a panel that proposes `name` and is answered with `answer`, and then
    /// an alert (or none, for an empty text). What it printed.
    std::string saveWith(const SavePanel& panel, const PanelAnswer& answer, const char* alert) {
        dialogs.expectSavePanel(panel, answer);
        if (std::string_view(alert) == kSaveSuccess)
            dialogs.expectAlert(alert, AlertStyle::Informational);
        else if (*alert)
            dialogs.expectAlert(alert, AlertStyle::Warning);
        return printedBy([this] { controller->OnSaveImage(nullptr); });
    }

    /// A picture of four colours, one in each quarter, that no turn maps to itself.
    static Image quarters(PixelSize size) {
        return painted(size, [size](int row, int column) {
            const bool top = row < size.height / 2;
            const bool left = column < size.width / 2;
            if (top)
                return left ? RGBA32(200, 40, 40, 255) : RGBA32(40, 200, 40, 255);
            return left ? RGBA32(40, 40, 200, 255) : RGBA32(220, 220, 220, 255);
        });
    }
};

TEST_F(Saving, WithoutAPhotoNothingIsShown) {
    EXPECT_EQ(printedBy([this] { controller->OnSaveImage(nullptr); }), "");
    EXPECT_EQ(dialogs.shown(), 0);
}

TEST_F(Saving, TheNameIsProposedAfterTheSourceWithItsTypeInLowerCase) {
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
    expectUntouchedBy(
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

TEST_F(Saving, ANewFileIsWrittenAfterTheFailedRemovalIsPrinted) {
    openThroughPanel(makePhoto());
    retouch(0);
    const std::filesystem::path path = target("new.png");
    const std::string printed = saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_EQ(printed, "Remove failed: No such file or directory\n");
    EXPECT_TRUE(samePixels(decoded(path), shown()));
}

TEST_F(Saving, AllSevenTypesAreSavedInTheSourcesOwn) {
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
    expectUntouchedBy([this] { save(target("saved.png")); });
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

TEST_F(Saving, TheEffectOnTheScreenIsInTheFileAndNotInTheWorkingImage) {
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

TEST_F(Saving, WhatIsShownAtThatMomentIsSavedWhileARepairIsInFlight) {
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

TEST_F(Saving, ARepairThatFinishesBehindThePanelIsSaved) {
    openThroughPanel(makePhoto());
    clickPixel(blemishes()[0]);
    dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"}, chosen(target("saved.png")));
    dialogs.whileItIsShown([this] { queues.runAll(); });
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    printedBy([this] { controller->OnSaveImage(nullptr); });
    EXPECT_EQ(decoded(target("saved.png")).pixel(20, 20), kSkin);
}

TEST_F(Saving, AMissingImageOrViewIsFatal) {
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

TEST_F(Saving, TheFileThatStoodThereIsGoneEvenWhenTheSaveFails) {
    openThroughPanel(makePhoto());
    controller->originalImageExtension = "webp"; // no format of ours
    const std::filesystem::path path = target("saved.webp");
    writeFile(path, "an earlier file");
    const std::string printed = saveWith({{"webp"}, "portrait_retouched.webp"}, chosen(path), kSaveFailure);
    EXPECT_EQ(printed, "");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Saving, TheFileIsDeletedBeforeTheNewOneIsWritten) {
    openThroughPanel(makePhoto());
    save(target("saved.png"));
    FolderWatch watch(platform.photos());
    save(target("saved.png"));
    const std::vector<std::string> events = watch.events();
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events.front(), "-saved.png");
    EXPECT_EQ(events.back(), "+saved.png");
}

TEST_F(Saving, APictureThatItsFormatCannotHoldCountsAsSavedWithoutAFile) {
    // A PNG by its contents, whose name asks for JPEG: one pixel wider than the library writes.
    const std::filesystem::path source = target("wide.jpg");
    ASSERT_TRUE(ImageTools::SaveImage(filled({65501, 2}, kSkin), source, "png"));
    openThroughPanel(source);
    const std::filesystem::path path = target("saved.jpg");
    saveWith({{"jpg"}, "wide_retouched.jpg"}, chosen(path), kSaveSuccess);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Saving, AnUnholdablePictureStillTakesTheEarlierFileAway) {
    const std::filesystem::path source = target("wide.jpg");
    ASSERT_TRUE(ImageTools::SaveImage(filled({65501, 2}, kSkin), source, "png"));
    openThroughPanel(source);
    const std::filesystem::path path = target("saved.jpg");
    writeFile(path, "an earlier file");
    saveWith({{"jpg"}, "wide_retouched.jpg"}, chosen(path), kSaveSuccess);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Saving, AMissingSourceCostsTheMetadataOnly) {
    openThroughPanel(makePhoto());
    retouch(0);
    std::filesystem::remove(controller->originalImagePath);
    const std::filesystem::path path = target("saved.png");
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
}

TEST_F(Saving, TheSourceItselfMayBeReplaced) {
    const std::filesystem::path path = makePhoto();
    openThroughPanel(path);
    retouch(0);
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
}

TEST_F(Saving, ThePhotoThatIsReplacedGivesItsMetadataAndItsTurn) {
    const std::filesystem::path path = makePhoto("portrait.png");
    writeFile(path, withExif(contentsOf(path), 6, "A photographer of faces"));
    openThroughPanel(path);
    retouch(0);
    saveWith({{"png"}, "portrait_retouched.png"}, chosen(path), kSaveSuccess);
    EXPECT_NE(contentsOf(path).find("A photographer of faces"), std::string::npos);
    EXPECT_TRUE(samePixels(decoded(path), controller->originalImage()));
}

// What is carried over.

TEST_F(Saving, TheSourcesMetadataIsInTheSavedFile) {
    for (const std::string extension : {"jpg", "png"}) {
        SCOPED_TRACE(extension);
        const std::filesystem::path source = makePhoto("portrait." + extension);
        writeFile(source, withExif(contentsOf(source), 1, "A photographer of faces"));
        openThroughPanel(source);
        EXPECT_EQ(contentsOf(currentPath()).find("A photographer of faces"), std::string::npos);
        retouch(0);
        save(target("saved." + extension));
        EXPECT_NE(contentsOf(target("saved." + extension)).find("A photographer of faces"),
                  std::string::npos);
        EXPECT_TRUE(nearlySamePixels(decoded(target("saved." + extension)), shown(), 4));
    }
}

TEST_F(Saving, TheSourcesCreationDateIsTheSavedFiles) {
    const std::filesystem::path source = makePhoto();
    openThroughPanel(source);
    save(target("saved.png"));
    const auto time = ImageTools::ImageCreationDate(source);
    const auto saved = ImageTools::ImageCreationDate(target("saved.png"));
    if (getxattr(target("saved.png").c_str(), "user.crtime_usec", nullptr, 0) < 0)
        GTEST_SKIP() << "the temporary folder's file system has no place for a creation date";
    EXPECT_LT(std::chrono::abs(saved - time), std::chrono::microseconds(1));
}

TEST_F(Saving, AnOldCreationDateIsTheSavedFilesToo) {
    const std::filesystem::path source = makePhoto();
    // 2016-11-16 07:41:31.234 UTC, in microseconds, little-endian.
    constexpr std::uint64_t kMicroseconds = 1'479'282'091'234'000;
    std::array<unsigned char, 8> value{};
    for (std::size_t i = 0; i < value.size(); ++i)
        value[i] = static_cast<unsigned char>(kMicroseconds >> (8 * i));
    if (setxattr(source.c_str(), "user.crtime_usec", value.data(), value.size(), 0) != 0)
        GTEST_SKIP() << "the temporary folder's file system has no place for a creation date";
    openThroughPanel(source);
    save(target("saved.png"));
    EXPECT_EQ(ImageTools::ImageCreationDate(target("saved.png")).time_since_epoch(),
              std::chrono::microseconds(kMicroseconds));
}

TEST_F(Saving, APhotoStoredOnItsSideIsEditedUprightAndSavedOnItsSide) {
    constexpr PixelSize kStored{64, 48};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const std::filesystem::path source = makePhoto("turned.png", quarters(kStored));
        const Image stored = decoded(source);
        writeFile(source, withExif(contentsOf(source), orientation, "photographer"));
        const Image upright = turnedUpright(quarters(kStored), orientationFromTag(orientation));

        openThroughPanel(source);
        EXPECT_TRUE(samePixels(controller->originalImage(), upright));
        EXPECT_TRUE(samePixels(decoded(currentPath()), upright));
        EXPECT_EQ(contentsOf(currentPath()).find("eXIf"), std::string::npos);

        save(target("saved.png"));
        // A viewer that knows the tag shows it upright; the pixels lie as the source's did.
        EXPECT_TRUE(samePixels(decoded(target("saved.png")), upright));
        std::string untagged = contentsOf(target("saved.png"));
        const std::size_t chunk = untagged.find("eXIf");
        ASSERT_NE(chunk, std::string::npos);
        const std::filesystem::path renamed = target("untagged.png");
        const auto length = static_cast<unsigned char>(untagged[chunk - 1]) +
                            (static_cast<std::size_t>(static_cast<unsigned char>(untagged[chunk - 2])) << 8);
        untagged.erase(chunk - 4, length + 12);
        writeFile(renamed, untagged);
        EXPECT_TRUE(samePixels(decoded(renamed), stored));
    }
}

TEST_F(Saving, AJpegStoredOnItsSideIsSavedOnItsSide) {
    constexpr PixelSize kStored{64, 48};
    const std::filesystem::path source = makePhoto("turned.jpg", quarters(kStored));
    writeFile(source, withExif(contentsOf(source), 6, "photographer"));
    const Image upright = turnedUpright(quarters(kStored), Orientation::RightTop);
    openThroughPanel(source);
    EXPECT_EQ(controller->originalImage().pixelSize(), (PixelSize{48, 64}));
    EXPECT_TRUE(nearlySamePixels(controller->originalImage(), upright, 4));
    save(target("saved.jpg"));
    EXPECT_TRUE(nearlySamePixels(decoded(target("saved.jpg")), upright, 8));
    EXPECT_NE(contentsOf(target("saved.jpg")).find("photographer"), std::string::npos);
}

TEST_F(Saving, AFormatWithoutAPlaceForTheTurnIsSavedUpright) {
    // A PNG by its contents and a BMP by its name: what is written has no orientation.
    const std::filesystem::path png = makePhoto("turned.png", quarters({64, 48}));
    const std::filesystem::path source = target("turned.bmp");
    writeFile(source, withExif(contentsOf(png), 6, "photographer"));
    const Image upright = turnedUpright(quarters({64, 48}), Orientation::RightTop);
    openThroughPanel(source);
    save(target("saved.bmp"));
    EXPECT_TRUE(samePixels(decoded(target("saved.bmp")), upright));
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
