// SPDX-License-Identifier: GPL-3.0-or-later

// What the controls expose to assistive technology.
#include "tests/app/window_fixture.h"

#include <QAccessible>
#include <QComboBox>
#include <QTest>

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
