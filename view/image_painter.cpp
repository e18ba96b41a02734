// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/image_painter.h"

#include "imaging/base/parallel.h"
#include "view/averaged_picture.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <bit>

namespace complexion {

namespace {

/// Pixels around a painted part that smooth scaling looks at.
constexpr int kSmoothingMargin = 2;

constexpr int kRowsAtOnce = 64;
constexpr std::int64_t kSmallArea = std::int64_t{128} * 128; // pixels that are not worth a second thread

/// The level of an image to paint at `scale` device pixels per image pixel: the coarsest one that is still at
/// least as fine as the screen.
int levelFor(double scale) {
    int level = 0;
    while (level < Tile::kLastLevel && scale * (2 << level) <= 1)
        ++level;
    return level;
}

bool onlyScalesAndMoves(const QTransform& transform) {
    return transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
}

/// A part of the image as the toolkit's picture.
QImage readPart(const Image& image, const QRect& part) {
    QImage picture(part.width(), part.height(), QImage::Format_ARGB32_Premultiplied);
    auto* pixels = reinterpret_cast<RGBA32*>(picture.bits());
    const std::ptrdiff_t stride = picture.bytesPerLine() / std::ptrdiff_t{sizeof(RGBA32)};
    const auto readRows = [&](int chunk) {
        const int begin = chunk * kRowsAtOnce;
        const int end = std::min(begin + kRowsAtOnce, part.height());
        for (int y = begin; y < end; ++y) {
            RGBA32* row = pixels + y * stride;
            image.read({part.x(), part.y() + y, part.width(), 1}, row, stride);
            for (int x = 0; x < part.width(); ++x)
                row[x].color = std::rotr(row[x].color, 8); // RRGGBBAA to AARRGGBB
        }
    };
    const int chunks = (part.height() + kRowsAtOnce - 1) / kRowsAtOnce;
    if (std::int64_t{part.width()} * part.height() > kSmallArea)
        parallelFor(chunks, readRows);
    else
        for (int chunk = 0; chunk < chunks; ++chunk)
            readRows(chunk);
    return picture;
}

/// At one device pixel per pixel and more.
void paintEnlarged(QPainter& painter, const Image& image, const QTransform& toPainter, const QRectF& exposed,
                   bool smooth) {
    const PixelSize size = image.pixelSize();
    const QRect part = toPainter.inverted()
                           .mapRect(exposed)
                           .toAlignedRect()
                           .adjusted(-kSmoothingMargin, -kSmoothingMargin, kSmoothingMargin, kSmoothingMargin)
                           .intersected(QRect(0, 0, size.width, size.height));
    if (part.isEmpty())
        return;
    painter.save();
    painter.setClipRect(exposed, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    painter.setTransform(toPainter, true);
    painter.drawImage(part.topLeft(), readPart(image, part));
    painter.restore();
}

/// Below one device pixel per pixel, on a painter that only scales and moves.
void paintAveraged(QPainter& painter, const Image& image, const QTransform& toPainter, const QRectF& exposed,
                   int level) {
    const QTransform toDevice = painter.deviceTransform();
    const QRect shown = toDevice.mapRect(exposed).toAlignedRect();
    const PixelSize size = image.pixelSize();
    const QTransform pixelsToDevice = toPainter * toDevice;
    const QRect covered = pixelsToDevice.mapRect(QRectF(0, 0, size.width, size.height)).toAlignedRect();
    const QRect part = shown.intersected(covered);
    if (part.isEmpty())
        return;
    QImage picture = averagedPicture(image, level, pixelsToDevice, part);
    picture.setDevicePixelRatio(toDevice.m11());
    painter.save();
    painter.setClipRect(exposed, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(toDevice.inverted().map(QPointF(part.topLeft())), picture);
    painter.restore();
}

} // namespace

void paintImage(QPainter& painter, const Image& image, const QTransform& toPainter, const QRectF& exposed) {
    const QTransform pixelsToDevice = toPainter * painter.deviceTransform();
    const double scale = std::min(pixelsToDevice.m11(), pixelsToDevice.m22());
    if (!image.hasPixels() || !(scale > 0))
        return;
    if (scale < 1 && onlyScalesAndMoves(pixelsToDevice))
        paintAveraged(painter, image, toPainter, exposed, levelFor(scale));
    else
        paintEnlarged(painter, image, toPainter, exposed, scale < kCrispScale);
}

} // namespace complexion
