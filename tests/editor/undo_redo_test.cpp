// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

namespace complexion {

namespace {

class UndoRedo : public EditorTest {
protected:
    void undo() { controller->OnUndo(nullptr); }
    void redo() { controller->OnRedo(nullptr); }

    static Image photoWithout(std::initializer_list<std::size_t> repaired) {
        std::vector<PixelPosition> remaining;
        for (std::size_t i = 0; i < blemishes().size(); ++i)
            if (std::ranges::find(repaired, i) == repaired.end())
                remaining.push_back(blemishes()[i]);
        return skinWithBlemishes(kPhotoSize, remaining);
    }
};

TEST_F(UndoRedo, WithoutAPhotoNothingHappens) {
    expectUnchangedBy([this] {
        undo();
        redo();
    });
}

TEST_F(UndoRedo, RightAfterOpeningThereIsNothingToUndo) {
    openThroughPanel(makePhoto());
    EXPECT_FALSE(controller->canUndo());
    EXPECT_FALSE(controller->canRedo());
    expectUnchangedBy([this] {
        undo();
        redo();
    });
}

TEST_F(UndoRedo, StepsThroughTheHistory) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    EXPECT_TRUE(samePixels(shown(), photoWithout({0, 1})));

    undo();
    EXPECT_TRUE(samePixels(shown(), photoWithout({0})));
    EXPECT_EQ(controller->currenState, 1);
    undo();
    EXPECT_TRUE(samePixels(shown(), photo()));
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_FALSE(controller->canUndo());
    EXPECT_TRUE(controller->canRedo());

    redo();
    EXPECT_TRUE(samePixels(shown(), photoWithout({0})));
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_EQ(controller->currenState, 1);
    redo();
    EXPECT_TRUE(samePixels(shown(), photoWithout({0, 1})));
    EXPECT_FALSE(controller->canRedo());
    expectUnchangedBy([this] { redo(); });
}

TEST_F(UndoRedo, StepsKeepTheListAndItsFiles) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    const std::vector<std::filesystem::path> paths = controller->stateImagesPath;
    const std::vector<std::string> files = stateFiles();
    FolderWatch watch(platform.states());
    undo();
    undo();
    redo();
    EXPECT_EQ(controller->stateImagesPath, paths);
    EXPECT_EQ(stateFiles(), files);
    EXPECT_TRUE(watch.events().empty());
}

TEST_F(UndoRedo, ARepairAfterAnUndoDropsTheRedo) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    undo();
    retouch(2);
    EXPECT_EQ(controller->currenState, 2);
    EXPECT_EQ(controller->stateImagesPath.size(), 3U);
    EXPECT_FALSE(controller->canRedo());
    expectUnchangedBy([this] { redo(); });
    EXPECT_TRUE(samePixels(shown(), photoWithout({0, 2})));
    undo();
    EXPECT_TRUE(samePixels(shown(), photoWithout({0})));
}

TEST_F(UndoRedo, NeitherIsPossibleDuringARepair) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    undo();
    clickPixel(blemishes()[2]);
    queues.runBackground();
    EXPECT_FALSE(controller->canUndo());
    EXPECT_FALSE(controller->canRedo());
    expectUnchangedBy([this] {
        undo();
        redo();
    });
    queues.runAll();
    EXPECT_TRUE(controller->canUndo());
}

TEST_F(UndoRedo, StepsAreExactEvenInALossyFormat) {
    // JPEG cannot store noise exactly.
    const Image noise = painted(kPhotoSize, [](int row, int column) {
        const unsigned seed = static_cast<unsigned>(row) * 7919U + static_cast<unsigned>(column) * 104729U;
        return RGBA32(static_cast<std::uint8_t>(seed % 251), static_cast<std::uint8_t>(seed / 7 % 241),
                      static_cast<std::uint8_t>(seed / 3 % 239), 255);
    });
    openThroughPanel(makePhoto("noise.jpg", noise));
    const Image loaded = controller->originalImage();
    controller->checkAutodetectColor->setChecked(false);
    const Image changed = skinWithBlemishes(kPhotoSize, {{10, 10}});
    controller->setOriginalImage(noise);
    controller->PushStateImage();
    ASSERT_FALSE(samePixels(decoded(currentPath()), noise));
    controller->setOriginalImage(changed);
    controller->PushStateImage();

    undo();
    EXPECT_TRUE(controller->originalImage().isSameObject(noise));
    undo();
    EXPECT_TRUE(controller->originalImage().isSameObject(loaded));
    redo();
    redo();
    EXPECT_TRUE(controller->originalImage().isSameObject(changed));
}

