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
    m_pressPosition = event->position();
    m_lastPosition = event->position();
    Q_EMIT mouseDown(converted(*event));
}

void RootView::mouseDoubleClickEvent(QMouseEvent* event) {
    // Two clicks in quick succession are two clicks.
    mousePressEvent(event);
}

bool RootView::isDrag(const QMouseEvent& event) {
    const QPointF moved = event.position() - m_pressPosition;
    if (moved.manhattanLength() >= QApplication::startDragDistance())
        m_isDrag = true; // and remains one on its way back
    return m_isDrag;
}

void RootView::mouseMoveEvent(QMouseEvent* event) {
    // A release can be lost to a dialog that opens meanwhile.
    m_isPressed = m_isPressed && event->buttons().testFlag(Qt::LeftButton);
    if (!m_isPressed)
        return;
    isDrag(*event);
    Q_EMIT mouseDragged(converted(*event));
}

void RootView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_isPressed)
        return;
    m_isPressed = false;
    // The release may be the first to tell of the way, or of its end: a busy program is spared the moves
    // that others follow.
    if (!isDrag(*event))
        Q_EMIT mouseUp(converted(*event));
    else if (event->position() != m_lastPosition)
        Q_EMIT mouseDragged(converted(*event));
}

void RootView::handOn(QEvent* event) {
    // Not sent: the application would send it back to the widget that it is dragged over.
    static_cast<QObject*>(m_imageView)->event(event);
}

void RootView::dragEnterEvent(QDragEnterEvent* event) {
    handOn(event);
}

void RootView::dragMoveEvent(QDragMoveEvent* event) {
    handOn(event);
}

void RootView::dropEvent(QDropEvent* event) {
    handOn(event);
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
