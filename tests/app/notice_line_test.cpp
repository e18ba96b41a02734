// SPDX-License-Identifier: GPL-3.0-or-later

// The line over the photo that says something once.
#include "app/notice_line.h"

#include "tests/app/window_fixture.h"
#include "tests/fakes/active_window.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class NoticeLineTest : public WindowTest {
protected:
    NoticeLineTest() {
        test::activate(window);
        QTest::mouseMove(&photo(), QPoint(5, 5));
        QApplication::processEvents();
    }

    void present(const QString& text) {
        Q_EMIT controller->noticed(text);
        QApplication::processEvents();
    }

    NoticeLine& notice() { return *window.contents().notice; }
};

const QString kText = u"In the saved copy: only page 1 of 4."_s;

TEST_F(NoticeLineTest, IsHiddenAtFirst) {
    EXPECT_TRUE(notice().isHidden());
}

TEST_F(NoticeLineTest, IsShownAboveTheSettingsInsideTheWindow) {
    for (const QString& text : {kText, QString(40, u'x') + u' ' + kText.repeated(9)}) {
        present(text);
        ASSERT_TRUE(notice().isVisible());
        EXPECT_EQ(notice().text(), text);
        EXPECT_LT(notice().geometry().bottom(), bar().geometry().top());
        EXPECT_TRUE(window.rootView().rect().contains(notice().geometry()));
        EXPECT_GE(notice().height(), notice().sizeFor(notice().width()).height());
    }
}

TEST_F(NoticeLineTest, IsOpaqueToTheMouse) {
    open();
    present(kText);
    QTest::mouseClick(&notice(), Qt::LeftButton);
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(NoticeLineTest, DisappearsAfterTheTimeItTakesToRead) {
    present(kText);
    const std::chrono::milliseconds time = NoticeLine::readingTime(kText);
    EXPECT_GE(time, 5s);
    EXPECT_GT(NoticeLine::readingTime(kText + kText), time);
    notice().advance(time - 1ms);
    EXPECT_TRUE(notice().isVisible());
    notice().advance(1ms);
    EXPECT_FALSE(notice().isVisible());
}

TEST_F(NoticeLineTest, TheTimePassesByItself) {
    present(kText);
    notice().advance(NoticeLine::readingTime(kText) - 1ms);
    EXPECT_TRUE(QTest::qWaitFor([&] { return notice().isHidden(); }));
}

TEST_F(NoticeLineTest, StaysWhileItHasTheFocusAndThenForItsWholeTime) {
    present(kText);
    notice().setFocus(Qt::TabFocusReason);
    notice().advance(1h);
    EXPECT_TRUE(notice().isVisible());
    photo().setFocus();
    notice().advance(NoticeLine::readingTime(kText) - 1ms);
    EXPECT_TRUE(notice().isVisible());
    notice().advance(1ms);
    EXPECT_FALSE(notice().isVisible());
}

TEST_F(NoticeLineTest, StaysWhileThePointerIsOnIt) {
    present(kText);
    notice().setAttribute(Qt::WA_UnderMouse); // what entering it sets
    notice().advance(1h);
    EXPECT_TRUE(notice().isVisible());
    notice().setAttribute(Qt::WA_UnderMouse, false);
    notice().advance(1h);
    EXPECT_FALSE(notice().isVisible());
}

TEST_F(NoticeLineTest, StaysWhileAnAlertIsInFront) {
    QWidget alert;
    alert.show();
    test::activate(alert);
    present(kText);
    notice().advance(1h);
    EXPECT_TRUE(notice().isVisible());
    alert.hide();
    test::activate(window);
    notice().advance(1h);
    EXPECT_FALSE(notice().isVisible());
}

TEST_F(NoticeLineTest, AClickEndsIt) {
    present(kText);
    QTest::mouseClick(&notice(), Qt::LeftButton);
    EXPECT_FALSE(notice().isVisible());
}

TEST_F(NoticeLineTest, KeysEndItAndGiveTheFocusToThePhoto) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape}) {
        present(kText);
        notice().setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(notice().hasFocus());
        QTest::keyClick(&notice(), key);
        EXPECT_FALSE(notice().isVisible());
        EXPECT_TRUE(photo().hasFocus());
    }
}

TEST_F(NoticeLineTest, TheNextTextReplacesItAndAnEmptyOneEndsIt) {
    present(kText);
    notice().advance(NoticeLine::readingTime(kText) - 1ms);
    present(u"Another."_s);
    EXPECT_EQ(notice().text(), u"Another."_s);
    notice().advance(NoticeLine::readingTime(u"Another."_s) - 1ms);
    EXPECT_TRUE(notice().isVisible());
    present({});
    EXPECT_FALSE(notice().isVisible());
}

TEST_F(NoticeLineTest, IsAnAlertForAssistiveTechnology) {
    present(kText);
    const QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&notice());
    ASSERT_TRUE(accessible);
    EXPECT_EQ(accessible->role(), QAccessible::AlertMessage);
    EXPECT_EQ(accessible->text(QAccessible::Name), kText);
}

} // namespace
} // namespace complexion
