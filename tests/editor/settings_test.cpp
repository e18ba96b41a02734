// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

#include <limits>

namespace complexion {

namespace {

class Settings : public EditorTest {
protected:
    void type(const QString& text) {
        controller->textFieldEditAreaSize->setText(text);
        controller->OnEditAreaSizeChanged(controller->textFieldEditAreaSize);
    }

    int stepperValue() const { return controller->stepperEditAreaSize->integerValue(); }
    QString fieldText() const { return controller->textFieldEditAreaSize->text(); }

    /// A coloured photo with a blemish at (20, 20).
    static Image coloured() {
        return painted(kPhotoSize, [](int row, int column) {
            const bool dark = std::abs(row - 20) <= 2 && std::abs(column - 20) <= 2;
            return dark ? RGBA32(90, 40, 30, 255)
                        : RGBA32(static_cast<std::uint8_t>(180 + row % 4 * 10),
                                 static_cast<std::uint8_t>(150 + column % 5 * 8), 130, 255);
        });
    }

    void openColoured() { openThroughPanel(makePhoto("coloured.png", coloured())); }
};

TEST_F(Settings, HaveTheirInitialValues) {
    EXPECT_TRUE(controller->checkAutodetectColor->isChecked());
    EXPECT_EQ(fieldText(), QStringLiteral("10"));
    EXPECT_EQ(stepperValue(), 10);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 10.0F);
    EXPECT_EQ(controller->comboEffect->currentIndex(), 0);
    EXPECT_EQ(controller->comboRepair->currentIndex(), 0);
    EXPECT_EQ(controller->editSettings().style, RepairStyle::FlatColor);
}

TEST_F(Settings, LoadingKeepsTheColorOfTheColorWell) {
    controller->colorWellCustomColor->setColor(QColor(9, 8, 7));
    controller->viewDidLoad();
    EXPECT_EQ(controller->colorWellCustomColor->color(), QColor(9, 8, 7));
}

// The edit area size.

TEST_F(Settings, TheFieldFollowsTheStepper) {
    controller->stepperEditAreaSize->setIntegerValue(37);
    controller->OnEditAreaSizeChanged(controller->stepperEditAreaSize);
    EXPECT_EQ(fieldText(), QStringLiteral("37"));
    EXPECT_EQ(stepperValue(), 37);
}

TEST_F(Settings, TheStepperFollowsTheField) {
    type(QStringLiteral("25"));
    EXPECT_EQ(stepperValue(), 25);
    EXPECT_EQ(fieldText(), QStringLiteral("25"));
}

TEST_F(Settings, ATypedSizeIsTheNextClicksRadius) {
    // A dark pixel, 20 pixels from the blemish, which only a large disc covers.
    const Image image = painted(kPhotoSize, [](int row, int column) {
        const bool dark =
            (std::abs(row - 30) <= 1 && std::abs(column - 40) <= 1) || (row == 43 && column == 55);
        return dark ? kBlemish : kSkin;
    });
    openThroughPanel(makePhoto("far.png", image));
    type(QStringLiteral("25"));
    clickPixel({30, 40});
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(43, 55), kSkin);
    reload();
    type(QStringLiteral("12"));
    clickPixel({30, 40});
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(30, 40), kSkin);
    EXPECT_EQ(controller->originalImage().pixel(43, 55), kBlemish);
}

TEST_F(Settings, ATypedSizeIsClampedToTheSteppersBounds) {
    type(QStringLiteral("501"));
    EXPECT_EQ(stepperValue(), 500);
    EXPECT_EQ(fieldText(), QStringLiteral("500"));
    type(QStringLiteral("0"));
    EXPECT_EQ(stepperValue(), 1);
    EXPECT_EQ(fieldText(), QStringLiteral("1"));
    type(QStringLiteral("-30"));
    EXPECT_EQ(stepperValue(), 1);
    EXPECT_EQ(fieldText(), QStringLiteral("1"));
}

TEST_F(Settings, InvalidNumbersLeaveTheSizeWithinItsBounds) {
    for (const char* text : {"", "abc", "1e3", "9999999999", "99999999999999999999999",
                             "-99999999999999999999", "12.5", " 25 "}) {
        SCOPED_TRACE(text);
        type(QString::fromLatin1(text));
        EXPECT_GE(stepperValue(), 1);
        EXPECT_LE(stepperValue(), 500);
        EXPECT_EQ(fieldText(), QString::number(stepperValue()));
    }
}

TEST_F(Settings, TheEditAreaGrowsByTenthsWithinItsBounds) {
    const auto sizeAfter = [this](int steps) {
        controller->StepEditAreaSize(steps);
        EXPECT_EQ(controller->textFieldEditAreaSize->text().toInt(),
                  controller->stepperEditAreaSize->integerValue());
        return controller->stepperEditAreaSize->integerValue();
    };
    EXPECT_EQ(sizeAfter(1), 11);
    EXPECT_EQ(sizeAfter(-3), 8);
    EXPECT_EQ(sizeAfter(-100), 1);
    EXPECT_EQ(sizeAfter(1000), 500);
    EXPECT_EQ(sizeAfter(-1), 450);
}

