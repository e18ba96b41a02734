// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/busy_sign.h"

#include "tests/app/window_fixture.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QWindow>

namespace complexion {
namespace {

/// The sign of work that is in progress.
class BusySignInput : public WindowTest {
protected:
    BusySignInput() {
        Q_EMIT controller->longWorkBegan(QStringLiteral("Opening the photo…"));
        QObject::connect(&window.busySign(), &BusySign::cancelled, &window, [this] { ++m_cancelled; });
    }
    ~BusySignInput() override { Q_EMIT controller->longWorkEnded(); }

    /// How often the work is cancelled while this input waits.
    template <class Input>
    int cancelledBy(const Input& post) {
        m_cancelled = 0;
        post();
        Q_EMIT controller->longWorkProgressed(0.5);
        return m_cancelled;
    }

    void postKey(int key) {
        QCoreApplication::postEvent(window.windowHandle(),
                                    new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
    }
    void postClick(QWidget* widget) {
        const QPoint place = widget->mapTo(&window, widget->rect().center());
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            QCoreApplication::postEvent(
                window.windowHandle(),
                new QMouseEvent(type, place, window.mapToGlobal(place), Qt::LeftButton,
                                type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                Qt::NoModifier));
    }

private:
    int m_cancelled = 0;
};

TEST_F(BusySignInput, ProgressIsShownOnTheSignWithAWayToCancel) {
    auto* const button = window.busySign().findChild<QPushButton*>();
    ASSERT_TRUE(button);
    EXPECT_FALSE(button->isVisible());
    EXPECT_EQ(cancelledBy([] {}), 0);
    EXPECT_TRUE(button->isVisible());
    EXPECT_EQ(window.busySign().text(), QStringLiteral("Opening the photo… 50%"));
}

TEST_F(BusySignInput, EscapeCancels) {
    EXPECT_EQ(cancelledBy([&] { postKey(Qt::Key_Escape); }), 1);
}

TEST_F(BusySignInput, AClickOnCancelCancels) {
    Q_EMIT controller->longWorkProgressed(0);
    EXPECT_EQ(cancelledBy([&] { postClick(window.busySign().findChild<QPushButton*>()); }), 1);
}

TEST_F(BusySignInput, ClosingTheWindowCancels) {
    EXPECT_EQ(cancelledBy([&] { QCoreApplication::postEvent(window.windowHandle(), new QCloseEvent); }), 1);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(BusySignInput, OtherInputIsDiscarded) {
    QPushButton other(&window);
    other.show();
    other.raise();
    int clicks = 0;
    QObject::connect(&other, &QPushButton::clicked, &window, [&clicks] { ++clicks; });
    EXPECT_EQ(cancelledBy([&] {
                  postKey(Qt::Key_A);
                  postClick(&other);
              }),
              0);
    EXPECT_EQ(clicks, 0);
    // After the work, everything is as before.
    postClick(&other);
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace complexion
