// SPDX-License-Identifier: GPL-3.0-or-later

// What the controls expose to assistive technology.
#include "tests/app/window_fixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace Qt::StringLiterals;

class Accessibility : public WindowTest {
protected:
    static QAccessibleInterface& of(QWidget* widget) {
        return *QAccessible::queryAccessibleInterface(widget);
    }
};

TEST_F(Accessibility, TheThresholdHasTheNumbersThatAreShown) {
    QAccessibleInterface& slider = of(bar().sliderThreshold);
    EXPECT_EQ(slider.role(), QAccessible::Slider);
    EXPECT_EQ(slider.text(QAccessible::Name), u"Threshold"_s);
    EXPECT_EQ(slider.text(QAccessible::Value), u"10"_s);
    QAccessibleValueInterface* const value = slider.valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->currentValue().toDouble(), 10);
    EXPECT_EQ(value->minimumValue().toDouble(), 0);
    EXPECT_EQ(value->maximumValue().toDouble(), 100);
    EXPECT_EQ(value->minimumStepSize().toDouble(), 1);
    value->setCurrentValue(25);
    EXPECT_EQ(controller->editSettings().threshold, 25.0F);
}

TEST_F(Accessibility, TheEditAreaSizeIsOneSpinBox) {
    QAccessibleInterface& field = of(bar().textFieldEditAreaSize);
    EXPECT_EQ(field.role(), QAccessible::SpinBox);
    EXPECT_EQ(field.text(QAccessible::Name), u"Edit area size"_s);
    EXPECT_EQ(field.text(QAccessible::Value), u"10"_s);
    EXPECT_TRUE(field.state().focusable);
    EXPECT_TRUE(field.state().editable);
    QAccessibleValueInterface* const value = field.valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->currentValue().toInt(), 10);
    EXPECT_EQ(value->minimumValue().toInt(), 1);
    EXPECT_EQ(value->maximumValue().toInt(), 500);
    EXPECT_EQ(value->minimumStepSize().toInt(), 1);
    value->setCurrentValue(25);
    EXPECT_EQ(controller->editSettings().radius, 25);
    EXPECT_EQ(field.text(QAccessible::Value), u"25"_s);
    EXPECT_TRUE(of(bar().stepperEditAreaSize).state().invisible);
    EXPECT_EQ(of(bar().stepperEditAreaSize).text(QAccessible::Name), QString());
}

TEST_F(Accessibility, TheEditAreaSizeCanBeReadAndEditedAsText) {
    QAccessibleInterface& field = of(bar().textFieldEditAreaSize);
    QAccessibleEditableTextInterface* const edit = field.editableTextInterface();
    ASSERT_TRUE(edit);
    edit->replaceText(0, 1, u"4"_s);
    edit->insertText(2, u"2"_s);
    edit->deleteText(1, 2);
    EXPECT_EQ(bar().textFieldEditAreaSize->text(), u"42"_s);

    QAccessibleTextInterface* const text = field.textInterface();
    ASSERT_TRUE(text);
    EXPECT_EQ(text->characterCount(), 2);
    EXPECT_EQ(text->text(1, 2), u"2"_s);
    text->setCursorPosition(1);
    EXPECT_EQ(text->cursorPosition(), 1);
    EXPECT_EQ(text->selectionCount(), 0);
    text->setSelection(0, 1, 2);
    ASSERT_EQ(text->selectionCount(), 1);
    int start = -1;
    int end = -1;
    text->selection(0, &start, &end);
    EXPECT_EQ(start, 1);
    EXPECT_EQ(end, 2);
    EXPECT_EQ(bar().textFieldEditAreaSize->selectedText(), u"2"_s);
    text->removeSelection(0);
    EXPECT_EQ(text->selectionCount(), 0);
}

TEST_F(Accessibility, TheZoomIsANumberThatFollowsThePhoto) {
    QAccessibleInterface& zoom = of(window.contents().zoom);
    ASSERT_TRUE(zoom.valueInterface());
    EXPECT_EQ(zoom.text(QAccessible::Name), u"Zoom"_s);
    EXPECT_EQ(zoom.valueInterface()->currentValue().toInt(), 0);
    open();
    const int fitted = zoom.valueInterface()->currentValue().toInt();
    EXPECT_EQ(zoom.text(QAccessible::Value), u"%1 %"_s.arg(fitted));
    EXPECT_GT(fitted, 0);
    window.actions().zoomIn->trigger();
    const int larger = zoom.valueInterface()->currentValue().toInt();
    EXPECT_NEAR(larger, 1.1 * fitted, 1);
    EXPECT_EQ(zoom.text(QAccessible::Description), u"%1 %"_s.arg(larger));
}

TEST_F(Accessibility, TheZoomsActionOpensItsMenu) {
    open();
    QAccessibleActionInterface* const actions = of(window.contents().zoom).actionInterface();
    const QString show = QAccessibleActionInterface::showMenuAction();
    ASSERT_TRUE(actions->actionNames().contains(show));
    QMenu* const menu = window.contents().zoom->menu();
    actions->doAction(show);
    EXPECT_FALSE(menu->isVisible());
    bool wasShown = false;
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, &wasShown] {
        wasShown = true;
        QTimer::singleShot(0, menu, &QMenu::close);
    });
    QApplication::processEvents();
    EXPECT_TRUE(wasShown);
}

TEST_F(Accessibility, TheHeldComparisonIsPressed) {
    open();
    auto* const button = window.contents().boxCompare->findChild<QAbstractButton*>();
    EXPECT_FALSE(of(button).state().pressed);
    window.actions().compare->trigger();
    EXPECT_TRUE(of(button).state().pressed);
    QTest::keyRelease(&window.rootView(), Qt::Key_B);
    EXPECT_FALSE(of(button).state().pressed);
}

TEST_F(Accessibility, PopUpsAreNamedAndTheirEntriesAreTheirValues) {
    for (const auto& [popUp, name, entry] : {std::tuple(bar().comboRepair, u"Repair"_s, u"Flat color"_s),
                                             std::tuple(bar().comboEffect, u"Effect"_s, u"Normal"_s)}) {
        QAccessibleInterface& accessible = of(popUp);
        EXPECT_EQ(accessible.role(), QAccessible::ComboBox);
        EXPECT_EQ(accessible.text(QAccessible::Name), name);
        EXPECT_EQ(accessible.text(QAccessible::Value), entry);
        EXPECT_EQ(accessible.text(QAccessible::Description), entry);
        ASSERT_EQ(accessible.childCount(), 1);
        EXPECT_EQ(accessible.indexOfChild(accessible.child(0)), 0);
        EXPECT_EQ(accessible.child(0)->childCount(), popUp->count());
        EXPECT_TRUE(accessible.actionInterface()->actionNames().contains(
            QAccessibleActionInterface::showMenuAction()));
    }
    bar().comboEffect->setCurrentIndex(2);
    EXPECT_EQ(of(bar().comboEffect).text(QAccessible::Value), u"Fade"_s);
}

TEST_F(Accessibility, UndoAndRedoAreAnnounced) {
    open();
    QTest::mouseClick(&window.rootView(), Qt::LeftButton, {}, window.rootView().rect().center());
    queues.runAll();
    window.actions().undo->trigger();
    EXPECT_EQ(photo().accessibleDescription(), u"Undone: repair."_s);
    window.actions().redo->trigger();
    EXPECT_EQ(photo().accessibleDescription(), u"Redone: repair."_s);
}

} // namespace
} // namespace complexion
