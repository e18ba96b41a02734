// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/photo_input.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

namespace complexion {

namespace {

// Steps of the arrow keys, in pixels of the photo.
constexpr int kShiftStep = 10;
constexpr int kControlStep = 100;

bool isTabFocus(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
}

} // namespace

PhotoInput::PhotoInput(CustomImageView* view) : QObject(view), m_view(view) {
    view->setMouseTracking(true);
    view->installEventFilter(this);
}

void PhotoInput::setPicking(bool on) {
    m_isPicking = on;
    m_isPickPressed = false;
    updateCursor();
}

void PhotoInput::setPointerHidden(bool hidden) {
    m_isPointerHidden = hidden;
    updateCursor();
}

Point PhotoInput::inRootView(QPointF position) const {
    return {position.x(), m_view->height() - position.y()};
}

bool PhotoInput::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return handlePress(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
        return handleMove(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
        return handleRelease(*static_cast<QMouseEvent*>(event));
    case QEvent::Leave:
        Q_EMIT pointed(std::nullopt);
        return false;
    case QEvent::Wheel:
        return handleWheel(*static_cast<QWheelEvent*>(event));
    case QEvent::NativeGesture:
        return handleGesture(*static_cast<QNativeGestureEvent*>(event));
    case QEvent::KeyPress:
        return handleKeyPress(*static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        return handleKeyRelease(*static_cast<QKeyEvent*>(event));
    case QEvent::FocusIn:
        if (isTabFocus(static_cast<QFocusEvent*>(event)->reason())) {
            Q_EMIT focusShown(true);
            Q_EMIT focusTaken();
        }
        return false;
    case QEvent::FocusOut:
        setSpaceHeld(false);
        Q_EMIT focusShown(false);
        return false;
    default:
        return false;
    }
}

bool PhotoInput::handlePress(const QMouseEvent& event) {
    const bool isLeft = event.button() == Qt::LeftButton;
    Q_EMIT focusShown(false);
    if (m_panButton || m_isPickPressed)
        return true;
    if (event.button() == Qt::MiddleButton || (isLeft && m_isSpaceHeld)) {
        m_panButton = event.button();
        m_lastPosition = event.position();
        updateCursor();
        Q_EMIT pointed(std::nullopt);
        return true;
    }
    m_isPickPressed = isLeft && m_isPicking;
    return m_isPickPressed;
}

void PhotoInput::panTo(QPointF position) {
    const QPointF moved = position - m_lastPosition;
    m_lastPosition = position;
    if (!moved.isNull())
        Q_EMIT panned(moved.x(), moved.y());
}

bool PhotoInput::handleMove(const QMouseEvent& event) {
    if (m_panButton) {
        panTo(event.position());
        return true;
    }
    if (!m_isSpaceHeld)
        Q_EMIT pointed(inRootView(event.position()));
    return m_isPickPressed;
}

bool PhotoInput::handleRelease(const QMouseEvent& event) {
    if (m_panButton && event.button() == *m_panButton) {
        panTo(event.position()); // the last movement may have come without a move event
        m_panButton.reset();
        updateCursor();
        if (!m_isSpaceHeld)
            Q_EMIT pointed(inRootView(event.position()));
        return true;
    }
    // The release belongs to whoever got the press: a button that was pressed before panning or picking began
    // is the root view's.
    if (!m_isPickPressed || event.button() != Qt::LeftButton)
        return false;
    m_isPickPressed = false;
    Q_EMIT pointed(inRootView(event.position()));
    Q_EMIT acted();
    return true;
}

bool PhotoInput::handleWheel(QWheelEvent& event) {
    event.accept();
    const Qt::KeyboardModifiers modifiers = event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);
    if (modifiers != m_wheelModifiers)
        m_wheel.reset();
    m_wheelModifiers = modifiers;
    // Some systems report vertical wheel movement as horizontal while Shift is held.
    const QPoint angle = event.angleDelta();
    const bool isSideways = angle.y() == 0 && modifiers == Qt::ShiftModifier;
    const int steps = m_wheel.add(isSideways ? angle.x() : angle.y());
    if (steps == 0)
        return true;
    if (modifiers == Qt::ShiftModifier)
        Q_EMIT sizeStepped(steps);
    else if (modifiers == Qt::ControlModifier)
        Q_EMIT thresholdStepped(steps);
    else if (!modifiers)
        Q_EMIT zoomed(inRootView(event.position()), steps);
    return true;
}

bool PhotoInput::handleGesture(const QNativeGestureEvent& event) {
    if (event.gestureType() == Qt::BeginNativeGesture)
        m_pinch.begin();
    if (event.gestureType() != Qt::ZoomNativeGesture)
        return false;
    if (const int steps = m_pinch.add(1 + event.value()); steps != 0)
        Q_EMIT zoomed(inRootView(event.position()), steps);
    return true;
}

bool PhotoInput::handleKeyPress(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const int step = modifiers == Qt::ShiftModifier     ? kShiftStep
                     : modifiers == Qt::ControlModifier ? kControlStep
                                                        : 1;
    if (modifiers & (Qt::AltModifier | Qt::MetaModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Left:
        Q_EMIT placeStepped(-step, 0);
        return true;
    case Qt::Key_Right:
        Q_EMIT placeStepped(step, 0);
        return true;
    case Qt::Key_Up:
        Q_EMIT placeStepped(0, -step);
        return true;
    case Qt::Key_Down:
        Q_EMIT placeStepped(0, step);
        return true;
    case Qt::Key_PageUp:
        Q_EMIT sizeStepped(1);
        return true;
    case Qt::Key_PageDown:
        Q_EMIT sizeStepped(-1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event.isAutoRepeat() && modifiers == Qt::ShiftModifier)
            Q_EMIT strokeToggled();
        else if (!event.isAutoRepeat())
            Q_EMIT acted();
        return true;
    case Qt::Key_Escape:
        Q_EMIT cancelled();
        return true;
    case Qt::Key_Space:
        if (!event.isAutoRepeat())
            setSpaceHeld(true);
        return true;
    default:
        return false;
    }
}

bool PhotoInput::handleKeyRelease(const QKeyEvent& event) {
    if (event.key() != Qt::Key_Space)
        return false;
    if (!event.isAutoRepeat())
        setSpaceHeld(false);
    return true;
}

void PhotoInput::setSpaceHeld(bool held) {
    if (m_isSpaceHeld == held)
        return;
    m_isSpaceHeld = held;
    const QPoint position = m_view->mapFromGlobal(QCursor::pos());
    if (held)
        Q_EMIT pointed(std::nullopt);
    else if (m_view->underMouse() && !m_panButton)
        Q_EMIT pointed(inRootView(position));
    updateCursor();
}

void PhotoInput::updateCursor() {
    if (m_panButton)
        m_view->setCursor(Qt::ClosedHandCursor);
    else if (m_isSpaceHeld)
        m_view->setCursor(Qt::OpenHandCursor);
    else if (m_isPointerHidden)
        m_view->setCursor(Qt::BlankCursor);
    else
        m_view->unsetCursor();
}

} // namespace complexion
