// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGraphicsEffect>
#include <QPixmap>

namespace complexion {

/// Paints a widget with its children into a cache, and from there until one of them changes. What is below
/// the widget can then move at the cost of blending one picture.
class PaintingCache : public QGraphicsEffect {
    Q_OBJECT

public:
    /// Takes effect at once; `widget` owns the cache.
    explicit PaintingCache(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void draw(QPainter* painter) override;

private:
    bool isCurrent(const QPainter& painter) const;

    const QWidget* m_widget;
    QPixmap m_pixels;
    QPoint m_offset; // of the pixels, in the widget's coordinates
};

} // namespace complexion
