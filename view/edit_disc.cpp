// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/edit_disc.h"

#include "view/text_font.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace complexion {

namespace {

// Lengths in points.
constexpr double kLine = 1.5;       // the width of each of the two lines
constexpr double kDashPeriod = 6;   // of a dashed ring, approximately
constexpr double kDashShare = 0.45; // the drawn part of the period
constexpr double kTinyRadius = 6;   // below, a crosshair marks the position
constexpr double kCrosshairGap = 4; // from the ring
constexpr double kCrosshairLength = 7;
constexpr double kMarkedRadius = 32; // at this radius and above, the centre is marked
constexpr double kCentreMark = 3;    // half its length
constexpr double kHollowRadius = 40;
constexpr double kFocusLine = 2;
constexpr double kSwatchRadius = 19;
constexpr double kSwatchWidth = 10;
constexpr double kMinOutlinedRadius = 7; // smaller discs have no room for an outline
constexpr int kMargin = 4;               // for antialiasing

constexpr double kCaptionSize = 12;
constexpr double kCaptionGap = 8; // from the rings
constexpr double kCaptionMarginX = 8;
constexpr double kCaptionMarginY = 3;
constexpr double kCaptionCorner = 6;
constexpr int kCaptionFlags = Qt::AlignCenter | Qt::TextWordWrap;

constexpr QRgb kFaintDark = 0x60101012;
constexpr QRgb kFaintWhite = 0x80FFFFFF;
constexpr QRgb kDark = 0xD0101012;
constexpr QRgb kOutlineDark = 0x80101012;
constexpr QRgb kWhite = 0xFFFFFFFF;

/// Draws a light line over a wider dark one.
void strokeLine(QPainter& painter, const QLineF& line, const QColor& light) {
    painter.setPen(QPen(QColor::fromRgba(kDark), 3 * kLine, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(line);
    painter.setPen(QPen(light, kLine, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(line);
}

/// A pen whose dashes fit a circle of `radius` without a seam.
QPen dashedPen(const QColor& color, double radius) {
    const double length = 2 * std::numbers::pi * radius;
    const double period = length / std::max(8.0, 2 * std::round(length / kDashPeriod / 2)) / kLine;
    QPen pen(color, kLine, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({period * kDashShare, period * (1 - kDashShare)});
    return pen;
}

void strokeCrosshair(QPainter& painter, QPointF centre, double radius, const QColor& light) {
    const double from = radius + kCrosshairGap;
    for (const QPointF direction : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)})
        strokeLine(painter, {centre + direction * from, centre + direction * (from + kCrosshairLength)},
                   light);
}

QRect around(QPointF centre, double reach) {
    return QRectF(centre.x() - reach, centre.y() - reach, 2 * reach, 2 * reach)
        .toAlignedRect()
        .adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

} // namespace

EditDisc::EditDisc(CustomImageView* view) : PhotoOverlay(view) {
    connect(view, &CustomImageView::frameChanged, this, [this] {
        updateOutline();
        refresh();
    });
}

double EditDisc::shownRadius() const {
    return m_place && m_view->image() ? shownLength(*m_view, m_radius) : 0;
}

bool EditDisc::isTiny() const {
    return m_place && m_view->image() && shownRadius() < kTinyRadius;
}

QPointF EditDisc::shownCentre() const {
    if (!m_place || !m_view->image())
        return {};
    return complexion::shownCentre(*m_view, *m_place);
}

void EditDisc::setPlace(std::optional<PixelPosition> place, double radius) {
    if (m_place == place && m_radius == radius)
        return;
    m_place = place;
    m_radius = radius;
    m_look = DiscLook::Plain;
    m_outlined = {};
    m_outline = {};
    m_secondRing.reset();
    m_caption.clear();
    refresh();
}

void EditDisc::setLook(DiscLook look) {
    if (m_look == look)
        return;
    m_look = look;
    refresh();
}

void EditDisc::setOutlined(PixelMask pixels) {
    if (m_outlined == pixels)
        return;
    m_outlined = std::move(pixels);
    updateOutline();
    refresh();
}

void EditDisc::setSecondRing(std::optional<DiscRing> ring) {
    if (m_secondRing == ring)
        return;
    m_secondRing = ring;
    refresh();
}

void EditDisc::setCaption(const QString& caption) {
    if (m_caption == caption)
        return;
    m_caption = caption;
    refresh();
}

void EditDisc::setSwatch(std::optional<QColor> color) {
    if (m_swatch == color)
        return;
    m_swatch = color;
    refresh();
}

void EditDisc::setFocusShown(bool shown) {
    if (m_isFocusShown == shown)
        return;
    m_isFocusShown = shown;
    update();
}

void EditDisc::updateOutline() {
    m_outline = {};
    if (m_outlined.area.isEmpty() || shownRadius() < kMinOutlinedRadius)
        return;
    const double ratio = devicePixelRatioF();
    const QTransform toDevice = m_view->pixelsToWidget() * QTransform::fromScale(ratio, ratio);
    const QRect visible = QRectF(QPointF(), QSizeF(size()) * ratio).toAlignedRect();
    m_outline = outlineOf(m_outlined, toDevice, visible, std::max(1, qRound(ratio)),
                          palette().color(QPalette::Highlight).rgba(), kOutlineDark);
    m_outline.picture.setDevicePixelRatio(ratio);
}

QRegion EditDisc::extent() const {
    if (!m_place || !m_view->image())
        return {};
    const QPointF centre = shownCentre();
    if (m_swatch)
        return around(centre, kSwatchRadius + kSwatchWidth);
    const double radius = shownRadius();
    QRegion region =
        around(centre, radius + 2 * kLine + (radius < kTinyRadius ? kCrosshairGap + kCrosshairLength : 0));
    if (m_secondRing)
        region += around(complexion::shownCentre(*m_view, m_secondRing->place),
                         shownLength(*m_view, m_secondRing->radius) + kLine);
    region += captionBox().toAlignedRect();
    if (radius < kHollowRadius || m_secondRing || m_look == DiscLook::OverBorder)
        return region;
    // The photo inside a large ring need not be repainted when the ring moves.
    const double free = (radius - 2 * kLine) / std::numbers::sqrt2 - 2 * kMargin;
    region -= around(centre, free);
    region += around(centre, kCentreMark + 2 * kLine);
    if (!m_outline.picture.isNull()) {
        const double ratio = m_outline.picture.devicePixelRatio();
        region += QRectF(QPointF(m_outline.origin) / ratio, m_outline.picture.deviceIndependentSize())
                      .toAlignedRect();
    }
    return region;
}

void EditDisc::refresh() {
    const QRegion now = extent();
    update(m_painted);
    update(now);
    m_painted = now;
}

void EditDisc::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isFocusShown) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), kFocusLine));
        constexpr double kInset = kFocusLine / 2;
        painter.drawRect(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset));
    }
    if (!m_place || !m_view->image())
        return;
    if (m_swatch) {
        paintSwatch(painter);
        return;
    }
    if (!m_outline.picture.isNull())
        painter.drawImage(QPointF(m_outline.origin) / m_outline.picture.devicePixelRatio(),
                          m_outline.picture);
    if (m_secondRing)
        paintSecondRing(painter);
    paintDisc(painter);
    if (!m_caption.isEmpty())
        paintCaption(painter);
}

