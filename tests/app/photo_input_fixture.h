// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/app/window_fixture.h"
#include "tests/fakes/active_window.h"

#include <QApplication>
#include <QTest>
#include <QWheelEvent>

namespace complexion {

/// The window with a photo, and input events for it.
class PhotoInputTest : public WindowTest {
protected:
    PhotoInputTest() {
        test::activate(window);
        open();
        photo().setFocus();
    }

    EditDisc& disc() { return window.editDisc(); }
    QPoint centre() { return photo().rect().center(); }
    double zoom() { return photo().frame().width / photo().width(); }

    void turnWheel(int notches, Qt::KeyboardModifiers modifiers = {}, QPoint at = {400, 200},
                   bool sideways = false) {
        const QPoint angle = sideways ? QPoint(120 * notches, 0) : QPoint(0, 120 * notches);
        QWheelEvent event(at, photo().mapToGlobal(at), {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&photo(), &event);
    }
    void pinch(double value, QPoint at = {400, 200}) {
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, at, at,
                                  photo().mapToGlobal(at), value, {});
        QApplication::sendEvent(&photo(), &event);
    }
    void drag(Qt::MouseButton button, QPoint by) {
        QTest::mousePress(&photo(), button, {}, centre());
        QTest::mouseMove(&photo(), centre() + by);
        QMouseEvent move(QEvent::MouseMove, centre() + by, photo().mapToGlobal(centre() + by), Qt::NoButton,
                         button, {});
        QApplication::sendEvent(&photo(), &move);
        QTest::mouseRelease(&photo(), button, {}, centre() + by);
    }
    void point(QPoint at) {
        QMouseEvent move(QEvent::MouseMove, at, photo().mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(&photo(), &move);
    }
};

} // namespace complexion
