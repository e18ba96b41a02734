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
        m_barrelStart = event.position();
        m_isDrawing = false;
        return true;
    }
    if (!m_barrel)
        return false;
    if (event.type() == QEvent::TabletRelease && event.button() == *m_barrel) {
        m_barrel.reset();
        if (m_isDrawing)
            sendMouse(QEvent::MouseButtonRelease, event, event.position());
    } else if (event.type() == QEvent::TabletMove) {
        // A press alone would count as a click.
        const QPointF moved = event.position() - m_barrelStart;
        if (!m_isDrawing && moved.manhattanLength() >= QApplication::startDragDistance()) {
            m_isDrawing = true;
            sendMouse(QEvent::MouseButtonPress, event, m_barrelStart);
        }
        if (m_isDrawing)
            sendMouse(QEvent::MouseMove, event, event.position());
    }
    return true;
}

void StylusInput::sendMouse(QEvent::Type type, const QTabletEvent& event, QPointF position) {
    const bool isMove = type == QEvent::MouseMove;
    const bool isDown = type != QEvent::MouseButtonRelease;
    QMouseEvent mouse(type, position, m_view->mapToGlobal(position), isMove ? Qt::NoButton : Qt::LeftButton,
                      isDown ? Qt::LeftButton : Qt::NoButton, event.modifiers() | Qt::ShiftModifier);
    QCoreApplication::sendEvent(m_view, &mouse);
}

} // namespace complexion
