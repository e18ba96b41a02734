// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/smooth_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace complexion {
namespace {

QImage smoothed(const QImage& source, const QTransform& toSource, const QRect& rect) {
    QImage result(rect.size(), QImage::Format_RGB32);
    SmoothPixels(source, toSource, rect).write(0, rect.height(), [&result](int y) {
        return reinterpret_cast<QRgb*>(result.scanLine(y));
    });
    return result;
}

QImage noise(QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    std::uint32_t state = 1;
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            state = state * 1664525 + 1013904223;
            picture.setPixel(x, y, 0xFF000000 | state >> 8);
        }
    return picture;
}

/// One component at a place of the picture, where the centre of the first pixel is at 0.5.
double interpolated(const QImage& picture, QPointF place, int shift) {
    const double x = std::clamp(place.x() - 0.5, 0.0, picture.width() - 1.0);
    const double y = std::clamp(place.y() - 0.5, 0.0, picture.height() - 1.0);
    const auto at = [&](double column, double row) {
        return static_cast<double>(picture.pixel(std::min(static_cast<int>(column), picture.width() - 1),
                                                 std::min(static_cast<int>(row), picture.height() - 1)) >>
                                       shift &
                                   255);
    };
    const double right = x - std::floor(x);
    const double below = y - std::floor(y);
    return (at(x, y) * (1 - right) + at(x + 1, y) * right) * (1 - below) +
           (at(x, y + 1) * (1 - right) + at(x + 1, y + 1) * right) * below;
}

TEST(SmoothPixels, EachPixelIsInterpolatedBetweenTheFourNearest) {
    for (const QSize size : {QSize(40, 30), QSize(1, 30), QSize(40, 1), QSize(1, 1), QSize(2, 2)}) {
        const QImage source = noise(size);
        for (const double scale : {0.13, 0.5, 0.77, 1.0}) {
            const QTransform toSource(scale, 0, 0, scale, -3.3, -1.9);
            const QRect rect(2, 5, 61, 47); // ends beyond a small picture
            const QImage result = smoothed(source, toSource, rect);
            for (int y = 0; y < rect.height(); ++y)
                for (int x = 0; x < rect.width(); ++x) {
                    const QPointF place = toSource.map(QPointF(rect.x() + x + 0.5, rect.y() + y + 0.5));
                    for (const int shift : {0, 8, 16, 24})
                        ASSERT_NEAR(result.pixel(x, y) >> shift & 255, interpolated(source, place, shift), 2)
                            << size.width() << " x " << size.height() << " by " << scale << " at " << x
                            << ", " << y;
                }
        }
    }
}

TEST(SmoothPixels, WholePixelsAreCopied) {
    const QImage source = noise({40, 30});
    EXPECT_EQ(smoothed(source, {}, source.rect()), source);
    EXPECT_EQ(smoothed(source, {}, QRect(7, 3, 20, 10)), source.copy(7, 3, 20, 10));
}

TEST(SmoothPixels, PartsFitTogether) {
    const QImage source = noise({40, 30});
    const QTransform toSource(0.37, 0, 0, 0.37, 1.2, 2.3);
    const QImage whole = smoothed(source, toSource, QRect(0, 0, 80, 60));
    EXPECT_EQ(smoothed(source, toSource, QRect(31, 22, 40, 30)), whole.copy(31, 22, 40, 30));
}

} // namespace
} // namespace complexion
