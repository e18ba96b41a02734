// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/connections.h"

#include "tests/app/window_fixture.h"
#include "tests/fakes/active_window.h"

#include <QAccessible>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QUrl>

#include <gmock/gmock.h>

namespace complexion {
namespace {

class Connections : public WindowTest {
protected:
    /// Sends a press and a release; the fake clock does not advance in between.
    void click(QWidget& widget, const QPoint& place) {
        QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, place);
    }
};

TEST_F(Connections, ControlsHaveTheirInitialValues) {
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), QStringLiteral("10"));
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 10);
    EXPECT_EQ(bar().sliderThreshold->floatValue(), 10.0F);
    EXPECT_TRUE(bar().checkAutodetectColor->isChecked());
    EXPECT_EQ(bar().comboEffect->count(), 9);
    EXPECT_EQ(bar().comboEffect->currentText(), QStringLiteral("Normal"));
    EXPECT_TRUE(window.contents().boxHint->isVisible());
    EXPECT_TRUE(window.contents().boxHelp->isVisible());
    EXPECT_EQ(window.contents().boxUndo->alpha(), 0.8);
}

TEST_F(Connections, TheNaturalRepairDisablesTheColorControlsAndTheirToolTipsSayWhy) {
    QComboBox& repair = *bar().comboRepair;
    EXPECT_EQ(repair.currentText(), QStringLiteral("Flat color"));
    EXPECT_TRUE(bar().checkAutodetectColor->isEnabled());
    bar().checkAutodetectColor->setChecked(false);
    EXPECT_TRUE(bar().colorWellCustomColor->isEnabled());

    QTest::keyClick(&repair, Qt::Key_Down);
    EXPECT_EQ(repair.currentText(), QStringLiteral("Natural"));
    EXPECT_FALSE(bar().checkAutodetectColor->isEnabled());
    EXPECT_FALSE(bar().colorWellCustomColor->isEnabled());
    EXPECT_TRUE(bar().checkAutodetectColor->toolTip().contains(QStringLiteral("natural repair")));
    EXPECT_TRUE(bar().colorWellCustomColor->toolTip().contains(QStringLiteral("Flat color")));
    EXPECT_EQ(controller->editSettings().style, RepairStyle::Natural);

    QTest::keyClick(&repair, Qt::Key_Up);
    EXPECT_TRUE(bar().checkAutodetectColor->isEnabled());
    EXPECT_TRUE(bar().colorWellCustomColor->isEnabled());
}

TEST_F(Connections, UndoAndRedoNameTheStep) {
    const Actions& actions = window.actions();
    const auto* const undo = window.contents().boxUndo->findChild<QToolButton*>();
    const auto* const redo = window.contents().boxRedo->findChild<QToolButton*>();
    EXPECT_EQ(actions.undo->text(), QStringLiteral("Undo"));
    EXPECT_EQ(actions.redo->text(), QStringLiteral("Redo"));
    open();
    click(window.rootView(), window.rootView().rect().center());
    queues.runAll();
    EXPECT_EQ(actions.undo->text(), QStringLiteral("Undo repair"));
    EXPECT_EQ(actions.undo->toolTip(), QStringLiteral("Undo repair (Ctrl+Z)"));
    EXPECT_EQ(undo->toolTip(), QStringLiteral("Undo repair (Ctrl+Z)"));
    bar().comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    click(window.rootView(), window.rootView().rect().center());
    EXPECT_EQ(actions.undo->text(), QStringLiteral("Undo repair")); // not changed by a repair in progress
    queues.runAll();
    EXPECT_EQ(actions.undo->text(), QStringLiteral("Undo natural repair"));
    actions.undo->trigger();
    EXPECT_EQ(actions.redo->text(), QStringLiteral("Redo natural repair"));
    EXPECT_EQ(redo->toolTip(), QStringLiteral("Redo natural repair (Ctrl+Shift+Z)"));
    EXPECT_EQ(actions.undo->text(), QStringLiteral("Undo repair"));
    actions.undo->trigger();
    EXPECT_EQ(actions.undo->text(), QStringLiteral("Undo"));
    EXPECT_EQ(actions.undo->toolTip(), QStringLiteral("Undo: nothing to undo (Ctrl+Z)"));
    EXPECT_EQ(actions.redo->text(), QStringLiteral("Redo repair"));

    // The buttons keep their names, by which assistive technology finds them; their description says more.
    EXPECT_EQ(undo->accessibleName(), QStringLiteral("Undo"));
    QAccessibleInterface* const accessible =
        QAccessible::queryAccessibleInterface(window.contents().boxRedo->findChild<QToolButton*>());
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Redo"));
    EXPECT_EQ(accessible->text(QAccessible::Description), QStringLiteral("Redo repair (Ctrl+Shift+Z)"));
}

