// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/aim.h"
#include "editor/picked_color.h"
#include "tests/app/photo_input_fixture.h"

#include <QAccessible>
#include <QToolButton>

#include <gmock/gmock.h>

#include <cmath>

namespace complexion {
namespace {

TEST_F(PhotoInputTest, TheDiscReplacesThePointerOverThePhoto) {
    point(centre());
    EXPECT_TRUE(disc().place().has_value());
    EXPECT_EQ(photo().cursor().shape(), Qt::BlankCursor);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&photo(), &leave);
    EXPECT_FALSE(disc().place().has_value());
    EXPECT_EQ(photo().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(PhotoInputTest, TheWheelZoomsAboutThePointer) {
    const QPoint at(300, 180);
    const QPointF before = photo().pixelsToWidget().inverted().map(QPointF(at));
    turnWheel(4, {}, at);
    EXPECT_NEAR(zoom(), std::pow(1.1, 4), 1e-9);
    const QPointF after = photo().pixelsToWidget().inverted().map(QPointF(at));
    EXPECT_NEAR(after.x(), before.x(), 1e-6);
    EXPECT_NEAR(after.y(), before.y(), 1e-6);
    turnWheel(-4, {}, at);
    EXPECT_NEAR(zoom(), std::max(1.0, std::pow(1.1 * 0.9, 4)), 1e-9);
}

TEST_F(PhotoInputTest, APinchZoomsInTheStepsOfTheButtons) {
    pinch(0.06);
    EXPECT_EQ(zoom(), 1);
    pinch(0.06);
    EXPECT_NEAR(zoom(), 1.1, 1e-9);
    pinch(-0.15);
    EXPECT_NEAR(zoom(), 1, 1e-9); // 0.99 is below the limit
}

TEST_F(PhotoInputTest, TheWheelWithShiftChangesTheSizeAndWithCtrlTheThreshold) {
    turnWheel(2, Qt::ShiftModifier);
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 12);
    turnWheel(-1, Qt::ShiftModifier, {400, 200}, /*sideways*/ true);
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), QStringLiteral("11"));
    turnWheel(3, Qt::ControlModifier);
    EXPECT_EQ(bar().sliderThreshold->floatValue(), 13);
    EXPECT_EQ(zoom(), 1);
}

TEST_F(PhotoInputTest, BracketsAndPageKeysChangeTheSize) {
    QTest::keyClick(&photo(), Qt::Key_BracketRight);
    QTest::keyClick(&photo(), Qt::Key_PageUp);
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 12);
    QTest::keyClick(&photo(), Qt::Key_BracketLeft);
    QTest::keyClick(&photo(), Qt::Key_PageDown);
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 10);
}

