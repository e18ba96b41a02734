// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stroke_drawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace complexion {

namespace {

constexpr double kSpacing = 0.25; // of points, in radii
constexpr double kMinSpacing = 1; // the same, in pixels

} // namespace

StrokeDrawing::StrokeDrawing(ViewController& controller, Aim& aim, StrokeOutline* outline, QObject* parent)
    : QObject(parent), m_controller(controller), m_aim(aim), m_outline(outline) {
    connect(&aim, &Aim::placeChanged, this, [this] {
        if (isDrawing() && m_isByKeys)
            addPlace();
    });
    connect(&controller, &ViewController::photoOpened, this, &StrokeDrawing::cancel);
}

bool StrokeDrawing::begin() {
    const Repair repair = m_controller.currentRepair();
    const bool isNatural = repair.style == RepairStyle::Natural;
    if (isNatural && repair.radius <= kMaxStrokeRadius)
        return true;
    const QString reason = isNatural
                               ? tr("Strokes need an edit area of at most %1 pixels.").arg(kMaxStrokeRadius)
                               : tr("Strokes need the natural repair.");
    Q_EMIT announced(reason);
    Q_EMIT m_controller.noticed(reason);
    return false;
}

void StrokeDrawing::drawTo(Point inRootView) {
    if (!m_controller.hasImage() || m_isRefused)
        return;
    if (!isDrawing() && !begin()) {
        m_isRefused = true;
        return;
    }
    m_isByKeys = false;
    add(imagePointAt(inRootView, m_controller.originalImage().size(), m_controller.imageView->frame()));
}

void StrokeDrawing::toggleByKeys() {
    if (isDrawing()) {
        finish();
        return;
    }
    m_aim.takeKeys();
    if (!m_aim.place() || !begin())
        return;
    m_isByKeys = true;
    addPlace();
    Q_EMIT announced(tr("Stroke begun."));
}

void StrokeDrawing::addPlace() {
    if (m_aim.place())
        add(centreOf(*m_aim.place(), m_controller.originalImage().size()));
}

void StrokeDrawing::add(Point inImage) {
    const auto radius = static_cast<double>(m_controller.currentRepair().radius);
    if (!m_path.empty() && std::hypot(inImage.x - m_path.back().x, inImage.y - m_path.back().y) <
                               std::max(kMinSpacing, kSpacing * radius))
        return;
    m_path.push_back(inImage);
    if (m_path.size() > kMaxStrokePoints) {
        // Keep every second point.
        std::size_t index = 0;
        std::erase_if(m_path, [&index](const Point&) { return index++ % 2 == 1; });
    }
    showOutline();
}

void StrokeDrawing::finish() {
    m_isRefused = false;
    const std::vector<Point> path = std::exchange(m_path, {});
    showOutline();
    if (!path.empty())
        m_controller.BeginStroke(path);
}

void StrokeDrawing::cancel() {
    m_isRefused = false;
    m_path.clear();
    showOutline();
}

void StrokeDrawing::showOutline() {
    m_aim.setStroke(m_path);
    if (!m_outline)
        return;
    QPolygonF shown;
    if (!m_path.empty()) {
        const double height = m_controller.originalImage().size().height;
        for (const Point& point : m_path)
            shown << QPointF(point.x, height - point.y);
    }
    m_outline->setPath(shown, static_cast<double>(m_controller.currentRepair().radius));
}

} // namespace complexion
