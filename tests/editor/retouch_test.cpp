// SPDX-License-Identifier: GPL-3.0-or-later

// The result of a repair is installed or dropped.
#include "tests/editor/retouch_fixture.h"

#include <QTest>

namespace complexion {

namespace {

TEST_F(Retouch, AMissingResultIsFatal) {
    openPhoto();
    EXPECT_DEATH(controller->FinishRetouch(std::nullopt), "gave no image");
}

TEST_F(Retouch, APointOfThePhotoCanBeRetouchedWithoutAClick) {
    openPhoto();
    const PixelPosition blemish = blemishes()[0];
    controller->RetouchAtPoint({static_cast<double>(blemish.column) + 0.5,
                                kPhotoSize.height - static_cast<double>(blemish.row) - 0.5});
    EXPECT_TRUE(controller->imageProcessing);
    queues.runAll();
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemish)));
}

TEST_F(Retouch, AQueuedRepairOfAReplacedPhotoDoesNothing) {
    openPhoto();
    clickPixel(blemishes()[0]);
    openThroughPanel(makePhoto("second.png"));
    const Image second = controller->originalImage();
    queues.runAll();
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_TRUE(controller->originalImage().isSameObject(second));
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
}

TEST_F(Retouch, TheResultIsShownThroughTheEffectAndRecordedWithoutIt) {
    const Image coloured = painted(kPhotoSize, [](int row, int column) {
        const bool dark = std::abs(row - 20) <= 2 && std::abs(column - 20) <= 2;
        return dark ? RGBA32(90, 40, 30, 255) : RGBA32(210, 170, 150, 255);
    });
    openThroughPanel(makePhoto("coloured.png", coloured));
    selectEffect(5);
    clickPixel({20, 20});
    queues.runAll();
    const Image expected = filled(kPhotoSize, {210, 170, 150, 255});
    EXPECT_TRUE(samePixels(controller->originalImage(), expected));
    EXPECT_TRUE(samePixels(decoded(currentPath()), expected));
    EXPECT_FALSE(shown().isSameObject(controller->originalImage()));
    const RGBA32 pixel = shown().pixel(20, 20);
    EXPECT_EQ(pixel.red(), pixel.green());
    EXPECT_EQ(pixel.red(), pixel.blue());
    EXPECT_EQ(pixel, shown().pixel(40, 60));
}

/// Counts the paint events of a widget.
class PaintCounter : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST_F(Retouch, TheResultIsPaintedImmediately) {
    openPhoto();
    root->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(root.get()));
    QCoreApplication::processEvents();
    PaintCounter counter;
    imageView->installEventFilter(&counter);
    controller->FinishRetouch(filled(kPhotoSize, kSkin));
    EXPECT_GT(counter.paints, 0);
}

TEST_F(Retouch, AnUnwritableStateDoesNotRevertTheRepair) {
    openPhoto();
    platform.removeTemporaryDirectory();
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_EQ(shown().pixel(20, 20), kSkin);
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(Retouch, ARepairKeepsItsControllerAlive) {
    openPhoto();
    clickPixel(blemishes()[0]);
    const std::weak_ptr<ViewController> watched = controller;
    controller.reset();
    EXPECT_FALSE(watched.expired());
    queues.runAll();
    EXPECT_TRUE(watched.expired());
}

TEST_F(Retouch, AResultForAReplacedPhotoIsDroppedAndTheFlagCleared) {
    openPhoto();
    const Image other = filled({70, 50}, grey(99));
    const std::filesystem::path path = makePhoto("other.png", other);
    clickPixel(blemishes()[0]);
    queues.runBackground();
    EXPECT_TRUE(drop(path));

    queues.runAll();

    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_TRUE(samePixels(controller->originalImage(), other));
    EXPECT_TRUE(samePixels(shown(), other));
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_EQ(stateFiles().size(), 1U);

    // The next click is accepted.
    clickPixel({25, 35});
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(Retouch, AResultForAReloadedPhotoIsDroppedAndTheFlagCleared) {
    openPhoto();
    clickPixel(blemishes()[0]);
    queues.runBackground();
    reload();
    queues.runAll();
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(Retouch, ARepairThatFinishesDuringTheQuestionIsDroppedAfterYes) {
    openPhoto();
    const std::filesystem::path path = makePhoto("other.png", filled({70, 50}, grey(99)));
    clickPixel(blemishes()[0]);
    dialogs.expectQuestion(kSelectQuestion, kFirstButton);
    dialogs.whileItIsShown([this] { queues.runAll(); });
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
    EXPECT_TRUE(samePixels(shown(), filled({70, 50}, grey(99))));
    EXPECT_EQ(controller->stateImagesPath.size(), 1U);
    EXPECT_EQ(stateFiles().size(), 1U);
}

TEST_F(Retouch, ARefusedOpeningKeepsTheRunningRepair) {
    openPhoto();
    clickPixel(blemishes()[0]);
    queues.runBackground();
    writeFile(platform.photos() / "fake.png", "not a picture");
    EXPECT_FALSE(drop(platform.photos() / "fake.png"));
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
    EXPECT_EQ(controller->currenState, 1);
}

} // namespace

} // namespace complexion
