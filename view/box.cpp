// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/box.h"

#include "view/painting_cache.h"

#include <QPainter>

namespace complexion {

namespace {

constexpr double kCornerRadius = 10;    // points
constexpr double kHairlineAlpha = 0.08; // of the text colour

} // namespace

Box::Box(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_NoMousePropagation);
    new PaintingCache(this); // the box owns it
}

void Box::setAlpha(double alpha) {
    m_alpha = qBound(0.0, alpha, 1.0);
    update();
}

void Box::paintEvent(QPaintEvent*) {
    QColor fill = palette().color(QPalette::Base);
    fill.setAlphaF(static_cast<float>(m_alpha));
    QColor hairline = palette().color(QPalette::Text);
    hairline.setAlphaF(static_cast<float>(kHairlineAlpha));

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()), kCornerRadius, kCornerRadius);
    painter.setPen(QPen(hairline, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius - 0.5,
                            kCornerRadius - 0.5);
}

} // namespace complexion