TEST_F(PhotoInputTest, ZoomKeysZoom) {
    QTest::keyClick(&photo(), Qt::Key_Plus, Qt::ControlModifier);
    QTest::keyClick(&photo(), Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_NEAR(zoom(), 1.21, 1e-9);
    QTest::keyClick(&photo(), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_NEAR(zoom(), 1.21 * 0.9, 1e-9);
    QTest::keyClick(&photo(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(zoom(), 1);
    turnWheel(5);
    QTest::keyClick(&photo(), Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(zoom(), 1); // the photo is small: a smaller scale would leave a gap
}

TEST_F(PhotoInputTest, TheMiddleButtonPansAndNeverClicks) {
    turnWheel(8);
    const Frame before = photo().frame();
    drag(Qt::MiddleButton, {-20, 10});
    EXPECT_EQ(photo().frame(), (Frame{before.x - 20, before.y - 10, before.width, before.height}));
    queues.runAll();
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(PhotoInputTest, WithTheSpaceBarTheLeftButtonPansAndNeverClicks) {
    turnWheel(8);
    QTest::keyPress(&photo(), Qt::Key_Space);
    EXPECT_EQ(photo().cursor().shape(), Qt::OpenHandCursor);
    EXPECT_FALSE(disc().place().has_value());
    const Frame before = photo().frame();
    drag(Qt::LeftButton, {-20, 10});
    EXPECT_EQ(photo().frame(), (Frame{before.x - 20, before.y - 10, before.width, before.height}));
    drag(Qt::LeftButton, {0, 0}); // would be a click without the space bar
    QTest::keyRelease(&photo(), Qt::Key_Space);
    queues.runAll();
    EXPECT_EQ(controller->currenState, 0);
    QTest::mouseClick(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(PhotoInputTest, ArrowKeysMoveTheDiscAndEnterRepairs) {
    QTest::keyClick(&photo(), Qt::Key_Right);
    const PixelPosition start = *disc().place();
    QTest::keyClick(&photo(), Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&photo(), Qt::Key_Up);
    EXPECT_EQ(disc().place(), (PixelPosition{start.row - 1, start.column + 10}));
    QTest::keyClick(&photo(), Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(disc().place()->column, start.column + 10 - 100);
    QTest::keyClick(&photo(), Qt::Key_Return);
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(PhotoInputTest, EnterOnAButtonDoesNotRepair) {
    auto* const button = window.contents().boxZoomIn->findChild<QToolButton*>();
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
    queues.runAll();
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(PhotoInputTest, TheOriginalIsShownWhileTheKeyIsHeld) {
    QTest::keyPress(&photo(), Qt::Key_B);
    EXPECT_TRUE(controller->isShowingSource());
    QTest::keyRelease(&photo(), Qt::Key_B);
    EXPECT_FALSE(controller->isShowingSource());
}

TEST_F(PhotoInputTest, TheOriginalIsShownWhileTheButtonIsHeld) {
    auto* const button = window.contents().boxCompare->findChild<QToolButton*>();
    QTest::mousePress(button, Qt::LeftButton);
    EXPECT_TRUE(controller->isShowingSource());
    QTest::mouseRelease(button, Qt::LeftButton);
    EXPECT_FALSE(controller->isShowingSource());
    button->setFocus();
    QTest::keyPress(button, Qt::Key_Space);
    EXPECT_TRUE(controller->isShowingSource());
    QTest::keyRelease(button, Qt::Key_Space);
    EXPECT_FALSE(controller->isShowingSource());
}

TEST_F(PhotoInputTest, ThePipettePicksTheColorAndRepairsNothing) {
    bar().checkAutodetectColor->setChecked(false);
    bar().pipette->click();
    EXPECT_TRUE(photo().hasFocus());
    point(centre());
    const QColor expected = pickedColor(controller->originalImage(), *disc().place(), 0.2);
    EXPECT_NE(expected, bar().colorWellCustomColor->color());
    QTest::mouseClick(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    EXPECT_EQ(bar().colorWellCustomColor->color(), expected);
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_FALSE(bar().pipette->isChecked());
    QTest::mouseClick(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(PhotoInputTest, EscapeCancelsThePipette) {
    bar().checkAutodetectColor->setChecked(false);
    const QColor before = bar().colorWellCustomColor->color();
    bar().pipette->click();
    QTest::keyClick(&photo(), Qt::Key_Escape);
    EXPECT_FALSE(bar().pipette->isChecked());
    EXPECT_EQ(bar().colorWellCustomColor->color(), before);
}

TEST_F(PhotoInputTest, ThePipetteIsEnabledWithAPhotoAndACustomColor) {
    EXPECT_FALSE(bar().pipette->isEnabled());
    bar().checkAutodetectColor->setChecked(false);
    EXPECT_TRUE(bar().pipette->isEnabled());
    bar().pipette->click();
    bar().checkAutodetectColor->setChecked(true);
    EXPECT_FALSE(bar().pipette->isChecked());
}

TEST_F(PhotoInputTest, TheViewMenuTurnsThePreviewOff) {
    EXPECT_TRUE(window.actions().showPreview->isChecked());
    window.actions().showPreview->trigger();
    point(centre());
    queues.runAll();
    EXPECT_EQ(disc().look(), DiscLook::Plain);
    window.actions().showPreview->trigger();
    queues.runAll();
    EXPECT_EQ(disc().look(), DiscLook::Repairs);
}

// The keyboard and assistive technology.

TEST_F(PhotoInputTest, TheTabOrderIsPhotoButtonsSettings) {
    bar().checkAutodetectColor->setChecked(false);
    std::vector<std::string> names;
    for (int i = 0; i < 17; ++i) {
        names.push_back(window.focusWidget()->accessibleName().toStdString());
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_THAT(names,
                testing::ElementsAre("Photo", "Select image", "Reload image", "Save image", "Zoom in",
                                     "Zoom out", "Reset zoom", "Zoom", "Show the original", "Edit area size",
                                     "Fit", "Threshold", "Repair", "Autodetect Color", "Custom color",
                                     "Pick a color from the photo", "Effect"));
    EXPECT_TRUE(photo().hasFocus());
}

TEST_F(PhotoInputTest, TheLastUndoMovesTheFocusToThePhoto) {
    QTest::mouseClick(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    auto* const undo = window.contents().boxUndo->findChild<QToolButton*>();
    undo->setFocus();
    QTest::keyClick(undo, Qt::Key_Space);
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_TRUE(photo().hasFocus()); // not the redo button, which the same key would trigger
}

TEST_F(PhotoInputTest, ARepairKeepsTheFocusOnTheUndoButton) {
    QTest::mouseClick(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    auto* const undo = window.contents().boxUndo->findChild<QToolButton*>();
    undo->setFocus();
    QTest::mouseClick(&window.rootView(), Qt::LeftButton, {}, centre());
    queues.runAll();
    EXPECT_EQ(controller->currenState, 2);
    EXPECT_TRUE(undo->hasFocus());
}

TEST_F(PhotoInputTest, TheOutcomeOfARepairIsThePhotosDescription) {
    QTest::keyClick(&photo(), Qt::Key_Right);
    QTest::keyClick(&photo(), Qt::Key_Return);
    queues.runAll();
    EXPECT_THAT(photo().accessibleDescription().toStdString(), testing::StartsWith("Repaired "));
    QTest::keyClick(&photo(), Qt::Key_Return);
    queues.runAll();
    EXPECT_EQ(photo().accessibleDescription(),
              QStringLiteral("Not repaired: nothing stands out from the skin."));
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
TEST_F(PhotoInputTest, TheOutcomeOfARepairIsAnnounced) {
    static QStringList spoken;
    spoken.clear();
    const auto before = QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
        if (event->type() == QAccessible::Announcement)
            spoken += static_cast<QAccessibleAnnouncementEvent*>(event)->message();
    });
    QTest::keyClick(&photo(), Qt::Key_Right);
    QTest::keyClick(&photo(), Qt::Key_Return);
    queues.runAll();
    QAccessible::installUpdateHandler(before);
    ASSERT_FALSE(spoken.isEmpty());
    EXPECT_EQ(spoken.last(), photo().accessibleDescription());
}
#endif

TEST_F(PhotoInputTest, ThePressActionOfAssistiveTechnologyRepairsAtTheDisc) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&photo());
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->text(QAccessible::Name), QStringLiteral("Photo"));
    interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(PhotoInputTest, FFitsTheEditAreaToTheBlemishAlsoForAssistiveTechnology) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&photo());
    ASSERT_NE(interface, nullptr);
    EXPECT_TRUE(interface->actionInterface()->actionNames().contains(QStringLiteral("Fit")));
    EXPECT_EQ(interface->actionInterface()->localizedActionName(QStringLiteral("Fit")),
              QStringLiteral("Fit"));
    interface->actionInterface()->doAction(QStringLiteral("Fit"));
    const QString fitted = bar().textFieldEditAreaSize->text();
    EXPECT_NE(fitted, QStringLiteral("10"));
    EXPECT_EQ(photo().accessibleDescription(), QStringLiteral("The edit area fits: %1 pixels.").arg(fitted));

    controller->SetEditAreaSize(10);
    QTest::keyClick(&photo(), Qt::Key_F);
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), fitted);
    controller->SetEditAreaSize(10);
    bar().fitArea->click();
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), fitted);
}

TEST_F(PhotoInputTest, TheStepperIsASpinBoxForAssistiveTechnology) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(bar().stepperEditAreaSize);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->role(), QAccessible::SpinBox);
    ASSERT_NE(interface->valueInterface(), nullptr);
    EXPECT_EQ(interface->valueInterface()->currentValue().toInt(), 10);
    EXPECT_EQ(interface->valueInterface()->maximumValue().toInt(), 500);
    interface->valueInterface()->setCurrentValue(25);
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), QStringLiteral("25"));
}

} // namespace
} // namespace complexion
