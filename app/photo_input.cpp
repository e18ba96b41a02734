// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/photo_input.h"

#include "editor/zoom_frame.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

namespace complexion {

namespace {

constexpr int kFarStep = 10; // pixels of the photo
constexpr int kMaxStep = 100;

bool isTabbing(Qt::FocusReason reason) {
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
    showCursor();
}

void PhotoInput::setPointerHidden(bool hidden) {
    m_isPointerHidden = hidden;
    showCursor();
}

Point PhotoInput::inRootView(QPointF position) const {
    return {position.x(), m_view->height() - position.y()};
}

bool PhotoInput::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return press(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
        return move(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
        return release(*static_cast<QMouseEvent*>(event));
    case QEvent::Leave:
        Q_EMIT pointed(std::nullopt);
        return false;
    case QEvent::Wheel:
        return turnWheel(*static_cast<QWheelEvent*>(event));
    case QEvent::NativeGesture:
        return gesture(*static_cast<QNativeGestureEvent*>(event));
    case QEvent::KeyPress:
        return pressKey(*static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        return releaseKey(*static_cast<QKeyEvent*>(event));
    case QEvent::FocusIn:
        if (isTabbing(static_cast<QFocusEvent*>(event)->reason())) {
            Q_EMIT focusShown(true);
            Q_EMIT focusTaken();
        }
        return false;
    case QEvent::FocusOut:
        setHandOut(false);
        Q_EMIT focusShown(false);
        return false;
    default:
        return false;
    }
}

bool PhotoInput::press(const QMouseEvent& event) {
    const bool isLeft = event.button() == Qt::LeftButton;
    Q_EMIT focusShown(false);
    if (m_moving || m_isPickPressed)
        return true;
    if (event.button() == Qt::MiddleButton || (isLeft && m_isHandOut)) {
        m_moving = event.button();
        m_lastPosition = event.position();
        showCursor();
        Q_EMIT pointed(std::nullopt);
        return true;
    }
    m_isPickPressed = isLeft && m_isPicking;
    return m_isPickPressed;
}

void PhotoInput::movePhotoTo(QPointF position) {
    const QPointF moved = position - m_lastPosition;
    m_lastPosition = position;
    if (!moved.isNull())
        Q_EMIT photoMoved(moved.x(), moved.y());
}

bool PhotoInput::move(const QMouseEvent& event) {
    if (m_moving) {
        movePhotoTo(event.position());
        return true;
    }
    if (!m_isHandOut)
        Q_EMIT pointed(inRootView(event.position()));
    return m_isPickPressed;
}

bool PhotoInput::release(const QMouseEvent& event) {
    if (m_moving && event.button() == *m_moving) {
        movePhotoTo(event.position()); // the last move may not have been told
        m_moving.reset();
        showCursor();
        if (!m_isHandOut)
            Q_EMIT pointed(inRootView(event.position()));
        return true;
    }
    // Who had the press has the release: a button that was down before the photo began to move, or before
    // the pipette was taken, is the root view's.
    if (!m_isPickPressed || event.button() != Qt::LeftButton)
        return false;
    m_isPickPressed = false;
    Q_EMIT pointed(inRootView(event.position()));
    Q_EMIT acted();
    return true;
}

bool PhotoInput::turnWheel(QWheelEvent& event) {
    event.accept();
    const Qt::KeyboardModifiers modifiers = event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);
    if (modifiers != m_wheelModifiers)
        m_wheel.reset();
    m_wheelModifiers = modifiers;
    // Some systems turn the wheel sideways while Shift is held.
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

bool PhotoInput::gesture(const QNativeGestureEvent& event) {
    if (event.gestureType() == Qt::BeginNativeGesture)
        m_pinched = 1;
    if (event.gestureType() != Qt::ZoomNativeGesture)
        return false;
    m_pinched *= 1 + event.value();
    while (m_pinched >= kZoomInFactor) {
        m_pinched /= kZoomInFactor;
        Q_EMIT zoomed(inRootView(event.position()), 1);
    }
    while (m_pinched > 0 && m_pinched <= kZoomOutFactor) {
        m_pinched /= kZoomOutFactor;
        Q_EMIT zoomed(inRootView(event.position()), -1);
    }
    return true;
}

bool PhotoInput::pressKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const int step = modifiers == Qt::ShiftModifier     ? kFarStep
                     : modifiers == Qt::ControlModifier ? kMaxStep
                                                        : 1;
    if (modifiers & (Qt::AltModifier | Qt::MetaModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Left:
        Q_EMIT placeMoved(-step, 0);
        return true;
    case Qt::Key_Right:
        Q_EMIT placeMoved(step, 0);
        return true;
    case Qt::Key_Up:
        Q_EMIT placeMoved(0, -step);
        return true;
    case Qt::Key_Down:
        Q_EMIT placeMoved(0, step);
        return true;
    case Qt::Key_PageUp:
        Q_EMIT sizeStepped(1);
        return true;
    case Qt::Key_PageDown:
        Q_EMIT sizeStepped(-1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event.isAutoRepeat())
            Q_EMIT acted();
        return true;
    case Qt::Key_Escape:
        Q_EMIT cancelled();
        return true;
    case Qt::Key_Space:
        if (!event.isAutoRepeat())
            setHandOut(true);
        return true;
    default:
        return false;
    }
}

bool PhotoInput::releaseKey(const QKeyEvent& event) {
    if (event.key() != Qt::Key_Space)
        return false;
    if (!event.isAutoRepeat())
        setHandOut(false);
    return true;
}

void PhotoInput::setHandOut(bool out) {
    if (m_isHandOut == out)
        return;
    m_isHandOut = out;
    const QPoint position = m_view->mapFromGlobal(QCursor::pos());
    if (out)
        Q_EMIT pointed(std::nullopt);
    else if (m_view->underMouse() && !m_moving)
        Q_EMIT pointed(inRootView(position));
    showCursor();
}

void PhotoInput::showCursor() {
    if (m_moving)
        m_view->setCursor(Qt::ClosedHandCursor);
    else if (m_isHandOut)
        m_view->setCursor(Qt::OpenHandCursor);
    else if (m_isPointerHidden)
        m_view->setCursor(Qt::BlankCursor);
    else
        m_view->unsetCursor();
}

} // namespace complexion
