// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sign.h"

#include <QPainter>

#include <algorithm>

namespace complexion {

namespace {

constexpr int kMarginX = 20;
constexpr int kMarginY = 10;
constexpr double kMaxRadius = 20; // of the corners

} // namespace

void paintSignGround(QWidget& sign) {
    QPainter painter(&sign);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(sign.palette().color(QPalette::Base));
    const double radius = std::min(sign.height() / 2.0, kMaxRadius);
    painter.drawRoundedRect(QRectF(sign.rect()), radius, radius);
}

Sign::Sign(QWidget* parent) : QLabel(parent) {
    setContentsMargins(kMarginX, kMarginY, kMarginX, kMarginY);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void Sign::showText(const QString& text) {
    setText(text);
    resize(sizeHint());
    move((parentWidget()->width() - width()) / 2, kSignTop);
    raise();
    show();
}

void Sign::paintEvent(QPaintEvent* event) {
    paintSignGround(*this);
    QLabel::paintEvent(event);
}

} // namespace complexion