TEST_F(Settings, ADeletedSizeControlIsFatal) {
    EXPECT_DEATH(
        {
            delete controller->textFieldEditAreaSize.data();
            controller->OnEditAreaSizeChanged(controller->stepperEditAreaSize);
        },
        "gone");
    EXPECT_DEATH(
        {
            delete controller->stepperEditAreaSize.data();
            controller->OnEditAreaSizeChanged(controller->textFieldEditAreaSize);
        },
        "gone");
}

// The threshold.

TEST_F(Settings, TheThresholdMovesByGreyLevelsWithinItsBounds) {
    controller->StepThreshold(3);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 13);
    controller->StepThreshold(-20);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 0);
    controller->StepThreshold(200);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 100);
}

// Effects.

TEST_F(Settings, TheEffectsAreListedInOrder) {
    QStringList titles;
    for (int i = 0; i < controller->comboEffect->count(); ++i)
        titles.append(controller->comboEffect->itemText(i));
    EXPECT_EQ(titles,
              QStringList({QStringLiteral("Normal"), QStringLiteral("Chrome"), QStringLiteral("Fade"),
                           QStringLiteral("Instant"), QStringLiteral("Mono"), QStringLiteral("Noir"),
                           QStringLiteral("Process"), QStringLiteral("Tonal"), QStringLiteral("Transfer")}));
}

TEST_F(Settings, EachEffectIsAppliedToTheWorkingImage) {
    openColoured();
    const Image working = controller->originalImage();
    for (int index = 1; index < 9; ++index) {
        const std::string name = controller->comboEffect->itemText(index).toStdString();
        SCOPED_TRACE(name);
        selectEffect(index);
        EXPECT_TRUE(samePixels(shown(), ImageTools::ApplyEffectOnImage(working, name)));
        EXPECT_FALSE(samePixels(shown(), working));
        EXPECT_EQ(shown().size(), working.size());
        EXPECT_TRUE(controller->originalImage().isSameObject(working));
        EXPECT_TRUE(samePixels(working, coloured()));
    }
}

TEST_F(Settings, EffectsDoNotStack) {
    openColoured();
    selectEffect(4);
    const Image mono = shown();
    selectEffect(5);
    EXPECT_FALSE(samePixels(shown(), mono));
    selectEffect(4);
    EXPECT_TRUE(samePixels(shown(), mono));
}

TEST_F(Settings, NormalShowsTheWorkingImageItself) {
    openColoured();
    selectEffect(8);
    selectEffect(0);
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
}

TEST_F(Settings, WithoutASelectedEffectTheViewIsNotUpdated) {
    openColoured();
    selectEffect(5);
    const Image before = shown();
    selectEffect(-1);
    EXPECT_TRUE(shown().isSameObject(before));
    controller->setOriginalImage(filled(kPhotoSize, kSkin));
    controller->ApplyEffectsOnPreview();
    EXPECT_TRUE(shown().isSameObject(before));
}

TEST_F(Settings, ARepairUnderAnEffectIsMadeInColorAndShownThroughTheEffect) {
    openColoured();
    selectEffect(5);
    clickPixel({20, 20});
    queues.runAll();
    const Image working = controller->originalImage();
    const RGBA32 repaired = working.pixel(20, 20);
    EXPECT_GT(repaired.red(), repaired.blue());
    EXPECT_EQ(working.pixel(50, 50), coloured().pixel(50, 50));
    EXPECT_TRUE(samePixels(shown(), ImageTools::ApplyEffectOnImage(working, "Noir")));
}

TEST_F(Settings, UndoAndRedoAreShownThroughTheEffect) {
    openColoured();
    clickPixel({20, 20});
    queues.runAll();
    const Image repaired = controller->originalImage();
    selectEffect(7);
    controller->OnUndo(nullptr);
    EXPECT_TRUE(samePixels(shown(), ImageTools::ApplyEffectOnImage(coloured(), "Tonal")));
    EXPECT_EQ(controller->comboEffect->currentIndex(), 7);
    controller->OnRedo(nullptr);
    EXPECT_TRUE(samePixels(shown(), ImageTools::ApplyEffectOnImage(repaired, "Tonal")));
}

TEST_F(Settings, AnEffectChosenBeforeAPhotoIsOpenShowsNothing) {
    selectEffect(5);
    EXPECT_FALSE(imageView->image().has_value());
    EXPECT_FALSE(controller->hasImage());
}

TEST_F(Settings, ADeletedEffectControlOrViewIsFatal) {
    openColoured();
    EXPECT_DEATH(
        {
            delete controller->comboEffect.data();
            controller->ApplyEffectsOnPreview();
        },
        "gone");
    EXPECT_DEATH(
        {
            delete controller->imageView.data();
            controller->ApplyEffectsOnPreview();
        },
        "gone");
}

} // namespace

} // namespace complexion
