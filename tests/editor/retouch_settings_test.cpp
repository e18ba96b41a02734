// SPDX-License-Identifier: GPL-3.0-or-later

// A repair uses the values of the controls at its start.
#include "tests/editor/retouch_fixture.h"

#include <thread>

namespace complexion {

namespace {

TEST_F(Retouch, TheStepperSetsTheRadius) {
    // Dark pixels at squared distances of 89 (within a radius of 10) and 106 (within a radius of 11 only).
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

TEST_F(Retouch, TheSliderSetsTheThreshold) {
    // A grey ramp around a dark centre: each threshold repairs a different part of it.
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

TEST_F(Retouch, WithoutAutodetectionTheColorWellsColorIsPainted) {
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

TEST_F(Retouch, WithAutodetectionTheColorWellIsIgnored) {
    openPhoto();
    controller->colorWellCustomColor->setColor(QColor(255, 0, 0));
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
}

TEST_F(Retouch, TheNaturalRepairCanBeChosen) {
    // On shaded skin, the flat repair paints one colour, while the natural repair continues the shading.
    const Image image = painted(kPhotoSize, [](int row, int column) {
        const bool dark = std::abs(row - 30) <= 2 && std::abs(column - 40) <= 2;
        return dark ? grey(60) : grey(120 + column);
    });
    openThroughPanel(makePhoto("shaded.png", image));
    const Point point{40.5, 29.5};
    const auto healed = ImageTools::HealPimpleInImage(image, point, 10, 10);
    ASSERT_TRUE(healed.has_value());

    controller->comboRepair->setCurrentIndex(1);
    controller->checkAutodetectColor->setChecked(false); // affects the flat repair only
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

TEST_F(Retouch, TheNaturalRepairUsesTheThresholdAndTheRadius) {
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

TEST_F(Retouch, TheFlatRepairCanBeChosenAgain) {
    openPhoto();
    controller->comboRepair->setCurrentIndex(1);
    controller->comboRepair->setCurrentIndex(0);
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemishes()[0])));
}

TEST_F(Retouch, TheSettingsAreReadWhenTheRepairStarts) {
    openPhoto();
    clickPixel(blemishes()[0]);
    controller->checkAutodetectColor->setChecked(false);
    controller->colorWellCustomColor->setColor(QColor(0, 0, 255));
    queues.runBackground();
    controller->colorWellCustomColor->setColor(QColor(255, 0, 0));
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), RGBA32(0, 0, 255, 255));
}

TEST_F(Retouch, ControlsMayChangeWhileARepairReadsThem) {
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

TEST_F(Retouch, ADeletedControlIsFatal) {
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

} // namespace

} // namespace complexion
