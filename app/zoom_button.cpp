// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/zoom_button.h"

#include "view/accessibility.h"
#include "view/text_font.h"

#include <QMenu>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

constexpr double kPercent = 100;
constexpr double kPercentSize = 11;
constexpr int kMargin = 4; // left and right of the text
constexpr int kMinSize = 24;

} // namespace

ZoomButton::ZoomButton(const Actions& actions) {
    setObjectName(QStringLiteral("zoom"));
    setAccessibleName(tr("Zoom"));
    setPopupMode(QToolButton::InstantPopup);
    auto* const scales = new QMenu(this);
    scales->addActions({actions.resetZoom, actions.halfPixels, actions.actualPixels, actions.doublePixels});
    setMenu(scales);
    setScale(std::nullopt);
}

void ZoomButton::setScale(std::optional<double> scale) {
    setEnabled(scale.has_value());
    const QString text = scale ? tr("%1 %").arg(std::lround(*scale * kPercent)) : QStringLiteral("%");
    setToolTip(scale ? tr("Zoom: %1").arg(text) : tr("Zoom: no photo is open"));
    if (text == this->text())
        return;
    setText(text);
    announceDescription(*this, text);
}

QSize ZoomButton::sizeHint() const {
    return {kMinSize, kMinSize}; // the text shrinks
}

void ZoomButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    // The text shrinks to the width of the rail, which does not grow with the font.
    QFont font = textFont(kPercentSize);
    const int available = width() - 2 * kMargin;
    const int needed = QFontMetrics(font).horizontalAdvance(text());
    if (needed > available)
        font.setPixelSize(std::max(1, font.pixelSize() * available / needed));
    painter.setFont(font);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace complexion