TEST_F(Connections, TheMenuItemsOfUndoAndRedoAreNamedAfterTheStep) {
    open();
    click(window.rootView(), window.rootView().rect().center());
    queues.runAll();
    QMenu* const edit = window.menuBar()->actions().at(1)->menu();
    QAccessibleInterface* const item = QAccessible::queryAccessibleInterface(edit)->child(0);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->text(QAccessible::Name), QStringLiteral("Undo repair"));
}

TEST_F(Connections, CommandsAreEnabledWhenAvailable) {
    const Actions& actions = window.actions();
    EXPECT_TRUE(actions.selectImage->isEnabled());
    for (const QAction* action : {actions.resetImage, actions.saveImage, actions.undo, actions.redo,
                                  actions.zoomIn, actions.zoomOut, actions.resetZoom})
        EXPECT_FALSE(action->isEnabled()) << action->text().toStdString();
    EXPECT_EQ(actions.saveImage->toolTip(), QStringLiteral("Save image: no photo is open (Ctrl+S)"));
    open();
    for (const QAction* action : {actions.resetImage, actions.saveImage, actions.zoomIn})
        EXPECT_TRUE(action->isEnabled()) << action->text().toStdString();
    EXPECT_EQ(actions.saveImage->toolTip(), QStringLiteral("Save image (Ctrl+S)"));
    EXPECT_FALSE(actions.undo->isEnabled());
    EXPECT_EQ(actions.undo->toolTip(), QStringLiteral("Undo: nothing to undo (Ctrl+Z)"));
    click(window.rootView(), window.rootView().rect().center());
    queues.runAll();
    EXPECT_TRUE(actions.undo->isEnabled());
    actions.undo->trigger();
    EXPECT_FALSE(actions.undo->isEnabled());
    EXPECT_TRUE(actions.redo->isEnabled());
}

TEST_F(Connections, TheFieldFollowsTheStepper) {
    Stepper& stepper = *bar().stepperEditAreaSize;
    click(stepper, {stepper.width() / 2, 3});
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), QStringLiteral("11"));
    click(stepper, {stepper.width() / 2, stepper.height() - 3});
    click(stepper, {stepper.width() / 2, stepper.height() - 3});
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), QStringLiteral("9"));
}

TEST_F(Connections, ATypedSizeSetsTheStepper) {
    QLineEdit& field = *bar().textFieldEditAreaSize;
    field.selectAll();
    QTest::keyClicks(&field, QStringLiteral("25"));
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 10);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 25);
}

TEST_F(Connections, ATypedSizeIsClampedToTheSteppersBounds) {
    QLineEdit& field = *bar().textFieldEditAreaSize;
    for (const auto& [typed, expected] : {std::pair("999", 500), std::pair("0", 1), std::pair("000000", 1)}) {
        field.selectAll();
        QTest::keyClicks(&field, QString::fromLatin1(typed));
        QTest::keyClick(&field, Qt::Key_Return);
        EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), expected);
        EXPECT_EQ(field.text(), QString::number(expected));
    }
}

TEST_F(Connections, AnEmptiedFieldKeepsTheSize) {
    QLineEdit& field = *bar().textFieldEditAreaSize;
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 10);
    EXPECT_EQ(field.text(), QStringLiteral("10"));
}

