// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/root_view.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMouseEvent>
#include <QResizeEvent>

namespace complexion {

namespace {

PointSize pointSize(const QSize& size) {
    return {static_cast<double>(size.width()), static_cast<double>(size.height())};
}

} // namespace

RootView::RootView(QWidget* parent) : QWidget(parent), m_imageView(new CustomImageView(this)) {
    setAcceptDrops(true);
    m_imageView->setObjectName(QStringLiteral("imageView"));
    m_imageView->setFocusPolicy(Qt::StrongFocus);
    m_imageView->setGeometry(rect());
    const PointSize area = pointSize(size());
    m_imageView->setFrame({0, 0, area.width, area.height});
}

MouseEvent RootView::converted(const QMouseEvent& event) {
    const QPointF position = event.position();
    const QPointF moved = position - m_lastPosition;
    m_lastPosition = position;
    return {{position.x(), height() - position.y()}, moved.x(), moved.y()};
}

void RootView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_isPressed = true;
    m_isDrag = false;
    m_isStroke = event->modifiers().testFlag(Qt::ShiftModifier);
    m_pressPosition = event->position();
    m_lastPosition = event->position();
    Q_EMIT mouseDown(converted(*event));
}

void RootView::mouseDoubleClickEvent(QMouseEvent* event) {
    // A double click counts as two clicks.
    mousePressEvent(event);
}

bool RootView::updateIsDrag(const QMouseEvent& event) {
    const QPointF moved = event.position() - m_pressPosition;
    if (moved.manhattanLength() >= QApplication::startDragDistance())
        m_isDrag = true; // also if the pointer moves back
    return m_isDrag;
}

void RootView::mouseMoveEvent(QMouseEvent* event) {
    // A dialog that opens during a press can swallow its release.
    m_isPressed = m_isPressed && event->buttons().testFlag(Qt::LeftButton);
    if (!m_isPressed)
        return;
    if (m_isStroke) {
        drawStroke(*event);
        return;
    }
    updateIsDrag(*event);
    Q_EMIT mouseDragged(converted(*event));
}

void RootView::drawStroke(const QMouseEvent& event) {
    const bool wasDrag = m_isDrag;
    if (!updateIsDrag(event))
        return;
    if (!wasDrag)
        Q_EMIT strokeDrawn({m_pressPosition.x(), height() - m_pressPosition.y()});
    Q_EMIT strokeDrawn({event.position().x(), height() - event.position().y()});
}

void RootView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_isPressed)
        return;
    m_isPressed = false;
    // Move events are compressed while the program is busy: the release may be the first event with the new
    // position.
    if (m_isStroke)
        drawStroke(*event);
    if (!updateIsDrag(*event))
        Q_EMIT mouseUp(converted(*event));
    else if (m_isStroke)
        Q_EMIT strokeEnded();
    else if (event->position() != m_lastPosition)
        Q_EMIT mouseDragged(converted(*event));
}

void RootView::forwardToImageView(QEvent* event) {
    // Called directly: sendEvent would deliver it to the widget below the pointer again.
    static_cast<QObject*>(m_imageView)->event(event);
}

void RootView::dragEnterEvent(QDragEnterEvent* event) {
    forwardToImageView(event);
}

void RootView::dragMoveEvent(QDragMoveEvent* event) {
    forwardToImageView(event);
}

void RootView::dropEvent(QDropEvent* event) {
    forwardToImageView(event);
}

void RootView::resizeEvent(QResizeEvent* event) {
    m_imageView->setGeometry(rect());
    const PointSize to = pointSize(event->size());
    if (event->oldSize().isValid())
        Q_EMIT visibleAreaResized(pointSize(event->oldSize()), to);
    else
        m_imageView->setFrame({0, 0, to.width, to.height});
}

} // namespace complexion