void EditDisc::paintSecondRing(QPainter& painter) const {
    const QPointF centre = complexion::shownCentre(*m_view, m_secondRing->place);
    const double radius = shownLength(*m_view, m_secondRing->radius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgba(kFaintDark), kLine));
    painter.drawEllipse(centre, radius + kLine / 2, radius + kLine / 2);
    const double inner = std::max(0.5, radius - kLine / 2);
    painter.setPen(QPen(QColor::fromRgba(kFaintWhite), kLine));
    painter.drawEllipse(centre, inner, inner);
}

QRectF EditDisc::captionBox() const {
    if (m_caption.isEmpty())
        return {};
    // A caption that is wider than the view wraps.
    const QRectF lines =
        QFontMetricsF(textFont(kCaptionSize))
            .boundingRect(QRectF(0, 0, width() - 2 * kCaptionMarginX, height()), kCaptionFlags, m_caption);
    const QSizeF size(std::ceil(lines.width()) + 2 * kCaptionMarginX, lines.height() + 2 * kCaptionMarginY);
    const QPointF centre = shownCentre();
    const double radius = shownRadius();
    double above = radius < kTinyRadius ? radius + kCrosshairGap + kCrosshairLength : radius;
    double below = above;
    if (m_secondRing) {
        const double off = complexion::shownCentre(*m_view, m_secondRing->place).y() - centre.y();
        above = std::max(above, shownLength(*m_view, m_secondRing->radius) - off);
        below = std::max(below, shownLength(*m_view, m_secondRing->radius) + off);
    }
    double top = centre.y() + below + kCaptionGap;
    if (top + size.height() > height())
        top = centre.y() - above - kCaptionGap - size.height();
    const auto within = [](double value, double length, double whole) {
        return std::clamp(value, 0.0, std::max(0.0, whole - length));
    };
    return {QPointF(within(centre.x() - size.width() / 2, size.width(), width()),
                    within(top, size.height(), height())),
            size};
}