TEST_F(Connections, ATypedFractionIsRounded) {
    QLineEdit& field = *bar().textFieldEditAreaSize;
    for (const auto& [typed, expected] :
         {std::pair("12.7", 13), std::pair("12,7", 13), std::pair("12.5", 13), std::pair("12.49", 12),
          std::pair("7.", 7), std::pair(".6", 1), std::pair("500.4", 500), std::pair("0.2", 1)}) {
        field.selectAll();
        QTest::keyClicks(&field, QString::fromLatin1(typed));
        EXPECT_EQ(field.text(), QString::fromLatin1(typed));
        QTest::keyClick(&field, Qt::Key_Return);
        EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), expected) << typed;
        EXPECT_EQ(field.text(), QString::number(expected));
    }
}

TEST_F(Connections, EscapeInTheFieldRevertsIt) {
    open();
    test::activate(window);
    QLineEdit& field = *bar().textFieldEditAreaSize;
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, QStringLiteral("25"));
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_EQ(field.text(), QStringLiteral("10"));
    EXPECT_TRUE(photo().hasFocus());
    EXPECT_EQ(bar().stepperEditAreaSize->integerValue(), 10);
}

TEST_F(Connections, ArrowKeysInTheFieldStep) {
    QLineEdit& field = *bar().textFieldEditAreaSize;
    QTest::keyClick(&field, Qt::Key_Up);
    EXPECT_EQ(field.text(), QStringLiteral("11"));
    QTest::keyClick(&field, Qt::Key_PageDown);
    EXPECT_EQ(field.text(), QStringLiteral("1"));
}

TEST_F(Connections, SettingAControlFromCodeSendsNoAction) {
    open();
    bar().comboEffect->setCurrentIndex(4);
    EXPECT_TRUE(photo().image()->isSameObject(controller->originalImage()));
    bar().stepperEditAreaSize->setIntegerValue(77);
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), QStringLiteral("10"));
}

TEST_F(Connections, ChoosingAnEffectAppliesIt) {
    open();
    QTest::keyClick(bar().comboEffect, Qt::Key_Down);
    EXPECT_EQ(bar().comboEffect->currentText(), QStringLiteral("Chrome"));
    EXPECT_FALSE(photo().image()->isSameObject(controller->originalImage()));
}

TEST_F(Connections, TheCustomColorIsEnabledWithoutAutodetection) {
    EXPECT_FALSE(bar().colorWellCustomColor->isEnabled());
    QTest::mouseClick(bar().checkAutodetectColor, Qt::LeftButton, Qt::NoModifier,
                      {10, bar().checkAutodetectColor->height() / 2});
    EXPECT_TRUE(bar().colorWellCustomColor->isEnabled());
}

