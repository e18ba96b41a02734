// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/painting_cache.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

namespace complexion {

PaintingCache::PaintingCache(QWidget* widget) : QGraphicsEffect(widget), m_widget(widget) {
    widget->setGraphicsEffect(this);
    widget->installEventFilter(this);
}

bool PaintingCache::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide)
        m_pixels = {};
    return QGraphicsEffect::eventFilter(watched, event);
}

bool PaintingCache::isCurrent(const QPainter& painter) const {
    // Qt stores a copy of an effect's source in QPixmapCache and removes it as soon as the widget or one of
    // its children is to be repainted. (For widgets, Qt itself never reads that copy.) The pixels are current
    // while the two share them.
    return !m_pixels.isNull() && !m_pixels.isDetached() &&
           m_pixels.devicePixelRatio() == painter.device()->devicePixelRatio();
}

void PaintingCache::draw(QPainter* painter) {
    // Changes of hidden widgets are not reported.
    if (!m_widget->isVisible()) {
        drawSource(painter);
        return;
    }
    if (!isCurrent(*painter))
        m_pixels = sourcePixmap(Qt::LogicalCoordinates, &m_offset, NoPad);
    painter->drawPixmap(m_offset, m_pixels);
}

} // namespace complexion
