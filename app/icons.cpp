// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

QString drawingPath(const QString& name) {
    return u":/icons/%1.svg"_s.arg(name);
}

/// The icon's alpha channel filled with `color`; `size` in device pixels. Cached, as buttons ask for it at
/// every repaint.
QPixmap tinted(const QString& name, const QSize& size, const QColor& color) {
    const QString key =
        u"complexion/%1/%2x%3/%4"_s.arg(name).arg(size.width()).arg(size.height()).arg(color.rgba());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer drawing(drawingPath(name));
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    drawing.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QColor stateColor(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
        return palette.color(QPalette::HighlightedText);
    default:
        return palette.color(QPalette::Active, QPalette::ButtonText);
    }
}

/// Renders the icon at exactly the requested size, so that it is sharp at every device pixel ratio.
class LineIconEngine : public QIconEngine {
public:
    explicit LineIconEngine(QString name) : m_name(std::move(name)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const double ratio = painter->device()->devicePixelRatioF();
        QPixmap pixmap = tinted(m_name, rect.size() * ratio, stateColor(mode));
        pixmap.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect.topLeft(), pixmap);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return tinted(m_name, size, stateColor(mode));
    }

    QIconEngine* clone() const override { return new LineIconEngine(m_name); }

private:
    QString m_name;
};

} // namespace

QIcon lineIcon(const QString& name) {
    return QIcon(new LineIconEngine(name));
}

QPixmap linePixmap(const QString& name, int size, const QColor& color, double devicePixelRatio) {
    QPixmap pixmap = tinted(name, QSize(size, size) * devicePixelRatio, color);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QIcon applicationIcon() {
    return QIcon(drawingPath(u"complexion"_s));
}

} // namespace complexion