TEST_F(UndoRedo, ManyRoundTripsLoseNothing) {
    openThroughPanel(makePhoto("portrait.jpg"));
    const Image loaded = controller->originalImage();
    retouch(0);
    const Image repaired = controller->originalImage();
    for (int i = 0; i < 20; ++i) {
        undo();
        EXPECT_TRUE(samePixels(controller->originalImage(), loaded));
        redo();
        EXPECT_TRUE(samePixels(controller->originalImage(), repaired));
    }
}

TEST_F(UndoRedo, AReplacedStateFileIsReadFromTheDisk) {
    openThroughPanel(makePhoto());
    retouch(0);
    const Image other = filled({33, 22}, grey(12));
    ASSERT_TRUE(ImageTools::SaveImage(other, controller->stateImagesPath[0], "png"));
    undo();
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_TRUE(samePixels(controller->originalImage(), other));
    EXPECT_TRUE(samePixels(shown(), other));
}

TEST_F(UndoRedo, AModifiedStateFileIsReadFromTheDisk) {
    openThroughPanel(makePhoto("portrait.bmp"));
    retouch(0);
    std::string contents = contentsOf(controller->stateImagesPath[0]);
    ASSERT_TRUE(contents.starts_with("BM"));
    contents.replace(contents.size() - 4, 3, "\x01\x02\x03"); // the last pixel
    writeFile(controller->stateImagesPath[0], contents);
    undo();
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_FALSE(samePixels(controller->originalImage(), photo()));
    EXPECT_TRUE(samePixels(controller->originalImage(), decoded(controller->stateImagesPath[0])));
}

TEST_F(UndoRedo, UndoToAnUnreadableStateChangesNothing) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    std::filesystem::remove(controller->stateImagesPath[1]);
    expectUnchangedBy([this] { undo(); });
    EXPECT_EQ(controller->currenState, 2);

    writeFile(controller->stateImagesPath[1], "not a picture");
    expectUnchangedBy([this] { undo(); });
}

TEST_F(UndoRedo, RedoToAnUnreadableStateChangesNothing) {
    openThroughPanel(makePhoto());
    retouch(0);
    undo();
    std::filesystem::remove(controller->stateImagesPath[1]);
    expectUnchangedBy([this] { redo(); });
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(UndoRedo, TwoStatesOfOneMillisecondBothShowTheLaterImage) {
    platform.wallClockStep = 0;
    openThroughPanel(makePhoto());
    retouch(0);
    ASSERT_EQ(controller->stateImagesPath[0], controller->stateImagesPath[1]);
    undo();
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_TRUE(samePixels(shown(), photoWithout({0})));
    redo();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_TRUE(samePixels(shown(), photoWithout({0})));
}

TEST_F(UndoRedo, AStateThatItsFormatCannotHoldIsUnreadable) {
    openThroughPanel(makePhoto("wide.jpg", filled({40, 40}, kSkin)));
    const Image wide = filled({65501, 1}, kSkin); // one pixel wider than the JPEG library can write
    controller->setOriginalImage(wide);
    controller->PushStateImage();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_FALSE(std::filesystem::exists(controller->stateImagesPath[1]));
    undo();
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_TRUE(samePixels(controller->originalImage(), filled({40, 40}, kSkin)));
    expectUnchangedBy([this] { redo(); });
}

TEST_F(UndoRedo, AvailableStepsAreAnnounced) {
    int announced = 0;
    QObject::connect(controller.get(), &ViewController::stateChanged, controller.get(), [&] { ++announced; });
    openThroughPanel(makePhoto());
    EXPECT_GT(std::exchange(announced, 0), 0);
    bool couldUndo = false;
    QObject::connect(controller.get(), &ViewController::stateChanged, controller.get(),
                     [&] { couldUndo = controller->canUndo(); });
    retouch(0);
    EXPECT_TRUE(couldUndo); // the last announcement comes after the flag is cleared and the list is complete
    bool couldRedo = false;
    QObject::connect(controller.get(), &ViewController::stateChanged, controller.get(),
                     [&] { couldRedo = controller->canRedo(); });
    undo();
    EXPECT_TRUE(couldRedo);
    EXPECT_FALSE(couldUndo);
}

TEST_F(UndoRedo, TheStepIsAnnouncedByItsNameIfItHasOne) {
    QString announced;
    QObject::connect(controller.get(), &ViewController::announced, controller.get(),
                     [&](const QString& text) { announced = text; });
    openThroughPanel(makePhoto());
    retouch(0);
    undo();
    EXPECT_EQ(announced, QStringLiteral("Undone: repair."));
    redo();
    EXPECT_EQ(announced, QStringLiteral("Redone: repair."));
    controller->setOriginalImage(filled({40, 40}, kSkin));
    controller->PushStateImage();
    undo();
    EXPECT_EQ(announced, QStringLiteral("Undone."));
    redo();
    EXPECT_EQ(announced, QStringLiteral("Redone."));
}

} // namespace

} // namespace complexion
