// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/view_controller.h"

#include <QPointF>
#include <QWidget>

namespace complexion {

/// The window's content: the photo over all of it, boxes above. Tells of the left mouse button in its own
/// bottom-up coordinates, hands drags on to the image view wherever they fall, and tells when its size
/// changes.
///
/// A press that moves as far as the toolkit's drag distance is a drag, however short it lasts: it moves the
/// photo, and its release sends no `mouseUp`, so that no click comes of it.
class RootView : public QWidget {
    Q_OBJECT

public:
    explicit RootView(QWidget* parent = nullptr);

    CustomImageView* imageView() const { return m_imageView; }

Q_SIGNALS:
    void mouseDown(const MouseEvent& event);
    void mouseUp(const MouseEvent& event);
    void mouseDragged(const MouseEvent& event);
    void visibleAreaResized(PointSize from, PointSize to);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    MouseEvent converted(const QMouseEvent& event);
    /// Lets the image view answer to a drag over a box or the root view itself.
    void handOn(QEvent* event);

    CustomImageView* m_imageView;
    /// Whether the mouse is, or was during this press, a drag's distance away from where it was pressed.
    bool isDrag(const QMouseEvent& event);

    QPointF m_pressPosition;
    QPointF m_lastPosition; // of the mouse while the left button is down
    bool m_isPressed = false;
    bool m_isDrag = false;
};

} // namespace complexion
