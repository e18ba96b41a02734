// SPDX-License-Identifier: GPL-3.0-or-later

// Fingers and a stylus on the photo.
#include "tests/app/photo_input_fixture.h"

#include <QTabletEvent>

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {
namespace {

class TouchInputTest : public PhotoInputTest {
protected:
    QTest::QTouchEventWidgetSequence touch() { return QTest::touchEvent(&photo(), device(), false); }
    QPoint at(int x, int y) { return centre() + QPoint(x, y); }
    bool wasRepaired() {
        queues.runAll();
        return controller->canUndo();
    }

    static QPointingDevice* device() {
        static QPointingDevice* const screen =
            QTest::createTouchDevice(QInputDevice::DeviceType::TouchScreen);
        return screen;
    }
};

TEST_F(TouchInputTest, ATapRepairs) {
    touch().press(0, at(0, 0), &photo()).commit();
    EXPECT_TRUE(disc().place().has_value()); // the preview
    touch().release(0, at(0, 0), &photo()).commit();
    EXPECT_TRUE(wasRepaired());
}

TEST_F(TouchInputTest, ADragOfOneFingerMovesThePhotoAndRepairsNothing) {
    turnWheel(8);
    const Frame before = photo().frame();
    touch().press(0, at(0, 0), &photo()).commit();
    touch().move(0, at(30, 20), &photo()).commit();
    touch().move(0, at(60, 40), &photo()).commit();
    touch().release(0, at(60, 40), &photo()).commit();
    EXPECT_NEAR(photo().frame().x - before.x, 60, 1e-9);
    EXPECT_NEAR(photo().frame().y - before.y, -40, 1e-9);
    EXPECT_FALSE(wasRepaired());
}

TEST_F(TouchInputTest, TwoFingersMoveThePhoto) {
    turnWheel(8);
    const Frame before = photo().frame();
    touch().press(0, at(-40, 0), &photo()).press(1, at(40, 0), &photo()).commit();
    touch().move(0, at(-20, 10), &photo()).move(1, at(60, 10), &photo()).commit();
    touch().release(0, at(-20, 10), &photo()).release(1, at(60, 10), &photo()).commit();
    EXPECT_NEAR(photo().frame().x - before.x, 20, 1e-9);
    EXPECT_NEAR(photo().frame().y - before.y, -10, 1e-9);
    EXPECT_EQ(photo().frame().width, before.width);
    EXPECT_FALSE(wasRepaired());
}

TEST_F(TouchInputTest, APinchZoomsAboutItsCentreInTheStepsOfTheButtons) {
    const QPointF before = photo().pixelsToWidget().inverted().map(QPointF(at(50, 20)));
    touch().press(0, at(50 - 40, 20), &photo()).press(1, at(50 + 40, 20), &photo()).commit();
    touch().move(0, at(50 - 50, 20), &photo()).move(1, at(50 + 50, 20), &photo()).commit();
    EXPECT_NEAR(zoom(), std::pow(1.1, 2), 1e-9); // 1.25, in whole steps
    touch().move(0, at(50 - 60, 20), &photo()).move(1, at(50 + 60, 20), &photo()).commit();
    EXPECT_NEAR(zoom(), std::pow(1.1, 4), 1e-9); // 1.5
    const QPointF after = photo().pixelsToWidget().inverted().map(QPointF(at(50, 20)));
    EXPECT_NEAR(after.x(), before.x(), 1e-6);
    EXPECT_NEAR(after.y(), before.y(), 1e-6);
    touch().move(0, at(50 - 30, 20), &photo()).move(1, at(50 + 30, 20), &photo()).commit();
    EXPECT_LT(zoom(), 1.1);
    touch().release(0, at(50 - 30, 20), &photo()).release(1, at(50 + 30, 20), &photo()).commit();
    EXPECT_FALSE(wasRepaired());
}

TEST_F(TouchInputTest, AFingerBeforeOrAfterAPinchRepairsNothing) {
    touch().press(0, at(0, 0), &photo()).commit();
    touch().stationary(0).press(1, at(40, 0), &photo()).commit();
    touch().stationary(0).release(1, at(40, 0), &photo()).commit();
    touch().release(0, at(0, 0), &photo()).commit();
    EXPECT_FALSE(wasRepaired());
    EXPECT_FALSE(disc().place().has_value());
    // The next tap repairs again.
    touch().press(0, at(0, 0), &photo()).commit();
    touch().release(0, at(0, 0), &photo()).commit();
    EXPECT_TRUE(wasRepaired());
}

TEST_F(TouchInputTest, TheDiscLeavesWithTheFinger) {
    touch().press(0, at(0, 0), &photo()).commit();
    touch().release(0, at(0, 0), &photo()).commit();
    queues.runAll();
    EXPECT_FALSE(disc().place().has_value());
}

class StylusInputTest : public PhotoInputTest {
protected:
    void send(QEvent::Type type, QPoint by, Qt::MouseButton button, Qt::MouseButtons buttons,
              QPointingDevice::PointerType end = QPointingDevice::PointerType::Pen) {
        const bool isEraser = end == QPointingDevice::PointerType::Eraser;
        static const QPointingDevice pen(QStringLiteral("pen"), 41, QInputDevice::DeviceType::Stylus,
                                         QPointingDevice::PointerType::Pen,
                                         QInputDevice::Capability::Position, 1, 3);
        static const QPointingDevice eraser(QStringLiteral("eraser"), 42, QInputDevice::DeviceType::Stylus,
                                            QPointingDevice::PointerType::Eraser,
                                            QInputDevice::Capability::Position, 1, 3);
        const QPointF position = centre() + by;
        QTabletEvent event(type, isEraser ? &eraser : &pen, position, photo().mapToGlobal(position), 0.5, 0,
                           0, 0, 0, 0, {}, button, buttons);
        event.ignore();
        QApplication::sendEvent(&photo(), &event);
        m_isAccepted = event.isAccepted();
    }

    bool m_isAccepted = false;
};

TEST_F(StylusInputTest, TheTipAndHoveringAreLeftToTheToolkitsMouseEvents) {
    EXPECT_TRUE(photo().hasTabletTracking());
    send(QEvent::TabletMove, {}, Qt::NoButton, {});
    EXPECT_FALSE(m_isAccepted);
    send(QEvent::TabletPress, {}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_FALSE(m_isAccepted);
    send(QEvent::TabletRelease, {}, Qt::LeftButton, {});
    EXPECT_FALSE(m_isAccepted);
}

TEST_F(StylusInputTest, ADragWithTheBarrelButtonDrawsAStroke) {
    turnWheel(8);
    bar().comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    const Frame before = photo().frame();
    send(QEvent::TabletPress, {}, Qt::RightButton, Qt::RightButton);
    EXPECT_TRUE(m_isAccepted);
    send(QEvent::TabletPress, {}, Qt::LeftButton, Qt::LeftButton | Qt::RightButton);
    EXPECT_TRUE(m_isAccepted);
    send(QEvent::TabletMove, {25, 15}, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
    send(QEvent::TabletMove, {60, 15}, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
    EXPECT_EQ(window.strokeOutline().path().size(), 3);
    send(QEvent::TabletRelease, {60, 15}, Qt::LeftButton, Qt::RightButton);
    const auto others = queues.backgroundCount(); // previews
    send(QEvent::TabletRelease, {60, 15}, Qt::RightButton, {});
    EXPECT_EQ(window.strokeOutline().path().size(), 0);
    EXPECT_EQ(queues.backgroundCount(), others + 1);
    EXPECT_EQ(photo().frame(), before);
    send(QEvent::TabletPress, {}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_FALSE(m_isAccepted);
}

TEST_F(StylusInputTest, APressOfTheBarrelButtonDoesNothing) {
    send(QEvent::TabletPress, {}, Qt::RightButton, Qt::RightButton);
    send(QEvent::TabletMove, {1, 1}, Qt::NoButton, Qt::RightButton);
    send(QEvent::TabletRelease, {1, 1}, Qt::RightButton, {});
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(StylusInputTest, ATapOfTheEraserUndoes) {
    QTest::mouseClick(&window.rootView(), Qt::LeftButton, {}, window.rootView().rect().center());
    queues.runAll();
    ASSERT_TRUE(controller->canUndo());
    constexpr auto kEraser = QPointingDevice::PointerType::Eraser;
    send(QEvent::TabletPress, {}, Qt::LeftButton, Qt::LeftButton, kEraser);
    send(QEvent::TabletMove, {60, 0}, Qt::NoButton, Qt::LeftButton, kEraser);
    send(QEvent::TabletRelease, {60, 0}, Qt::LeftButton, {}, kEraser);
    EXPECT_TRUE(controller->canUndo()); // that was no tap
    send(QEvent::TabletPress, {}, Qt::LeftButton, Qt::LeftButton, kEraser);
    EXPECT_TRUE(m_isAccepted);
    send(QEvent::TabletRelease, {}, Qt::LeftButton, {}, kEraser);
    EXPECT_FALSE(controller->canUndo());
    EXPECT_TRUE(controller->canRedo());
}

} // namespace
} // namespace complexion
