// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/color_well.h"

#include <QColorDialog>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace complexion {

namespace {

constexpr double kCornerRadius = 6;
constexpr double kDisabledOpacity = 0.4;

} // namespace

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent), m_color(Qt::white) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openColorDialog);
}

void ColorWell::setColor(const QColor& color) {
    if (!color.isValid() || color == m_color)
        return;
    m_color = color;
    setAccessibleDescription(color.name());
    update();
    Q_EMIT colorChanged(m_color);
}

QSize ColorWell::sizeHint() const {
    return {44, std::max(24, fontMetrics().height() + 8)};
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(kDisabledOpacity);
    // A gap between swatch and frame keeps the edge of a dark colour visible on the dark box.
    const double line = hasFocus() ? 2 : 1;
    const QRectF frame = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    const QPalette::ColorRole role = hasFocus()                 ? QPalette::Highlight
                                     : underMouse() || isDown() ? QPalette::Text
                                                                : QPalette::Light;
    painter.setPen(QPen(palette().color(QPalette::Active, role), line));
    painter.setBrush(palette().color(QPalette::Active, QPalette::Button));
    painter.drawRoundedRect(frame, kCornerRadius, kCornerRadius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawRoundedRect(QRectF(rect()).adjusted(4, 4, -4, -4), kCornerRadius - 3, kCornerRadius - 3);
}

void ColorWell::openColorDialog() {
    const QColor chosen =
        QColorDialog::getColor(m_color, window(), tr("Custom color"), QColorDialog::DontUseNativeDialog);
    setColor(chosen);
}

} // namespace complexion
