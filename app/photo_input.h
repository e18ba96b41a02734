// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/pinch_steps.h"
#include "imaging/base/geometry.h"
#include "view/custom_image_view.h"
#include "view/wheel_notches.h"

#include <QObject>
#include <QPointF>

#include <optional>

class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QWheelEvent;

namespace complexion {

/// Turns events over the photo into signals: pointer movement, the wheel, pinch gestures, panning with the
/// middle button or the space bar, and keys while the photo has the focus. Plain presses of the left button
/// propagate to the root view. Points are in the root view, origin at the bottom left.
class PhotoInput : public QObject {
    Q_OBJECT

public:
    /// Installs an event filter on `view`.
    explicit PhotoInput(CustomImageView* view);

    /// While on, a left click emits `acted` instead of propagating to the root view.
    void setPicking(bool on);
    /// Hides the mouse cursor while the disc is shown in its place.
    void setPointerHidden(bool hidden);

Q_SIGNALS:
    void pointed(std::optional<complexion::Point> at);
    void zoomed(complexion::Point about, int steps);
    void sizeStepped(int steps);
    void thresholdStepped(int steps);
    void panned(double deltaX, double deltaY); // in points, y downward
    void placeStepped(int columns, int rows);  // in pixels of the photo, rows downward
    void acted();
    void strokeToggled();
    void cancelled();
    void focusTaken();           // by the Tab key
    void focusShown(bool shown); // true after Tab, false once the mouse is used or the focus is lost

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Point inRootView(QPointF position) const;
    // Handlers return whether the event is consumed.
    bool handlePress(const QMouseEvent& event);
    bool handleMove(const QMouseEvent& event);
    bool handleRelease(const QMouseEvent& event);
    bool handleWheel(QWheelEvent& event);
    bool handleGesture(const QNativeGestureEvent& event);
    bool handleKeyPress(const QKeyEvent& event);
    bool handleKeyRelease(const QKeyEvent& event);
    void panTo(QPointF position);
    void setSpaceHeld(bool held);
    void updateCursor();

    CustomImageView* m_view;
    QPointF m_lastPosition;
    std::optional<Qt::MouseButton> m_panButton; // while panning
    PinchSteps m_pinch;
    WheelNotches m_wheel;
    Qt::KeyboardModifiers m_wheelModifiers; // of the last wheel event
    bool m_isSpaceHeld = false;
    bool m_isPicking = false;
    bool m_isPickPressed = false;
    bool m_isPointerHidden = false;
};

} // namespace complexion