TEST_F(Connections, AClickOnThePhotoRepairs) {
    open();
    click(photo(), window.rootView().rect().center());
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(Connections, TheSecondClickOfADoubleClickRepairs) {
    open();
    const QPoint center = photo().rect().center();
    click(photo(), center);
    QTest::mouseDClick(&photo(), Qt::LeftButton, Qt::NoModifier, center);
    QTest::mouseRelease(&photo(), Qt::LeftButton, Qt::NoModifier, center);
    EXPECT_EQ(queues.backgroundCount(), 2U);
}

TEST_F(Connections, OtherMouseButtonsDoNotRepair) {
    open();
    QTest::mouseClick(&photo(), Qt::RightButton);
    QTest::mouseClick(&photo(), Qt::MiddleButton);
    queues.runAll(); // the preview may be computed
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(Connections, APressOnABoxNeverReachesThePhoto) {
    open();
    const WindowContents& contents = window.contents();
    for (Box* box : std::vector<Box*>{contents.boxUndo, contents.boxZoomIn, contents.boxEditSettings}) {
        click(*box, {2, box->height() / 2});
        click(*box, box->rect().center());
        for (QWidget* widget : box->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            click(*widget, {1, 1});
    }
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(Connections, MousePositionsAreFromTheBottomLeft) {
    std::vector<MouseEvent> events;
    const auto record = [&events](const MouseEvent& event) { events.push_back(event); };
    RootView& root = window.rootView();
    QObject::connect(&root, &RootView::mouseDown, &root, record);
    QObject::connect(&root, &RootView::mouseDragged, &root, record);
    QObject::connect(&root, &RootView::mouseUp, &root, record);
    QTest::mousePress(root.imageView(), Qt::LeftButton, Qt::NoModifier, {300, 100});
    QTest::mouseMove(root.imageView(), {304, 102});
    QTest::mouseRelease(root.imageView(), Qt::LeftButton, Qt::NoModifier, {304, 102});
    ASSERT_EQ(events.size(), 3U);
    const double height = root.height();
    EXPECT_EQ(events[0].locationInWindow, (Point{300, height - 100}));
    EXPECT_EQ(events[1].locationInWindow, (Point{304, height - 102}));
    EXPECT_EQ(events[1].deltaX, 4);
    EXPECT_EQ(events[1].deltaY, 2);
    EXPECT_EQ(events[2].deltaX, 0);
}

TEST_F(Connections, AResizeKeepsAFittedPhotoFitted) {
    open();
    window.resize(1300, 820);
    const QSize area = window.rootView().size();
    EXPECT_EQ(photo().frame(),
              (Frame{0, 0, static_cast<double>(area.width()), static_cast<double>(area.height())}));
}

TEST_F(Connections, ADropOnABoxIsADropOnThePhoto) {
    const std::filesystem::path path = platform.photos() / "dropped.png";
    ASSERT_TRUE(ImageTools::SaveImage(filled({60, 40}, kSkin), path, "png"));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path.string()))});
    const QPoint place = window.contents().boxHint->geometry().center();
    RootView& root = window.rootView();
    EXPECT_FALSE(window.contents().boxHint->acceptDrops());
    EXPECT_FALSE(bar().textFieldEditAreaSize->acceptDrops());
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&root, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&root, &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_EQ(controller->originalImagePath, path);
    EXPECT_FALSE(window.contents().boxHint->isVisible());
}

TEST_F(Connections, AClickOnTheHintCardOpensThePanel) {
    dialogs.expectOpenPanel(cancelled());
    click(*window.contents().boxHint->findChild<QAbstractButton*>(), {20, 20});
    EXPECT_EQ(dialogs.shownCount(), 1);
}

TEST_F(Connections, AButtonAndItsShortcutRunTheSameCommand) {
    dialogs.expectOpenPanel(cancelled());
    click(*window.contents().boxSelectImage->findChild<QToolButton*>(), {20, 20});
    dialogs.expectOpenPanel(cancelled());
    test::activate(window);
    QTest::keySequence(&window, QKeySequence::Open);
    EXPECT_EQ(dialogs.shownCount(), 2);
}

TEST_F(Connections, ClosingAsksOnceAndAnsweringNoKeepsTheWindow) {
    open();
    dialogs.expectQuestion(kExitQuestion, kSecondButton);
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(dialogs.shownCount(), 1);
    EXPECT_EQ(filesIn(platform.states()).size(), 1U);
}

TEST_F(Connections, ClosingAndAnsweringYesDeletesTheStates) {
    open();
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(filesIn(platform.states()).empty());
    controller->stateImagesPath.clear();
}

TEST_F(Connections, QuittingAsksOnce) {
    open();
    dialogs.expectQuestion(kExitQuestion, kSecondButton);
    window.actions().quit->trigger();
    EXPECT_EQ(platform.terminations, 0);
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    window.actions().quit->trigger();
    EXPECT_EQ(platform.terminations, 1);
    EXPECT_EQ(dialogs.shownCount(), 2);
}

TEST_F(Connections, LongWorkShowsABusySign) {
    Q_EMIT controller->longWorkBegan(QStringLiteral("Opening the photo…"));
    Q_EMIT controller->longWorkBegan(QStringLiteral("Writing…"));
    EXPECT_TRUE(window.busySign().isVisible());
    EXPECT_EQ(window.busySign().text(), QStringLiteral("Writing…"));
    ASSERT_TRUE(QApplication::overrideCursor());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    Q_EMIT controller->longWorkEnded();
    EXPECT_TRUE(window.busySign().isVisible());
    Q_EMIT controller->longWorkEnded();
    EXPECT_FALSE(window.busySign().isVisible());
    EXPECT_FALSE(QApplication::overrideCursor());
}

} // namespace
} // namespace complexion
