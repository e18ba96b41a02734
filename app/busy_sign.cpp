// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/busy_sign.h"

#include <QGuiApplication>
#include <QPainter>

namespace complexion {

namespace {

constexpr int kTop = 16; // points from the root view's top
constexpr int kMarginX = 20;
constexpr int kMarginY = 10;

} // namespace

BusySign::BusySign(QWidget* parent) : QLabel(parent) {
    setContentsMargins(kMarginX, kMarginY, kMarginX, kMarginY);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void BusySign::begin(const QString& what) {
    if (m_depth++ == 0)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    setText(what);
    resize(sizeHint());
    move((parentWidget()->width() - width()) / 2, kTop);
    raise();
    show();
    repaint();
}

void BusySign::end() {
    if (m_depth == 0)
        return;
    --m_depth;
    if (m_depth > 0)
        return;
    QGuiApplication::restoreOverrideCursor();
    hide();
}

void BusySign::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()), height() / 2.0, height() / 2.0);
    painter.end();
    QLabel::paintEvent(event);
}

} // namespace complexion
