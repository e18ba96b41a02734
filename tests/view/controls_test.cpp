// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/box.h"
#include "view/color_well.h"
#include "view/slider.h"
#include "view/stepper.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QColorDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QTimerEvent>
#include <QWheelEvent>

#include <gmock/gmock.h>

namespace complexion {

namespace {

void press(QWidget& widget, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
    QMouseEvent down(QEvent::MouseButtonPress, at, at, button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &down);
}

void release(QWidget& widget, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
    QMouseEvent up(QEvent::MouseButtonRelease, at, at, button, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &up);
}

void type(QWidget& widget, Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

void turnWheel(QWidget& widget, int eighthsOfADegree) {
    QWheelEvent event({5, 5}, {5, 5}, {}, {0, eighthsOfADegree}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

class StepperTest : public testing::Test {
protected:
    StepperTest() {
        stepper.setRange(1, 500);
        stepper.setIntegerValue(10);
        stepper.resize(22, 24);
        QObject::connect(&stepper, &Stepper::valueChanged, &stepper,
                         [this](int value) { values.push_back(value); });
        QObject::connect(&stepper, &Stepper::triggered, &stepper, [this] { ++actions; });
    }

    Stepper stepper;
    std::vector<int> values;
    int actions = 0;
};

TEST_F(StepperTest, SettingTheValueFromCodeSendsNoAction) {
    stepper.setIntegerValue(25);
    EXPECT_EQ(stepper.integerValue(), 25);
    EXPECT_THAT(values, testing::ElementsAre(25));
    EXPECT_EQ(actions, 0);
    stepper.setIntegerValue(25);
    EXPECT_EQ(values.size(), 1U);
}

TEST_F(StepperTest, TheValueStaysWithinTheBounds) {
    stepper.setIntegerValue(0);
    EXPECT_EQ(stepper.integerValue(), 1);
    stepper.setIntegerValue(501);
    EXPECT_EQ(stepper.integerValue(), 500);
    stepper.setRange(3, 20);
    EXPECT_EQ(stepper.integerValue(), 20);
    EXPECT_EQ(actions, 0);
}

TEST_F(StepperTest, TheUpperHalfIncreasesAndTheLowerHalfDecreases) {
    press(stepper, {10, 3});
    release(stepper, {10, 3});
    EXPECT_EQ(stepper.integerValue(), 11);
    press(stepper, {10, 20});
    release(stepper, {10, 20});
    EXPECT_EQ(stepper.integerValue(), 10);
    EXPECT_EQ(actions, 2);
    EXPECT_THAT(values, testing::ElementsAre(11, 10));
}

TEST_F(StepperTest, AnotherMouseButtonDoesNothing) {
    press(stepper, {10, 3}, Qt::RightButton);
    release(stepper, {10, 3}, Qt::RightButton);
    EXPECT_EQ(stepper.integerValue(), 10);
}

TEST_F(StepperTest, AnArrowHeldDownRepeats) {
    // Sends the timer event itself instead of waiting for it.
    const auto timers = [this] { return QAbstractEventDispatcher::instance()->registeredTimers(&stepper); };
    stepper.setIncrement(5);
    press(stepper, {10, 3});
    EXPECT_EQ(stepper.integerValue(), 15);
    ASSERT_EQ(timers().size(), 1);
    QTimerEvent event(timers().front().timerId);
    QCoreApplication::sendEvent(&stepper, &event);
    EXPECT_EQ(stepper.integerValue(), 20);
    ASSERT_EQ(timers().size(), 1);
    release(stepper, {10, 3});
    EXPECT_TRUE(timers().isEmpty());
}

TEST_F(StepperTest, KeysAndTheWheelStep) {
    type(stepper, Qt::Key_Up);
    EXPECT_EQ(stepper.integerValue(), 11);
    type(stepper, Qt::Key_Down);
    EXPECT_EQ(stepper.integerValue(), 10);
    turnWheel(stepper, 240);
    EXPECT_EQ(stepper.integerValue(), 12);
    turnWheel(stepper, -120);
    EXPECT_EQ(stepper.integerValue(), 11);
    turnWheel(stepper, 60); // half a notch, as from a touchpad
    EXPECT_EQ(stepper.integerValue(), 11);
    turnWheel(stepper, 60);
    EXPECT_EQ(stepper.integerValue(), 12);
}

TEST_F(StepperTest, SendsNothingAtItsBound) {
    stepper.setIntegerValue(500);
    values.clear();
    type(stepper, Qt::Key_Up);
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(actions, 0);
}

// The threshold's slider.

TEST(SliderTest, StoresTenthsAndSendsNoAction) {
    Slider slider;
    slider.setFloatRange(0, 100);
    std::vector<float> values;
    int moved = 0;
    QObject::connect(&slider, &Slider::floatValueChanged, &slider,
                     [&](float value) { values.push_back(value); });
    QObject::connect(&slider, &QSlider::sliderMoved, &slider, [&] { ++moved; });
    slider.setFloatValue(10.9F);
    EXPECT_EQ(slider.floatValue(), 10.9F);
    slider.setFloatValue(10.94F);
    EXPECT_EQ(slider.floatValue(), 10.9F);
    EXPECT_THAT(values, testing::ElementsAre(10.9F));
    EXPECT_EQ(moved, 0);
}

TEST(SliderTest, StaysWithinItsBounds) {
    Slider slider;
    slider.setFloatRange(0, 100);
    slider.setFloatValue(-3);
    EXPECT_EQ(slider.floatValue(), 0.0F);
    slider.setFloatValue(1000);
    EXPECT_EQ(slider.floatValue(), 100.0F);
}

// The colour well.

class ColorWellTest : public testing::Test {
protected:
    ColorWellTest() {
        well.setColor(Qt::red);
        well.resize(44, 24);
        QObject::connect(&well, &ColorWell::colorChanged, &well,
                         [this](const QColor& color) { colors.push_back(color); });
    }

    /// Clicks the well and performs `answer` on the dialog that it opens.
    void click(const std::function<void(QColorDialog&)>& answer) {
        QTimer::singleShot(0, &well, [&] {
            auto* const dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            answer(*dialog);
        });
        well.click();
    }

    ColorWell well;
    std::vector<QColor> colors;
};

TEST_F(ColorWellTest, AnnouncesAnotherColorOnce) {
    well.setColor(QColor(1, 2, 3));
    well.setColor(QColor(1, 2, 3));
    EXPECT_EQ(well.color(), QColor(1, 2, 3));
    EXPECT_THAT(colors, testing::ElementsAre(QColor(1, 2, 3)));
}

TEST_F(ColorWellTest, IgnoresAnInvalidColor) {
    well.setColor(QColor());
    EXPECT_EQ(well.color(), QColor(Qt::red));
    EXPECT_TRUE(colors.empty());
}

TEST_F(ColorWellTest, AClickOpensADialogThatChoosesTheColor) {
    click([](QColorDialog& dialog) {
        EXPECT_EQ(dialog.currentColor(), QColor(Qt::red));
        dialog.setCurrentColor(QColor(10, 20, 30));
        dialog.accept();
    });
    EXPECT_EQ(well.color(), QColor(10, 20, 30));
    EXPECT_THAT(colors, testing::ElementsAre(QColor(10, 20, 30)));
}

TEST_F(ColorWellTest, ACancelledDialogKeepsTheColor) {
    click([](QColorDialog& dialog) {
        dialog.setCurrentColor(QColor(10, 20, 30));
        dialog.reject();
    });
    EXPECT_EQ(well.color(), QColor(Qt::red));
    EXPECT_TRUE(colors.empty());
}

TEST_F(ColorWellTest, ShowsItsColor) {
    well.setColor(QColor(10, 200, 30));
    EXPECT_EQ(well.grab().toImage().pixelColor(22, 12), QColor(10, 200, 30));
}

// The boxes.

/// Counts the mouse events that reach the widget.
class EventCounter : public QWidget {
public:
    int events = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++events; }
    void mouseReleaseEvent(QMouseEvent*) override { ++events; }
    void mouseMoveEvent(QMouseEvent*) override { ++events; }
};

TEST(BoxTest, APressOnABoxNeverReachesThePhotoBelow) {
    EventCounter root;
    root.resize(100, 100);
    Box box(&root);
    box.setGeometry(10, 10, 50, 50);
    QWidget inside(&box);
    inside.setGeometry(10, 10, 10, 10);
    press(box, {5, 5});
    release(box, {5, 5});
    press(inside, {5, 5});
    release(inside, {5, 5});
    EXPECT_EQ(root.events, 0);
}

TEST(BoxTest, IsBlendedWithThePhotoByItsAlpha) {
    QWidget root;
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(200, 200, 200));
    palette.setColor(QPalette::Base, QColor(0, 0, 0));
    root.setPalette(palette);
    root.setAutoFillBackground(true);
    root.resize(100, 100);
    Box box(&root);
    box.setGeometry(10, 10, 80, 80);
    box.setAlpha(0.8);
    EXPECT_EQ(box.alpha(), 0.8);
    EXPECT_NEAR(root.grab().toImage().pixelColor(50, 50).red(), 40, 1);
    box.setAlpha(1);
    EXPECT_EQ(root.grab().toImage().pixelColor(50, 50).red(), 0);
}

} // namespace

} // namespace complexion
