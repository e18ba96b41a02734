// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/pinch_steps.h"
#include "imaging/base/geometry.h"
#include "view/custom_image_view.h"

#include <QEvent>
#include <QObject>
#include <QPointF>

#include <optional>

class QTouchEvent;

namespace complexion {

/// Turns touches of the photo into mouse events and signals. One finger is the left mouse button: a short tap
/// repairs, a drag moves the photo. Two fingers move and zoom it, and never repair, not even if one of them
/// came earlier or leaves later. Points are in the root view, origin at the bottom left.
class TouchInput : public QObject {
    Q_OBJECT

public:
    /// Installs an event filter on `view`.
    explicit TouchInput(CustomImageView* view);

Q_SIGNALS:
    void pointed(std::optional<complexion::Point> at); // by a finger; nothing when it leaves
    void zoomed(complexion::Point about, int steps);
    void panned(double deltaX, double deltaY); // in points, y downward

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Where the fingers are: their mean position, and the mean distance to it.
    struct Fingers {
        int count = 0;
        QPointF centre;
        double spread = 0;
    };
    static Fingers fingersOf(const QTouchEvent& event);

    void handleTouch(const QTouchEvent& event);
    void handleFinger(const QTouchEvent& event, QPointF position);
    void handlePinch(const Fingers& fingers);
    void sendMouse(QEvent::Type type, QPointF position, bool isDown);

    CustomImageView* m_view;
    Fingers m_fingers; // of the last event with two or more
    PinchSteps m_pinch;
    bool m_isPinch = false; // from the second finger until all have left
};

} // namespace complexion