void EditDisc::paintCaption(QPainter& painter) const {
    const QRectF box = captionBox();
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(kDark));
    painter.drawRoundedRect(box, kCaptionCorner, kCaptionCorner);
    painter.setPen(QColor::fromRgba(kWhite));
    painter.setFont(textFont(kCaptionSize));
    painter.drawText(box.adjusted(kCaptionMarginX, 0, -kCaptionMarginX, 0), kCaptionFlags, m_caption);
}

void EditDisc::paintDisc(QPainter& painter) const {
    const QPointF centre = shownCentre();
    const double radius = shownRadius();
    const bool isOffered = m_look == DiscLook::Plain || m_look == DiscLook::Repairs;
    const QColor light =
        isOffered ? palette().color(QPalette::Highlight).lighter(112) : QColor::fromRgba(kWhite);
    painter.setBrush(Qt::NoBrush);
    // The dark line is just outside the radius, the light one just inside.
    const double outer = radius + kLine / 2;
    const double inner = std::max(0.5, radius - kLine / 2);
    painter.setPen(QPen(QColor::fromRgba(kDark), kLine));
    painter.drawEllipse(centre, outer, outer);
    const QRectF circle(centre.x() - inner, centre.y() - inner, 2 * inner, 2 * inner);
    const QPen whole(light, kLine, Qt::SolidLine, Qt::FlatCap);
    switch (m_look) {
    case DiscLook::Plain:
    case DiscLook::Repairs:
        painter.setPen(whole);
        painter.drawEllipse(circle);
        break;
    case DiscLook::Uneven: {
        painter.setPen(dashedPen(light, inner));
        painter.drawArc(circle, -90 * 16, 180 * 16);
        painter.setPen(whole);
        painter.drawArc(circle, 90 * 16, 180 * 16);
        break;
    }
    case DiscLook::Idle:
    case DiscLook::OverBorder:
        painter.setPen(dashedPen(light, inner));
        painter.drawEllipse(circle);
        break;
    }
    if (m_look == DiscLook::OverBorder) {
        const double reach = inner / std::numbers::sqrt2;
        strokeLine(painter, {centre + QPointF(-reach, reach), centre + QPointF(reach, -reach)}, light);
    }
    if (radius < kTinyRadius)
        strokeCrosshair(painter, centre, radius, light);
    else if (radius >= kMarkedRadius && m_look != DiscLook::OverBorder && m_look != DiscLook::Repairs) {
        strokeLine(painter, {centre - QPointF(kCentreMark, 0), centre + QPointF(kCentreMark, 0)}, light);
        strokeLine(painter, {centre - QPointF(0, kCentreMark), centre + QPointF(0, kCentreMark)}, light);
    }
}

void EditDisc::paintSwatch(QPainter& painter) const {
    const QPointF centre = shownCentre();
    const auto ring = [&](const QColor& color, double radius, double width) {
        painter.setPen(QPen(color, width));
        painter.drawEllipse(centre, radius, radius);
    };
    painter.setBrush(Qt::NoBrush);
    ring(QColor::fromRgba(kDark), kSwatchRadius, kSwatchWidth + 4 * kLine);
    ring(QColor::fromRgba(kWhite), kSwatchRadius, kSwatchWidth + 2 * kLine);
    ring(*m_swatch, kSwatchRadius, kSwatchWidth);
    strokeLine(painter, {centre - QPointF(kCentreMark, 0), centre + QPointF(kCentreMark, 0)},
               QColor::fromRgba(kWhite));
    strokeLine(painter, {centre - QPointF(0, kCentreMark), centre + QPointF(0, kCentreMark)},
               QColor::fromRgba(kWhite));
}

} // namespace complexion
