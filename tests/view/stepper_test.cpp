// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/stepper.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace complexion {
namespace {

class StepperTest : public testing::Test {
protected:
    StepperTest() {
        stepper.setRange(1, 500);
        stepper.setIntegerValue(10);
        stepper.resize(stepper.sizeHint());
    }

    void clickUpper() { click(stepper.height() / 4); }
    void clickLower() { click(stepper.height() * 3 / 4); }
    void click(int y) {
        QTest::mouseClick(&stepper, Qt::LeftButton, Qt::NoModifier, {stepper.width() / 2, y});
    }

    void turnWheel(int eighthsOfDegree) {
        QWheelEvent event({5, 5}, {5, 5}, {}, {0, eighthsOfDegree}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&stepper, &event);
    }

    Stepper stepper;
};

TEST_F(StepperTest, TheUpperArrowRaisesAndTheLowerLowers) {
    QSignalSpy triggered(&stepper, &Stepper::triggered);
    clickUpper();
    EXPECT_EQ(stepper.integerValue(), 11);
    clickLower();
    clickLower();
    EXPECT_EQ(stepper.integerValue(), 9);
    EXPECT_EQ(triggered.count(), 3);
}

TEST_F(StepperTest, SettingTheValueFromCodeTriggersNothing) {
    QSignalSpy triggered(&stepper, &Stepper::triggered);
    QSignalSpy changed(&stepper, &Stepper::valueChanged);
    stepper.setIntegerValue(77);
    stepper.setIntegerValue(77);
    EXPECT_EQ(triggered.count(), 0);
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(StepperTest, StaysWithinItsBounds) {
    stepper.setIntegerValue(501);
    EXPECT_EQ(stepper.integerValue(), 500);
    QSignalSpy triggered(&stepper, &Stepper::triggered);
    clickUpper();
    EXPECT_EQ(stepper.integerValue(), 500);
    EXPECT_EQ(triggered.count(), 0);
    stepper.setIntegerValue(-3);
    EXPECT_EQ(stepper.integerValue(), 1);
}

TEST_F(StepperTest, NarrowerBoundsMoveTheValue) {
    stepper.setRange(20, 30);
    EXPECT_EQ(stepper.integerValue(), 20);
}

TEST_F(StepperTest, StepsByItsIncrement) {
    stepper.setIncrement(5);
    clickUpper();
    EXPECT_EQ(stepper.integerValue(), 15);
}

TEST_F(StepperTest, ArrowKeysStepAndPageKeysStepTenTimes) {
    QTest::keyClick(&stepper, Qt::Key_Up);
    EXPECT_EQ(stepper.integerValue(), 11);
    QTest::keyClick(&stepper, Qt::Key_PageUp);
    EXPECT_EQ(stepper.integerValue(), 21);
    QTest::keyClick(&stepper, Qt::Key_Down);
    QTest::keyClick(&stepper, Qt::Key_PageDown);
    EXPECT_EQ(stepper.integerValue(), 10);
}

TEST_F(StepperTest, TheWheelStepsByNotchesAndAddsUpSmallTurns) {
    turnWheel(120);
    EXPECT_EQ(stepper.integerValue(), 11);
    turnWheel(-60);
    EXPECT_EQ(stepper.integerValue(), 11);
    turnWheel(-60);
    EXPECT_EQ(stepper.integerValue(), 10);
    turnWheel(360);
    EXPECT_EQ(stepper.integerValue(), 13);
}

TEST_F(StepperTest, OtherMouseButtonsDoNothing) {
    QTest::mouseClick(&stepper, Qt::RightButton, Qt::NoModifier, {5, 3});
    EXPECT_EQ(stepper.integerValue(), 10);
}

} // namespace
} // namespace complexion
