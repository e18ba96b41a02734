// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/nearest_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace complexion {
namespace {

/// Every pixel differs from all others.
QImage numbered(QSize size, QPoint offset) {
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, qRgb(x % 256, y % 256, x / 256 * 16 + y / 256));
    picture.setOffset(offset);
    return picture;
}

QRgb nearest(const QImage& source, QPointF place) {
    const auto along = [](double at, int extent, int first) {
        return (std::clamp(static_cast<int>(std::floor(at)), 0, extent - 1) + first) % extent;
    };
    return source.pixel(along(place.x(), source.width(), source.offset().x()),
                        along(place.y(), source.height(), source.offset().y()));
}

QImage scaled(const QImage& source, const QTransform& toSource, const QRect& rect) {
    QImage result(rect.size(), QImage::Format_RGB32);
    NearestPixels(source, toSource, rect).write(0, rect.height(), [&result](int y) {
        return reinterpret_cast<QRgb*>(result.scanLine(y));
    });
    return result;
}

TEST(NearestPixels, EachPixelIsTheNearestOfAPictureThatWrapsAround) {
    for (const QPoint offset : {QPoint(0, 0), QPoint(1, 200), QPoint(317, 3), QPoint(639, 399)})
        for (const double scale : {0.1, 0.37, 0.9, 1.0, 1.11, 1.9, 2.2, 5.0}) {
            const QImage source = numbered({640, 400}, offset);
            const QRect rect(-20, 13, 301, 97); // partly beside the picture, and no multiple of eight
            const QTransform toSource(scale, 0, 0, scale, 7.3, -20.6);
            const QImage result = scaled(source, toSource, rect);
            for (int y = 0; y < rect.height(); ++y)
                for (int x = 0; x < rect.width(); ++x) {
                    const QPointF centre(rect.x() + x + 0.5, rect.y() + y + 0.5);
                    ASSERT_EQ(result.pixel(x, y), nearest(source, toSource.map(centre)))
                        << x << ", " << y << " at scale " << scale << " from " << offset.x();
                }
        }
}

TEST(NearestPixels, APictureOfOnePixelFillsTheRectangle) {
    QImage source(1, 1, QImage::Format_RGB32);
    source.fill(qRgb(1, 2, 3));
    const QImage result = scaled(source, QTransform::fromScale(0.01, 0.01), {0, 0, 50, 3});
    for (int x = 0; x < 50; ++x)
        EXPECT_EQ(result.pixel(x, 2), qRgb(1, 2, 3));
}

} // namespace
} // namespace complexion
