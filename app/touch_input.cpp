// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/touch_input.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTouchEvent>

#include <cmath>

namespace complexion {

TouchInput::TouchInput(CustomImageView* view) : QObject(view), m_view(view) {
    view->setAttribute(Qt::WA_AcceptTouchEvents);
    view->installEventFilter(this);
}

bool TouchInput::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel: {
        auto& touch = *static_cast<QTouchEvent*>(event);
        // Touchpads move the pointer.
        if (touch.device()->type() != QInputDevice::DeviceType::TouchScreen)
            return false;
        touch.accept();
        handleTouch(touch);
        return true;
    }
    default:
        return false;
    }
}

TouchInput::Fingers TouchInput::fingersOf(const QTouchEvent& event) {
    Fingers fingers;
    for (const QEventPoint& point : event.points())
        if (point.state() != QEventPoint::Released) {
            fingers.centre += point.position();
            ++fingers.count;
        }
    if (fingers.count == 0)
        return fingers;
    fingers.centre /= fingers.count;
    for (const QEventPoint& point : event.points())
        if (point.state() != QEventPoint::Released) {
            const QPointF away = point.position() - fingers.centre;
            fingers.spread += std::hypot(away.x(), away.y()) / fingers.count;
        }
    return fingers;
}

void TouchInput::handleTouch(const QTouchEvent& event) {
    const bool isCancelled = event.type() == QEvent::TouchCancel;
    const Fingers fingers = fingersOf(event);
    const QPointF position = event.points().isEmpty() ? QPointF() : event.points().first().position();
    if (!m_isPinch && (fingers.count > 1 || isCancelled)) {
        // A move without a button ends the first finger's press, which must not become a click.
        sendMouse(QEvent::MouseMove, position, /*isDown*/ false);
        Q_EMIT pointed(std::nullopt);
        m_isPinch = true;
    }
    if (m_isPinch)
        handlePinch(fingers);
    else
        handleFinger(event, position);
    if (isCancelled || event.type() == QEvent::TouchEnd) {
        m_isPinch = false;
        m_fingers = {};
    }
}

void TouchInput::handleFinger(const QTouchEvent& event, QPointF position) {
    switch (event.type()) {
    case QEvent::TouchBegin:
        sendMouse(QEvent::MouseMove, position, /*isDown*/ false); // the disc moves there
        sendMouse(QEvent::MouseButtonPress, position, /*isDown*/ true);
        return;
    case QEvent::TouchEnd:
        sendMouse(QEvent::MouseButtonRelease, position, /*isDown*/ false);
        Q_EMIT pointed(std::nullopt);
        return;
    default:
        sendMouse(QEvent::MouseMove, position, /*isDown*/ true);
    }
}

void TouchInput::handlePinch(const Fingers& fingers) {
    // Fingers that come or leave move the centre, but not the photo.
    if (fingers.count > 1 && fingers.count == m_fingers.count) {
        const QPointF moved = fingers.centre - m_fingers.centre;
        Q_EMIT panned(moved.x(), moved.y());
        const int steps = m_fingers.spread > 0 ? m_pinch.add(fingers.spread / m_fingers.spread) : 0;
        if (steps != 0)
            Q_EMIT zoomed({fingers.centre.x(), m_view->height() - fingers.centre.y()}, steps);
    } else {
        m_pinch.begin();
    }
    m_fingers = fingers;
}

void TouchInput::sendMouse(QEvent::Type type, QPointF position, bool isDown) {
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, position, m_view->mapToGlobal(position), isMove ? Qt::NoButton : Qt::LeftButton,
                      isDown ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view, &event);
}

} // namespace complexion
