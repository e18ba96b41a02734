// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/stylus_input.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTabletEvent>

namespace complexion {

StylusInput::StylusInput(QWidget* view) : QObject(view), m_view(view) {
    view->setTabletTracking(true);
    view->installEventFilter(this);
}

bool StylusInput::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease: {
        auto& tablet = *static_cast<QTabletEvent*>(event);
        const bool isEraser = tablet.pointerType() == QPointingDevice::PointerType::Eraser;
        const bool isConsumed = isEraser ? handleEraser(tablet) : handlePen(tablet);
        tablet.setAccepted(isConsumed);
        return isConsumed;
    }
    default:
        return false;
    }
}

bool StylusInput::handleEraser(const QTabletEvent& event) {
    const bool isTip = event.button() == Qt::LeftButton;
    if (isTip && event.type() == QEvent::TabletPress)
        m_erasing = event.position();
    if (isTip && event.type() == QEvent::TabletRelease && m_erasing) {
        const bool isTap =
            (event.position() - *m_erasing).manhattanLength() < QApplication::startDragDistance();
        m_erasing.reset();
        if (isTap)
            Q_EMIT erased();
    }
    return true; // an eraser never repairs
}

bool StylusInput::handlePen(const QTabletEvent& event) {
    if (event.type() == QEvent::TabletPress && event.button() != Qt::LeftButton && !m_barrel) {
        m_barrel = event.button();
        sendMouse(QEvent::MouseButtonPress, event, /*isDown*/ true);
        return true;
    }
    if (!m_barrel)
        return false;
    if (event.type() == QEvent::TabletRelease && event.button() == *m_barrel) {
        m_barrel.reset();
        sendMouse(QEvent::MouseButtonRelease, event, /*isDown*/ false);
    } else if (event.type() == QEvent::TabletMove) {
        sendMouse(QEvent::MouseMove, event, /*isDown*/ true);
    }
    return true;
}

void StylusInput::sendMouse(QEvent::Type type, const QTabletEvent& event, bool isDown) {
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent mouse(type, event.position(), event.globalPosition(),
                      isMove ? Qt::NoButton : Qt::MiddleButton, isDown ? Qt::MiddleButton : Qt::NoButton,
                      event.modifiers());
    QCoreApplication::sendEvent(m_view, &mouse);
}

} // namespace complexion
