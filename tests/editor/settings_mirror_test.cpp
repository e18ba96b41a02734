// SPDX-License-Identifier: GPL-3.0-or-later

// The settings that a repair reads, and the announcement of changes.
#include "tests/editor/editor_fixture.h"

namespace complexion {

namespace {

class SettingsMirror : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        QObject::connect(controller.get(), &ViewController::settingsChanged, [this] { ++settingsChanges; });
        QObject::connect(controller.get(), &ViewController::stateChanged, [this] { ++stateChanges; });
    }

    int settingsChanges = 0;
    int stateChanges = 0;
};

TEST_F(SettingsMirror, HasTheInitialValues) {
    controller->colorWellCustomColor->setColor(QColor(10, 20, 30));
    controller->viewDidLoad();
    const EditSettings settings = controller->editSettings();
    EXPECT_EQ(settings.radius, 10);
    EXPECT_EQ(settings.colorType, 1);
    EXPECT_NEAR(settings.customColor.red, 10 / 255.0, 1e-4);
    EXPECT_NEAR(settings.customColor.green, 20 / 255.0, 1e-4);
    EXPECT_NEAR(settings.customColor.blue, 30 / 255.0, 1e-4);
    EXPECT_EQ(settings.threshold, 10);
    EXPECT_EQ(settings.style, RepairStyle::FlatColor);
}

TEST_F(SettingsMirror, FollowsAndAnnouncesEachChange) {
    controller->stepperEditAreaSize->setIntegerValue(33);
    EXPECT_EQ(controller->editSettings().radius, 33);
    EXPECT_EQ(settingsChanges, 1);
    controller->checkAutodetectColor->setChecked(false);
    EXPECT_EQ(controller->editSettings().colorType, 0);
    EXPECT_EQ(settingsChanges, 2);
    controller->checkAutodetectColor->setChecked(true);
    EXPECT_EQ(controller->editSettings().colorType, 1);
    EXPECT_EQ(settingsChanges, 3);
    controller->colorWellCustomColor->setColor(QColor(1, 2, 3));
    EXPECT_NEAR(controller->editSettings().customColor.blue, 3 / 255.0, 1e-4);
    EXPECT_EQ(settingsChanges, 4);
    controller->sliderThreshold->setFloatValue(21.5F);
    EXPECT_EQ(controller->editSettings().threshold, 21.5F);
    EXPECT_EQ(settingsChanges, 5);
    controller->comboRepair->setCurrentIndex(1);
    EXPECT_EQ(controller->editSettings().style, RepairStyle::Natural);
    EXPECT_EQ(settingsChanges, 6);
}

TEST_F(SettingsMirror, AnEffectIndexOutOfRangeAppliesNoEffect) {
    openThroughPanel(makePhoto());
    selectEffect(5);
    const Image noir = shown();
    const Image working = controller->originalImage();
    controller->comboEffect->addItem(QStringLiteral("Another"));
    selectEffect(9);
    EXPECT_TRUE(shown().isSameObject(noir));
    EXPECT_TRUE(controller->withEffect(working).isSameObject(working));
    selectEffect(8);
    EXPECT_TRUE(samePixels(shown(), ImageTools::ApplyEffectOnImage(working, "Transfer")));
    selectEffect(0);
    EXPECT_TRUE(controller->withEffect(working).isSameObject(working));
    selectEffect(-1);
    EXPECT_TRUE(controller->withEffect(working).isSameObject(working));
}

TEST_F(SettingsMirror, ChangesOfTheShownImageAreAnnounced) {
    openThroughPanel(makePhoto());
    stateChanges = 0;
    controller->ApplyEffectsOnPreview();
    EXPECT_EQ(stateChanges, 1);
    controller->ShowSource(true);
    EXPECT_EQ(stateChanges, 2);
    EXPECT_TRUE(controller->isShowingSource());
    controller->ShowSource(false);
    EXPECT_EQ(stateChanges, 3);
    EXPECT_FALSE(controller->isShowingSource());
}

TEST_F(SettingsMirror, WithoutAPhotoTheSourceIsNotShown) {
    controller->ShowSource(true);
    EXPECT_FALSE(controller->isShowingSource());
}

TEST_F(SettingsMirror, AStepChangesTheEditAreaSizeByAtLeastOnePixel) {
    const auto sizeAfter = [this](int start, int steps) {
        controller->stepperEditAreaSize->setIntegerValue(start);
        controller->StepEditAreaSize(steps);
        EXPECT_EQ(controller->textFieldEditAreaSize->text().toInt(),
                  controller->stepperEditAreaSize->integerValue());
        return controller->stepperEditAreaSize->integerValue();
    };
    EXPECT_EQ(sizeAfter(9, 1), 10);
    EXPECT_EQ(sizeAfter(9, -1), 8);
    EXPECT_EQ(sizeAfter(19, 1), 20);
    EXPECT_EQ(sizeAfter(20, 1), 22);
    EXPECT_EQ(sizeAfter(20, -1), 18);
    EXPECT_EQ(sizeAfter(100, 2), 121);
    EXPECT_EQ(sizeAfter(100, 0), 100);
}

TEST_F(SettingsMirror, InvalidNumbersKeepTheSize) {
    controller->stepperEditAreaSize->setIntegerValue(25);
    for (const char* text : {"", "abc", "-"}) {
        controller->textFieldEditAreaSize->setText(QString::fromLatin1(text));
        controller->OnEditAreaSizeChanged(controller->textFieldEditAreaSize);
        EXPECT_EQ(controller->stepperEditAreaSize->integerValue(), 25) << text;
        EXPECT_EQ(controller->textFieldEditAreaSize->text(), QStringLiteral("25")) << text;
    }
}

TEST_F(SettingsMirror, ADeletedControlIsFatalEvenAfterAnotherChanges) {
    const auto readWithout = [this](QWidget* control) {
        delete control;
        if (controller->sliderThreshold)
            controller->sliderThreshold->setFloatValue(50);
        if (controller->stepperEditAreaSize)
            controller->stepperEditAreaSize->setIntegerValue(50);
        (void)controller->editSettings();
    };
    EXPECT_DEATH(readWithout(controller->stepperEditAreaSize), "stepperEditAreaSize is gone");
    EXPECT_DEATH(readWithout(controller->checkAutodetectColor), "checkAutodetectColor is gone");
    EXPECT_DEATH(readWithout(controller->colorWellCustomColor), "colorWellCustomColor is gone");
    EXPECT_DEATH(readWithout(controller->sliderThreshold), "sliderThreshold is gone");
    EXPECT_DEATH(readWithout(controller->comboRepair), "comboRepair is gone");
}

TEST_F(SettingsMirror, ASenderOtherThanTheFieldMakesTheFieldFollowTheStepper) {
    controller->textFieldEditAreaSize->setText(QStringLiteral("25"));
    controller->OnEditAreaSizeChanged(nullptr);
    EXPECT_EQ(controller->stepperEditAreaSize->integerValue(), 10);
    EXPECT_EQ(controller->textFieldEditAreaSize->text(), QStringLiteral("10"));
}

} // namespace

} // namespace complexion
