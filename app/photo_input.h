// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

/// What hands do over the photo beyond the plain press of the left button, which passes by: pointing, the
/// wheel, pinching, moving the photo with the middle button or the space bar, and the keys while the photo
/// has the focus. Points are of the root view, bottom-left origin.
class PhotoInput : public QObject {
    Q_OBJECT

public:
    /// Watches `view`.
    explicit PhotoInput(CustomImageView* view);

    /// While on, a press of the left button acts instead of reaching the root view.
    void setPicking(bool on);
    /// Whether the disc stands for the pointer, which is then hidden.
    void setPointerHidden(bool hidden);

Q_SIGNALS:
    void pointed(std::optional<complexion::Point> at);
    void zoomed(complexion::Point about, int steps);
    void sizeStepped(int steps);
    void thresholdStepped(int steps);
    void photoMoved(double deltaX, double deltaY); // in points, y downward
    void placeMoved(int columns, int rows);        // in pixels of the photo, rows downward
    void acted();
    void cancelled();
    void focusTaken();           // by the Tab key
    void focusShown(bool shown); // from then on until the mouse is used or the focus goes

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Point inRootView(QPointF position) const;
    bool press(const QMouseEvent& event);
    void movePhotoTo(QPointF position);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    bool turnWheel(QWheelEvent& event);
    bool gesture(const QNativeGestureEvent& event);
    bool pressKey(const QKeyEvent& event);
    bool releaseKey(const QKeyEvent& event);
    void setHandOut(bool out);
    void showCursor();

    CustomImageView* m_view;
    QPointF m_lastPosition;
    std::optional<Qt::MouseButton> m_moving; // the button that moves the photo
    double m_pinched = 1;                    // less than a zoom step
    WheelNotches m_wheel;                    // turned while the modifiers were
    Qt::KeyboardModifiers m_wheelModifiers;  // these
    bool m_isHandOut = false;                // the space bar is held down
    bool m_isPicking = false;
    bool m_isPickPressed = false;
    bool m_isPointerHidden = false;
};

} // namespace complexion
