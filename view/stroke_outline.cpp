// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/stroke_outline.h"

#include "view/disc_ring.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace complexion {

namespace {

constexpr double kLine = 1.5;   // points: the width of each of the two lines
constexpr double kMinWidth = 3; // points, of the stroke inside its outline
constexpr int kMargin = 4;      // for antialiasing
constexpr QRgb kDark = 0xD0101012;

} // namespace

StrokeOutline::StrokeOutline(CustomImageView* view) : PhotoOverlay(view) {
    hide();
    connect(view, &CustomImageView::frameChanged, this, qOverload<>(&QWidget::update));
}

double StrokeOutline::shownRadius() const {
    return std::max(kMinWidth / 2, shownLength(*m_view, m_radius));
}

void StrokeOutline::setPath(const QPolygonF& path, double radius) {
    // Points are appended one by one: only the new end is repainted.
    const bool isLonger = radius == m_radius && path.size() > m_path.size() && !m_path.isEmpty() &&
                          std::equal(m_path.begin(), m_path.end(), path.begin());
    const qsizetype known = isLonger ? m_path.size() - 1 : 0;
    m_path = path;
    m_radius = radius;
    setVisible(!path.isEmpty());
    if (!isLonger) {
        update();
        return;
    }
    const double reach = shownRadius() + kLine + kMargin;
    update(m_view->pixelsToWidget()
               .map(QPolygonF(path.mid(known)))
               .boundingRect()
               .adjusted(-reach, -reach, reach, reach)
               .toAlignedRect());
}

void StrokeOutline::paintEvent(QPaintEvent* event) {
    if (m_path.isEmpty() || !m_view->image())
        return;
    const QPolygonF shown = m_view->pixelsToWidget().map(m_path);
    const double ratio = devicePixelRatioF();
    const QRect area = event->rect();
    // Each wider line is drawn whole and its middle erased, so that the stroke's bends leave no lines in it.
    QImage picture((QSizeF(area.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter lines(&picture);
    lines.setRenderHint(QPainter::Antialiasing);
    lines.translate(-area.topLeft());
    const auto draw = [&](const QColor& color, double width) {
        lines.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        if (shown.size() == 1)
            lines.drawPoint(shown.first());
        else
            lines.drawPolyline(shown);
    };
    const double width = 2 * shownRadius();
    lines.setCompositionMode(QPainter::CompositionMode_Source);
    draw(QColor::fromRgba(kDark), width + 2 * kLine);
    draw(palette().color(QPalette::Highlight).lighter(112), width);
    draw(Qt::transparent, std::max(1.0, width - 2 * kLine));
    lines.end();
    QPainter(this).drawImage(area.topLeft(), picture);
}

} // namespace complexion
