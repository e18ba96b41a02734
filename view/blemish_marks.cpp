// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/blemish_marks.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace complexion {

namespace {

// Lengths in points.
constexpr double kLine = 1.25;      // the width of each of the two lines
constexpr double kGap = 3;          // between a blemish and its mark
constexpr double kMinShown = 6;     // radius of a mark
constexpr int kMargin = 2;          // for antialiasing
constexpr double kLightOpacity = 1; // of the first mark
constexpr double kDarkOpacity = 0.4;
constexpr double kMinStrength = 0.35; // opacity of the last mark, relative to the first

/// The relative opacity of a mark; `last` is the index of the last one.
double strengthOf(std::size_t index, std::size_t last) {
    if (last == 0)
        return 1;
    return 1 - (1 - kMinStrength) * static_cast<double>(index) / static_cast<double>(last);
}

} // namespace

BlemishMarks::BlemishMarks(CustomImageView* view) : PhotoOverlay(view) {
    hide();
    connect(view, &CustomImageView::frameChanged, this, &BlemishMarks::refresh);
}

void BlemishMarks::setMarked(std::vector<DiscRing> blemishes) {
    if (m_marked == blemishes)
        return;
    m_marked = std::move(blemishes);
    setVisible(!m_marked.empty());
    refresh();
}

double BlemishMarks::shownRadius(const DiscRing& blemish) const {
    return std::max(kMinShown, shownLength(*m_view, blemish.radius) + kGap);
}

void BlemishMarks::refresh() {
    QRegion covered;
    if (m_view->image())
        for (const DiscRing& blemish : m_marked) {
            const QPointF centre = shownCentre(*m_view, blemish.place);
            const double reach = shownRadius(blemish) + 2 * kLine + kMargin;
            covered += QRectF(centre.x() - reach, centre.y() - reach, 2 * reach, 2 * reach).toAlignedRect();
        }
    update(m_painted);
    update(covered);
    m_painted = covered;
}

void BlemishMarks::paintEvent(QPaintEvent* event) {
    if (!m_view->image())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (std::size_t i = 0; i < m_marked.size(); ++i) {
        const QPointF centre = shownCentre(*m_view, m_marked[i].place);
        const double radius = shownRadius(m_marked[i]);
        const QRectF box(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
        if (!box.adjusted(-2 * kLine, -2 * kLine, 2 * kLine, 2 * kLine).intersects(event->rect()))
            continue;
        const double strength = strengthOf(i, m_marked.size() - 1);
        const auto ring = [&](const QColor& color, double opacity, double at) {
            painter.setOpacity(strength * opacity);
            painter.setPen(QPen(color, kLine));
            painter.drawEllipse(centre, at, at);
        };
        ring(Qt::black, kDarkOpacity, radius + kLine);
        ring(Qt::white, kLightOpacity, radius);
    }
}

} // namespace complexion
