// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/painted_frame.h"

#include "imaging/base/parallel.h"
#include "view/image_painter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

namespace complexion {

namespace {

constexpr double kMaxPhaseError = 1e-3; // device pixels
/// Views with fewer device pixels are painted within one frame of the display; larger ones are refined in
/// steps.
constexpr qint64 kMinProvisionalArea = 1'500'000;
constexpr int kTileSide = 512;
/// Rows that are scaled before they are drawn: few enough to stay in the L2 cache.
constexpr int kStripRows = 128;
constexpr int kRowsPerTask = 32;
constexpr qint64 kMinParallelArea = 65'536; // device pixels; below, one thread is faster
/// A change affects device pixels within this distance, because scaling blends neighbours.
constexpr int kChangeMargin = 3;

int wrapped(int value, int period) {
    const int remainder = value % period;
    return remainder < 0 ? remainder + period : remainder;
}

/// Calls `use(piece, place)` for each part of `onPlane` that is contiguous in an image of `size` that wraps
/// around: `place` is its top-left pixel there.
template <class Use>
void forEachPiece(const QRect& onPlane, const QSize& size, Use use) {
    for (int y = onPlane.top(); y <= onPlane.bottom();) {
        const int row = wrapped(y, size.height());
        const int height = std::min(size.height() - row, onPlane.bottom() + 1 - y);
        for (int x = onPlane.left(); x <= onPlane.right();) {
            const int column = wrapped(x, size.width());
            const int width = std::min(size.width() - column, onPlane.right() + 1 - x);
            use(QRect(x, y, width, height), QPoint(column, row));
            x += width;
        }
        y += height;
    }
}

/// Manhattan distance from the point to the rectangle; 0 inside.
int distance(const QRect& rect, QPoint point) {
    const QPoint nearest(std::clamp(point.x(), rect.left(), rect.right()),
                         std::clamp(point.y(), rect.top(), rect.bottom()));
    return (nearest - point).manhattanLength();
}

/// The pixels at the centres of `count` pixels from `begin` on, in an image of `extent` pixels that is
/// `scale` times as fine and wraps around: its first pixel is at `first`.
std::vector<int> nearestPixels(int begin, int count, double scale, double offset, int extent, int first) {
    std::vector<int> pixels(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int nearest = static_cast<int>(std::floor((begin + i + 0.5) * scale + offset));
        pixels[static_cast<std::size_t>(i)] = (std::clamp(nearest, 0, extent - 1) + first) % extent;
    }
    return pixels;
}

/// Fills `target` with the pixels of `source` at the crossings of `columns` and the first `rows`.
void scaleRows(const QImage& source, std::span<const int> columns, std::span<const int> rows,
               QImage& target) {
    const int height = std::min(target.height(), static_cast<int>(rows.size()));
    uchar* const out = target.bits();
    const auto scaleTask = [&](int task) {
        for (int y = task * kRowsPerTask; y < std::min(height, (task + 1) * kRowsPerTask); ++y) {
            const auto* from =
                reinterpret_cast<const QRgb*>(source.constScanLine(rows[static_cast<std::size_t>(y)]));
            auto* to = reinterpret_cast<QRgb*>(out + y * target.bytesPerLine());
            for (const int column : columns)
                *to++ = from[column];
        }
    };
    const int tasks = (height + kRowsPerTask - 1) / kRowsPerTask;
    if (qint64{height} * target.width() >= kMinParallelArea)
        parallelFor(tasks, scaleTask);
    else
        for (int task = 0; task < tasks; ++task)
            scaleTask(task);
}

/// An alias of the pixels (not a copy) with another device pixel ratio.
QImage withRatio(const QImage& image, double ratio) {
    QImage alias(image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format());
    alias.setDevicePixelRatio(ratio);
    return alias;
}

} // namespace

void PaintedFrame::clear() {
    *this = PaintedFrame(m_background);
}

void PaintedFrame::invalidate(const PixelRect& changed) {
    const QRectF area(changed.x, changed.y, changed.width, changed.height);
    m_valid -= m_toPlane.mapRect(area).toAlignedRect().adjusted(-kChangeMargin, -kChangeMargin, kChangeMargin,
                                                                kChangeMargin);
    m_standIn = {}; // it shows the image before the change
}

void PaintedFrame::keepStandIn() {
    // If the view changes again before it is refined, keep the last complete stand-in.
    if (m_valid.rectCount() != 1)
        return;
    const QRect area = m_valid.boundingRect();
    const QPoint place(wrapped(area.x(), m_pixels.width()), wrapped(area.y(), m_pixels.height()));
    if (area.size() == m_pixels.size()) {
        m_standIn = std::exchange(m_pixels, {}); // still wraps around
        m_standIn.setOffset(place);
    } else {
        m_standIn = QImage(area.size(), m_pixels.format());
        QPainter painter(&m_standIn);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        forEachPiece(area, m_pixels.size(), [&](const QRect& piece, QPoint from) {
            painter.drawImage(piece.topLeft() - area.topLeft(), m_pixels, QRect(from, piece.size()));
        });
    }
    m_standInToPixels = QTransform::fromTranslate(area.x(), area.y()) * m_toPlane.inverted();
}

void PaintedFrame::place(const QTransform& pixelsToDevice, const QRect& viewOnDevice) {
    const double x = pixelsToDevice.dx() - m_toPlane.dx();
    const double y = pixelsToDevice.dy() - m_toPlane.dy();
    const QPoint origin(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
    const bool isMoved = !m_pixels.isNull() && pixelsToDevice.m11() == m_toPlane.m11() &&
                         pixelsToDevice.m22() == m_toPlane.m22() &&
                         std::abs(x - origin.x()) < kMaxPhaseError &&
                         std::abs(y - origin.y()) < kMaxPhaseError;
    if (!isMoved) {
        if (qint64{viewOnDevice.width()} * viewOnDevice.height() >= kMinProvisionalArea)
            keepStandIn();
        m_toPlane = pixelsToDevice;
        m_valid = {};
    }
    m_origin = isMoved ? origin : QPoint();
    m_view = viewOnDevice;
    m_valid &= viewOnPlane();
    if (m_pixels.size() != m_view.size())
        resizePixels();
}

void PaintedFrame::resizePixels() {
    const bool isOpaque = m_background.alpha() == 255;
    const QImage::Format format = isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
    const QImage previous = std::exchange(m_pixels, QImage(m_view.size(), format));
    QPainter painter(&m_pixels);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const QRect& rect : m_valid)
        forEachPiece(rect, m_pixels.size(), [&](const QRect& piece, QPoint place) {
            forEachPiece(piece, previous.size(), [&](const QRect& part, QPoint source) {
                painter.drawImage(place + part.topLeft() - piece.topLeft(), previous,
                                  QRect(source, part.size()));
            });
        });
}

void PaintedFrame::render(const Image& image, const QRect& onPlane) {
    forEachPiece(onPlane, m_pixels.size(), [&](const QRect& piece, QPoint place) {
        QPainter painter(&m_pixels);
        painter.setClipRect(QRect(place, piece.size()));
        painter.translate(place - piece.topLeft());
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(piece, m_background);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        paintImage(painter, image, m_toPlane, piece);
    });
    m_valid += onPlane;
}

QRectF PaintedFrame::planeToPainter(const QRect& onPlane) const {
    return m_toDevice.inverted().mapRect(QRectF(onPlane.translated(m_origin)));
}

void PaintedFrame::drawStandIn(QPainter& painter, const QRegion& onPlane) const {
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    const QTransform fromPlane = (m_standInToPixels * m_toPlane).inverted();
    for (const QRect& rect : onPlane) {
        const std::vector<int> columns =
            nearestPixels(rect.left(), rect.width(), fromPlane.m11(), fromPlane.dx(), m_standIn.width(),
                          m_standIn.offset().x());
        const std::vector<int> rows =
            nearestPixels(rect.top(), rect.height(), fromPlane.m22(), fromPlane.dy(), m_standIn.height(),
                          m_standIn.offset().y());
        QImage strip(rect.width(), std::min(rect.height(), kStripRows), m_standIn.format());
        for (int begin = 0; begin < rect.height(); begin += kStripRows) {
            const int height = std::min(kStripRows, rect.height() - begin);
            scaleRows(m_standIn, columns, std::span(rows).subspan(static_cast<std::size_t>(begin)), strip);
            const QRect part(rect.x(), rect.y() + begin, rect.width(), height);
            painter.drawImage(planeToPainter(part).topLeft(), withRatio(strip, m_toDevice.m11()),
                              QRectF(QPointF(), part.size()));
        }
    }
}

void PaintedFrame::drawPixels(QPainter& painter, const QRegion& onPlane) const {
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    const QImage pixels = withRatio(m_pixels, m_toDevice.m11());
    for (const QRect& rect : onPlane)
        forEachPiece(rect, m_pixels.size(), [&](const QRect& piece, QPoint place) {
            painter.drawImage(planeToPainter(piece).topLeft(), pixels, QRectF(place, piece.size()));
        });
}

void PaintedFrame::paint(QPainter& painter, const Image& image, const QTransform& toPainter,
                         const QRegion& exposed, const QRect& view) {
    m_toDevice = painter.deviceTransform();
    const QTransform pixelsToDevice = toPainter * m_toDevice;
    const QRect viewOnDevice = m_toDevice.mapRect(QRectF(view)).toAlignedRect();
    if (!isScaleAndTranslation(pixelsToDevice) || viewOnDevice.isEmpty()) {
        clear();
        for (const QRect& part : exposed) {
            painter.fillRect(part, m_background);
            paintImage(painter, image, toPainter, part);
        }
        return;
    }
    place(pixelsToDevice, viewOnDevice);
    QRegion needed;
    for (const QRect& part : exposed)
        needed += m_toDevice.mapRect(QRectF(part)).toAlignedRect().translated(-m_origin);
    needed &= viewOnPlane();

    QRegion missing = needed - m_valid;
    if (isProvisional()) {
        // Rounded inwards; the pixels at the border are painted.
        const QRectF standInOnPlane =
            (m_standInToPixels * m_toPlane).mapRect(QRectF(m_standIn.rect())).adjusted(1, 1, -1, -1);
        const QRegion scaled = missing & standInOnPlane.toAlignedRect();
        drawStandIn(painter, scaled);
        missing -= scaled;
    }
    for (const QRect& rect : missing)
        render(image, rect);
    drawPixels(painter, needed & m_valid);
    if (m_valid == QRegion(viewOnPlane()))
        m_standIn = {};
}

QRegion PaintedFrame::refine(const Image& image, QPoint pointer, std::chrono::milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    const QPoint center = m_toDevice.map(pointer) - m_origin;
    std::vector<QRect> tiles;
    const QRect view = viewOnPlane();
    for (int y = view.top(); y <= view.bottom(); y += kTileSide)
        for (int x = view.left(); x <= view.right(); x += kTileSide)
            if (const QRect tile = QRect(x, y, kTileSide, kTileSide) & view;
                !QRegion(tile).subtracted(m_valid).isEmpty())
                tiles.push_back(tile);
    std::ranges::sort(tiles, {}, [center](const QRect& tile) { return distance(tile, center); });
    QRegion changed;
    for (const QRect& tile : tiles) {
        if (!changed.isEmpty() && std::chrono::steady_clock::now() >= end)
            return changed;
        for (const QRect& rect : QRegion(tile) - m_valid)
            render(image, rect);
        changed += planeToPainter(tile).toAlignedRect();
    }
    m_standIn = {};
    return changed;
}

} // namespace complexion
