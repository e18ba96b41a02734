// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/painted_frame.h"

#include "view/device_pixels.h"
#include "view/image_painter.h"
#include "view/nearest_pixels.h"
#include "view/parallel_rows.h"
#include "view/smooth_pixels.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace complexion {

namespace {

constexpr double kMaxPhaseError = 1e-3; // device pixels
/// Views with fewer device pixels are painted within one frame of the display; larger ones are refined in
/// steps.
constexpr qint64 kMinProvisionalArea = 1'500'000;
constexpr int kTileSide = 1024;
/// Missing device pixels that are painted at once although pixels of another zoom are shown.
constexpr qint64 kMaxPaintedAtOnce = 250'000;
/// With fewer pixels, one thread copies or scales them faster.
constexpr qint64 kMinParallelArea = 65'536;
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

qint64 areaOf(const QRegion& region) {
    qint64 area = 0;
    for (const QRect& rect : region)
        area += qint64{rect.width()} * rect.height();
    return area;
}

bool isOpaque(const QImage& image) {
    return image.format() == QImage::Format_RGB32;
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
    m_backdrop.invalidate(changed);
    dropStandIn(); // it shows the image before the change
}

void PaintedFrame::dropStandIn() {
    if (m_standIn.size() == m_pixels.size())
        m_spare = std::exchange(m_standIn, {});
    else
        m_standIn = {};
}

void PaintedFrame::keepStandIn() {
    // If the view changes again before it is refined, keep the last complete stand-in.
    if (isProvisional() || m_valid.rectCount() != 1)
        return;
    const QRect area = m_valid.boundingRect();
    const QPoint place(wrapped(area.x(), m_pixels.width()), wrapped(area.y(), m_pixels.height()));
    if (area.size() == m_pixels.size()) {
        m_standIn = std::exchange(m_pixels, std::exchange(m_spare, {})); // still wraps around
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
        if (isOpaque(m_pixels) && isAveraged(m_toPlane)) {
            auto* const first = reinterpret_cast<QRgb*>(m_pixels.scanLine(place.y())) + place.x();
            writeAveraged(image, m_toPlane, piece, m_background.rgb(), first, m_pixels.bytesPerLine());
            return;
        }
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

template <class Scaled>
void PaintedFrame::drawScaled(QPainter& painter, const QImage& source, const QTransform& fromPlane,
                              const QRegion& onPlane) const {
    if (const auto device = isOpaque(source) ? DevicePixels::of(painter) : std::nullopt) {
        for (const QRect& rect : onPlane.translated(m_origin) & device->writable()) {
            const Scaled scaled(source, fromPlane, rect.translated(-m_origin));
            forRowsInParallel(rect.size(), kMinParallelArea, [&](int begin, int end) {
                scaled.write(begin, end, [&](int y) { return device->row(rect.y() + y) + rect.x(); });
            });
        }
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    for (const QRect& rect : onPlane) {
        QImage scaled(rect.size(), source.format());
        Scaled(source, fromPlane, rect).write(0, rect.height(), [&scaled](int y) {
            return reinterpret_cast<QRgb*>(scaled.scanLine(y));
        });
        painter.drawImage(planeToPainter(rect).topLeft(), withRatio(scaled, m_toDevice.m11()),
                          QRectF(QPointF(), rect.size()));
    }
}

QRegion PaintedFrame::drawProvisional(QPainter& painter, const Image& image, const QRegion& missing) {
    const auto inwards = [](const QRectF& rect) {
        return rect.adjusted(1, 1, -1, -1).toAlignedRect(); // the pixels at the border are painted
    };
    const QTransform standInToPlane = m_standInToPixels * m_toPlane;
    const QRegion shrunk = missing & inwards(standInToPlane.mapRect(QRectF(m_standIn.rect())));
    drawScaled<NearestPixels>(painter, m_standIn, standInToPlane.inverted(), shrunk);
    QRegion beside = missing - shrunk;
    const PixelSize size = image.pixelSize();
    const QRegion covered = beside & inwards(m_toPlane.mapRect(QRectF(0, 0, size.width, size.height)));
    if (!isOpaque(m_standIn) || areaOf(covered) <= kMaxPaintedAtOnce)
        return beside;
    const QTransform fromPlane = m_toPlane.inverted();
    for (const QRect& rect : covered)
        m_backdrop.prepare(image, fromPlane.mapRect(QRectF(rect)));
    drawScaled<SmoothPixels>(painter, m_backdrop.pixels(), fromPlane * m_backdrop.fromImage(), covered);
    return beside - covered;
}

void PaintedFrame::drawPixels(QPainter& painter, const QRegion& onPlane) const {
    if (const auto device = isOpaque(m_pixels) ? DevicePixels::of(painter) : std::nullopt) {
        for (const QRect& rect : (onPlane.translated(m_origin) & device->writable()).translated(-m_origin))
            forEachPiece(rect, m_pixels.size(), [&](const QRect& piece, QPoint place) {
                const QPoint to = piece.topLeft() + m_origin;
                forRowsInParallel(piece.size(), kMinParallelArea, [&](int begin, int end) {
                    for (int y = begin; y < end; ++y)
                        std::copy_n(reinterpret_cast<const QRgb*>(m_pixels.constScanLine(place.y() + y)) +
                                        place.x(),
                                    piece.width(), device->row(to.y() + y) + to.x());
                });
            });
        return;
    }
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
    if (isProvisional())
        missing = drawProvisional(painter, image, missing);
    for (const QRect& rect : missing)
        render(image, rect);
    drawPixels(painter, needed & m_valid);
    if (m_valid == QRegion(viewOnPlane()))
        dropStandIn();
}

QRegion PaintedFrame::refine(const Image& image, QPoint pointer, std::chrono::milliseconds duration) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + duration;
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
    Clock::duration longest = {}; // of a tile
    for (const QRect& tile : tiles) {
        const Clock::time_point begin = Clock::now();
        if (!changed.isEmpty() && begin + longest >= end)
            return changed;
        for (const QRect& rect : QRegion(tile) - m_valid)
            render(image, rect);
        changed += planeToPainter(tile).toAlignedRect();
        longest = std::max(longest, Clock::now() - begin);
    }
    dropStandIn();
    return changed;
}

bool PaintedFrame::prepareBackdrop(const Image& image, std::chrono::milliseconds duration) {
    if (qint64{m_view.width()} * m_view.height() < kMinProvisionalArea || !isOpaque(m_pixels))
        return true;
    m_backdrop.prepare(image, duration);
    return m_backdrop.isComplete();
}

} // namespace complexion
