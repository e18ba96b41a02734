// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

#include <cmath>
#include <limits>
#include <thread>

namespace complexion {

namespace {

class Retouch : public EditorTest {
protected:
    /// What the repair makes of `image` with given settings at the middle of a pixel.
    static Image repaired(const Image& image, PixelPosition at, std::int64_t radius = 10,
                          std::int64_t threshold = 10, std::int64_t colorType = kAutodetectColor,
                          RgbColor customColor = {}) {
        const Point point{static_cast<double>(at.column) + 0.5,
                          image.size().height - static_cast<double>(at.row) - 0.5};
        const auto result =
            ImageTools::RemovePimpleFromImage(image, point, radius, colorType, customColor, threshold);
        EXPECT_TRUE(result.has_value());
        return result.value_or(Image());
    }

    void openPhoto() { openThroughPanel(makePhoto()); }
};

// What is a click.

TEST_F(Retouch, AShortPressRepairsTheBlemishUnderIt) {
    openPhoto();
    clickPixel(blemishes()[0], 0.15);
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(),
                           skinWithBlemishes(kPhotoSize, {blemishes()[1], blemishes()[2]})));
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_EQ(controller->stateImagesPath.size(), 2U);
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_TRUE(samePixels(decoded(currentPath()), controller->originalImage()));
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_TRUE(controller->canUndo());
}

TEST_F(Retouch, ALongPressDoesNothing) {
    openPhoto();
    expectUntouchedBy([this] {
        clickPixel(blemishes()[0], 0.25);
        EXPECT_EQ(queues.backgroundCount(), 0U);
    });
}

TEST_F(Retouch, APressOfExactlyAFifthOfASecondIsAClick) {
    openPhoto();
    clickPixel(blemishes()[0], 0.2);
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();

    controller->mouseDown({.locationInWindow = shownAt(blemishes()[1])});
    platform.uptime += 200'000'001;
    controller->mouseUp({.locationInWindow = shownAt(blemishes()[1])});
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(Retouch, AClickMayComeOutOfNoTimeAtAll) {
    openPhoto();
    clickPixel(blemishes()[0], 0);
    EXPECT_EQ(queues.backgroundCount(), 1U);
}

TEST_F(Retouch, AReleaseBeforeItsPressIsFatal) {
    openPhoto();
    controller->mouseDown({});
    platform.uptime -= 1;
    EXPECT_DEATH(controller->mouseUp({}), "");
}

TEST_F(Retouch, APressThatMovedIsBothAPanAndAClick) {
    openPhoto();
    controller->OnZoomIn(nullptr);
    const Frame before = imageView->frame();
    controller->mouseDown({.locationInWindow = shownAt(blemishes()[0])});
    drag(4, -3);
    platform.uptime += 100'000'000;
    controller->mouseUp({.locationInWindow = shownAt(blemishes()[0])});
    EXPECT_EQ(imageView->frame(), (Frame{before.x + 4, before.y + 3, before.width, before.height}));
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
}

TEST_F(Retouch, AClickWithoutAPhotoDoesNothing) {
    click({200, 150});
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(Retouch, AClickWhileARepairIsInFlightIsForgotten) {
    openPhoto();
    clickPixel(blemishes()[0]);
    queues.runBackground();
    EXPECT_TRUE(controller->imageProcessing);

    clickPixel(blemishes()[1]);

    EXPECT_EQ(queues.backgroundCount(), 0U);
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_EQ(controller->originalImage().pixel(30, 55), kBlemish);
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(Retouch, TheBusyFlagIsSetWhenTheWorkStartsNotAtTheClick) {
    openPhoto();
    clickPixel(blemishes()[0]);
    EXPECT_FALSE(controller->imageProcessing);
    queues.runBackground();
    EXPECT_TRUE(controller->imageProcessing);
    EXPECT_EQ(queues.mainCount(), 1U);
    queues.runMain();
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(Retouch, TwoClicksBeforeTheFirstWorkStartsBothRunEachOnThePictureItReads) {
    openPhoto();
    clickPixel(blemishes()[0]);
    clickPixel(blemishes()[1]);
    EXPECT_EQ(queues.backgroundCount(), 2U);
    // Both read the loaded picture; the second result replaces the first.
    queues.runBackground();
    queues.runBackground();
    queues.runMain();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemishes()[0])));
    queues.runMain();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemishes()[1])));
    EXPECT_EQ(controller->currenState, 2);
    EXPECT_EQ(stateFiles().size(), 3U);
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(Retouch, ASecondClickThatStartsAfterTheFirstHasFinishedRepairsItsResult) {
    openPhoto();
    clickPixel(blemishes()[0]);
    clickPixel(blemishes()[1]);
    queues.runBackground();
    queues.runMain();
    queues.runBackground();
    queues.runMain();
    EXPECT_TRUE(samePixels(controller->originalImage(), skinWithBlemishes(kPhotoSize, {blemishes()[2]})));
    EXPECT_EQ(controller->currenState, 2);
}

