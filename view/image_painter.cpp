// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/image_painter.h"

#include "view/averaged_picture.h"
#include "view/parallel_rows.h"

#include <QImage>
#include <QPainter>
#include <QRegion>

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>

namespace complexion {

namespace {

/// Neighbouring pixels that bilinear scaling reads around a painted part.
constexpr int kSmoothingMargin = 2;

/// Rows per read: few enough that they are converted in the L2 cache.
constexpr int kRowsPerRead = 8;
constexpr qint64 kMinParallelArea = 8'192; // pixels; below, one thread is faster

/// The mipmap level to paint from at `scale` device pixels per image pixel: the coarsest one that is at least
/// as fine as the screen.
int mipmapLevelFor(double scale) {
    int level = 0;
    while (level < Tile::kLastLevel && scale * (2 << level) <= 1)
        ++level;
    return level;
}

/// A part of the image as a QImage.
QImage readPart(const Image& image, const QRect& part) {
    QImage picture(part.width(), part.height(), QImage::Format_ARGB32_Premultiplied);
    auto* pixels = reinterpret_cast<RGBA32*>(picture.bits());
    const std::ptrdiff_t stride = picture.bytesPerLine() / std::ptrdiff_t{sizeof(RGBA32)};
    forRowsInParallel(part.size(), kMinParallelArea, [&](int first, int last) {
        for (int begin = first; begin < last; begin += kRowsPerRead) {
            const int end = std::min(begin + kRowsPerRead, last);
            image.read({part.x(), part.y() + begin, part.width(), end - begin}, pixels + begin * stride,
                       stride);
            for (int y = begin; y < end; ++y)
                for (RGBA32& pixel : std::span(pixels + y * stride, static_cast<std::size_t>(part.width())))
                    pixel.color = std::rotr(pixel.color, 8); // RRGGBBAA to AARRGGBB
        }
    });
    return picture;
}

/// `toPainter`, at one device pixel per pixel moved to whole device pixels. The toolkit does the same, but
/// rounds halves away from zero: parts painted on both sides of it would not fit together.
QTransform onWholePixels(const QTransform& toPainter, const QTransform& toDevice) {
    QTransform moved = toPainter * toDevice;
    if (moved.m11() != 1 || moved.m22() != 1)
        return toPainter;
    moved.translate(std::floor(moved.dx() + 0.5) - moved.dx(), std::floor(moved.dy() + 0.5) - moved.dy());
    return moved * toDevice.inverted();
}

/// For scales of one device pixel per pixel and above.
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

/// The device pixels that the image covers at least partly.
QRect coveredBy(const Image& image, const QTransform& pixelsToDevice) {
    const PixelSize size = image.pixelSize();
    return pixelsToDevice.mapRect(QRectF(0, 0, size.width, size.height)).toAlignedRect();
}

/// For scales below one device pixel per pixel, on a painter without rotation or shear.
void paintAveraged(QPainter& painter, const Image& image, const QTransform& toPainter, const QRectF& exposed,
                   int level) {
    const QTransform toDevice = painter.deviceTransform();
    const QRect shown = toDevice.mapRect(exposed).toAlignedRect();
    const QTransform pixelsToDevice = toPainter * toDevice;
    const QRect part = shown & coveredBy(image, pixelsToDevice);
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

bool isScaleAndTranslation(const QTransform& transform) {
    return transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
}

bool isAveraged(const QTransform& pixelsToDevice) {
    return isScaleAndTranslation(pixelsToDevice) && std::min(pixelsToDevice.m11(), pixelsToDevice.m22()) < 1;
}

void writeAveraged(const Image& image, const QTransform& pixelsToDevice, const QRect& part, QRgb background,
                   QRgb* first, qsizetype bytesPerLine) {
    const auto rowAt = [&](int y) {
        return reinterpret_cast<QRgb*>(reinterpret_cast<uchar*>(first) + (y - part.top()) * bytesPerLine);
    };
    const QRect covered = coveredBy(image, pixelsToDevice) & part;
    for (const QRect& beside : QRegion(part) - covered)
        for (int y = beside.top(); y <= beside.bottom(); ++y)
            std::fill_n(rowAt(y) + (beside.left() - part.left()), beside.width(), background);
    if (covered.isEmpty())
        return;
    const int level = mipmapLevelFor(std::min(pixelsToDevice.m11(), pixelsToDevice.m22()));
    average(image, level, pixelsToDevice, covered,
            {.first = rowAt(covered.top()) + (covered.left() - part.left()),
             .bytesPerLine = bytesPerLine,
             .background = background});
}

void paintImage(QPainter& painter, const Image& image, const QTransform& toPainter, const QRectF& exposed) {
    const QTransform pixelsToDevice = toPainter * painter.deviceTransform();
    const double scale = std::min(pixelsToDevice.m11(), pixelsToDevice.m22());
    if (!image.hasPixels() || !(scale > 0))
        return;
    if (isAveraged(pixelsToDevice))
        paintAveraged(painter, image, toPainter, exposed, mipmapLevelFor(scale));
    else
        paintEnlarged(painter, image, onWholePixels(toPainter, painter.deviceTransform()), exposed,
                      scale < kCrispScale);
}

} // namespace complexion
