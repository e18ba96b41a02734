// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/view_controller.h"

#include <QPointF>
#include <QWidget>

namespace complexion {

/// The window's content: the photo fills it, the boxes float above. Reports the left mouse button in its own
/// bottom-up coordinates and changes of its size, and forwards drag and drop to the image view wherever it
/// happens.
///
/// A press that moves by at least the toolkit's drag distance is a drag, however short: it moves the photo,
/// and its release emits no `mouseUp`, so that it does not count as a click.
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
    /// A drag with Shift held draws a stroke, from the press to the release.
    void strokeDrawn(complexion::Point to);
    void strokeEnded();

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
    /// Lets the image view handle a drag over a box or the root view itself.
    void forwardToImageView(QEvent* event);

    CustomImageView* m_imageView;
    void drawStroke(const QMouseEvent& event);
    /// Whether this press is a drag, once `event` is taken into account.
    bool updateIsDrag(const QMouseEvent& event);

    QPointF m_pressPosition;
    QPointF m_lastPosition; // of the mouse while the left button is down
    bool m_isPressed = false;
    bool m_isDrag = false;
    bool m_isStroke = false; // pressed with Shift: dragging draws
};

} // namespace complexion