// Where the click lands.

TEST_F(Retouch, APointOfTheViewIsThePictureUnderIt) {
    // 1000 by 500 pixels in a frame of 600 by 600: six tenths, 150 points above and below.
    root->resize(600, 600);
    imageView->resize(600, 600);
    const Image wide = skinWithBlemishes({1000, 500}, {{249, 500}});
    openThroughPanel(makePhoto("wide.png", wide));
    ASSERT_EQ(imageView->frame(), (Frame{0, 0, 600, 600}));
    click({300, 300}); // (500, 250) of the picture, bottom up
    queues.runAll();
    const auto expected = ImageTools::RemovePimpleFromImage(wide, {500, 250}, 10, 1, {}, 10);
    ASSERT_TRUE(expected.has_value());
    EXPECT_FALSE(samePixels(*expected, wide));
    EXPECT_TRUE(samePixels(controller->originalImage(), *expected));
}

TEST_F(Retouch, ATallPictureIsFittedByItsHeight) {
    const Image tall = skinWithBlemishes({60, 300}, {{100, 30}});
    openThroughPanel(makePhoto("tall.png", tall));
    // One point per pixel, 170 points left and right.
    click({200.5, 300 - 100 - 0.5});
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), filled({60, 300}, kSkin)));
}

TEST_F(Retouch, AZoomedAndPannedPictureIsHitWhereItIsShown) {
    openPhoto();
    for (int i = 0; i < 7; ++i)
        controller->OnZoomIn(nullptr);
    drag(31.25, -17.5);
    for (std::size_t i = 0; i < blemishes().size(); ++i) {
        SCOPED_TRACE(i);
        const Image before = controller->originalImage();
        clickPixel(blemishes()[i]);
        queues.runAll();
        EXPECT_TRUE(samePixels(controller->originalImage(), repaired(before, blemishes()[i])));
    }
    EXPECT_TRUE(samePixels(controller->originalImage(), filled(kPhotoSize, kSkin)));
}

TEST_F(Retouch, AClickBesideThePictureChangesNoPixelAndIsRecorded) {
    root->resize(400, 400); // 50 points of margin above and below
    imageView->resize(400, 400);
    openPhoto();
    click({200, 20});
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(Retouch, AClickTooNearTheBorderChangesNoPixel) {
    openPhoto();
    clickPixel({3, 3});
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_FALSE(controller->imageProcessing);
}

// What the repair is given.

TEST_F(Retouch, TheRadiusIsTheSteppers) {
    // Dark pixels at distances whose squares are 89 and 106: inside a disc of 10, and of 11 only.
    const Image image = painted(kPhotoSize, [](int row, int column) {
        const bool dark = (std::abs(row - 30) <= 1 && std::abs(column - 40) <= 1) ||
                          (row == 35 && column == 48) || (row == 35 && column == 49);
        return dark ? kBlemish : kSkin;
    });
    openThroughPanel(makePhoto("radius.png", image));
    clickPixel({30, 40});
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(30, 40), kSkin);
    EXPECT_EQ(controller->originalImage().pixel(35, 48), kSkin);
    EXPECT_EQ(controller->originalImage().pixel(35, 49), kBlemish);

    reload();
    controller->stepperEditAreaSize->setIntegerValue(9);
    clickPixel({30, 40});
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(30, 40), kSkin);
    EXPECT_EQ(controller->originalImage().pixel(35, 48), kBlemish);

    reload();
    controller->stepperEditAreaSize->setIntegerValue(11);
    clickPixel({30, 40});
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(35, 49), kSkin);
}

TEST_F(Retouch, TheTextFieldAloneDoesNotSetTheRadius) {
    openPhoto();
    controller->textFieldEditAreaSize->setText(QStringLiteral("2"));
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemishes()[0], 10)));
}

TEST_F(Retouch, TheThresholdIsTheSliders) {
    // A ramp of greys around a dark middle: each threshold repairs another part of it.
    const Image image = painted(kPhotoSize, [](int row, int column) {
        if (std::abs(row - 30) <= 1 && std::abs(column - 40) <= 1)
            return grey(100);
        return grey(180 - std::max(0, 20 - (row - 30) * (row - 30) - (column - 40) * (column - 40)));
    });
    openThroughPanel(makePhoto("threshold.png", image));
    for (const int threshold : {0, 10, 11, 12, 100}) {
        SCOPED_TRACE(threshold);
        controller->sliderThreshold->setFloatValue(static_cast<float>(threshold));
        clickPixel({30, 40});
        queues.runAll();
        EXPECT_TRUE(samePixels(controller->originalImage(), repaired(image, {30, 40}, 10, threshold)));
        reload();
    }
    controller->sliderThreshold->setFloatValue(10.9F); // truncated, not rounded
    clickPixel({30, 40});
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(image, {30, 40}, 10, 10)));
    EXPECT_FALSE(samePixels(repaired(image, {30, 40}, 10, 10), repaired(image, {30, 40}, 10, 11)));
}

TEST_F(Retouch, WithoutAutodetectionTheWellsColourIsPainted) {
    openPhoto();
    controller->checkAutodetectColor->setChecked(false);
    controller->colorWellCustomColor->setColor(QColor(255, 0, 0));
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20).color, 0xFF0000FFU);

    controller->colorWellCustomColor->setColor(QColor(200, 150, 120));
    clickPixel(blemishes()[1]);
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(30, 55), RGBA32(200, 150, 120, 255));
}

TEST_F(Retouch, WithAutodetectionTheWellsColourIsNotUsed) {
    openPhoto();
    controller->colorWellCustomColor->setColor(QColor(255, 0, 0));
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
}

TEST_F(Retouch, WithNaturalChosenTheBlemishIsHealed) {
    // Shaded skin: the flat repair paints one colour, the natural one goes on with the shading.
    const Image image = painted(kPhotoSize, [](int row, int column) {
        const bool dark = std::abs(row - 30) <= 2 && std::abs(column - 40) <= 2;
        return dark ? grey(60) : grey(120 + column);
    });
    openThroughPanel(makePhoto("shaded.png", image));
    const Point point{40.5, 29.5};
    const auto healed = ImageTools::HealPimpleInImage(image, point, 10, 10);
    ASSERT_TRUE(healed.has_value());

    controller->comboRepair->setCurrentIndex(1);
    controller->checkAutodetectColor->setChecked(false); // belongs to the flat repair only
    clickPixel({30, 40});
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), *healed));
    EXPECT_TRUE(nearlySamePixels(*healed,
                                 painted(kPhotoSize, [](int, int column) { return grey(120 + column); }), 2));
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_TRUE(samePixels(decoded(currentPath()), *healed));
    EXPECT_EQ(controller->currenState, 1);

    controller->OnUndo(nullptr);
    EXPECT_TRUE(samePixels(controller->originalImage(), image));
    controller->OnRedo(nullptr);
    EXPECT_TRUE(samePixels(controller->originalImage(), *healed));
}

TEST_F(Retouch, TheThresholdAndTheRadiusSteerTheNaturalRepairToo) {
    openPhoto();
    controller->comboRepair->setCurrentIndex(1);
    controller->stepperEditAreaSize->setIntegerValue(12);
    controller->sliderThreshold->setFloatValue(30.9F);
    clickPixel(blemishes()[0]);
    queues.runAll();
    const auto expected =
        ImageTools::HealPimpleInImage(photo(),
                                      {static_cast<double>(blemishes()[0].column) + 0.5,
                                       photo().size().height - static_cast<double>(blemishes()[0].row) - 0.5},
                                      12, 30);
    ASSERT_TRUE(expected.has_value());
    EXPECT_FALSE(samePixels(*expected, photo()));
    EXPECT_TRUE(samePixels(controller->originalImage(), *expected));
}

TEST_F(Retouch, FlatColourChosenAgainIsTheFlatRepair) {
    openPhoto();
    controller->comboRepair->setCurrentIndex(1);
    controller->comboRepair->setCurrentIndex(0);
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemishes()[0])));
}

TEST_F(Retouch, TheSettingsAreReadWhenTheWorkStarts) {
    openPhoto();
    clickPixel(blemishes()[0]);
    controller->checkAutodetectColor->setChecked(false);
    controller->colorWellCustomColor->setColor(QColor(0, 0, 255));
    queues.runBackground();
    controller->colorWellCustomColor->setColor(QColor(255, 0, 0));
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), RGBA32(0, 0, 255, 255));
}

TEST_F(Retouch, ControlsMayMoveWhileARepairReadsThem) {
    openPhoto();
    clickPixel(blemishes()[0]);
    std::jthread background([this] { queues.runBackground(); });
    for (int i = 0; i < 200; ++i) {
        controller->stepperEditAreaSize->setIntegerValue(10 + i % 2);
        controller->sliderThreshold->setFloatValue(static_cast<float>(10 + i % 2));
        controller->colorWellCustomColor->setColor(QColor(i, i, i));
        controller->checkAutodetectColor->setChecked(true);
    }
    background.join();
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(),
                           skinWithBlemishes(kPhotoSize, {blemishes()[1], blemishes()[2]})));
}

TEST_F(Retouch, AControlThatIsGoneIsFatal) {
    openPhoto();
    clickPixel(blemishes()[0]);
    EXPECT_DEATH(
        {
            delete controller->stepperEditAreaSize.data();
            queues.runAll();
        },
        "stepperEditAreaSize");
    EXPECT_DEATH(
        {
            delete controller->checkAutodetectColor.data();
            queues.runAll();
        },
        "checkAutodetectColor");
    EXPECT_DEATH(
        {
            delete controller->colorWellCustomColor.data();
            queues.runAll();
        },
        "colorWellCustomColor");
    EXPECT_DEATH(
        {
            delete controller->sliderThreshold.data();
            queues.runAll();
        },
        "sliderThreshold");
    EXPECT_DEATH(
        {
            delete controller->comboRepair.data();
            queues.runAll();
        },
        "comboRepair");
    EXPECT_DEATH(
        {
            delete controller->imageView.data();
            queues.runAll();
        },
        "gone");
    EXPECT_DEATH(
        {
            delete controller->imageView.data();
            click({200, 150});
        },
        "gone");
}

// What becomes of the result.

TEST_F(Retouch, NoResultIsFatal) {
    openPhoto();
    EXPECT_DEATH(controller->FinishRetouch(std::nullopt), "");
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

TEST_F(Retouch, AStateThatCannotBeWrittenDoesNotUndoTheRetouch) {
    openPhoto();
    platform.loseTemporaryDirectory();
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

TEST_F(Retouch, ARepairOfAnotherPhotoIsDroppedAndTheFlagCleared) {
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

    // The next click is taken.
    clickPixel({25, 35});
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(Retouch, ARepairThatWasReloadedAwayIsDroppedAndTheFlagCleared) {
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

TEST_F(Retouch, ARepairThatFinishesWhileTheQuestionIsShownIsDroppedAfterYes) {
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

TEST_F(Retouch, ARefusedOpeningKeepsTheRepairInFlight) {
    openPhoto();
    clickPixel(blemishes()[0]);
    queues.runBackground();
    writeFile(platform.photos() / "fake.png", "no picture");
    EXPECT_FALSE(drop(platform.photos() / "fake.png"));
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
    EXPECT_EQ(controller->currenState, 1);
}

} // namespace

} // namespace complexion
