// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/image_painter.h"

#include "tests/fakes/pictures.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace complexion {
namespace {

/// A screen of `size` device pixels, with `ratio` of them per point, on which a picture is painted at
/// `offset` with `scale` points per pixel.
QImage shown(const Image& image, double scale, QPointF offset, QSize size, double ratio = 1) {
    QImage screen(size, QImage::Format_ARGB32_Premultiplied);
    screen.setDevicePixelRatio(ratio);
    screen.fill(Qt::transparent);
    QPainter painter(&screen);
    paintImage(painter, image, QTransform(scale, 0, 0, scale, offset.x(), offset.y()),
               QRectF(QPointF(), QSizeF(size) / ratio));
    return screen;
}

Image checkerboard(PixelSize size) {
    return painted(size, [](int row, int column) { return (row + column) % 2 == 0 ? grey(0) : grey(200); });
}

/// The minimum and maximum of red in the centre of a screen, away from the picture's edges.
std::pair<int, int> rangeInTheCentre(const QImage& screen) {
    int low = 255;
    int high = 0;
    for (int y = 10; y < screen.height() - 10; ++y) {
        for (int x = 10; x < screen.width() - 10; ++x) {
            low = std::min(low, qRed(screen.pixel(x, y)));
            high = std::max(high, qRed(screen.pixel(x, y)));
        }
    }
    return {low, high};
}

TEST(ImagePainter, AUniformPictureKeepsItsColorAtEveryScale) {
    const Image image = filled({400, 400}, {201, 77, 3, 255});
    for (const double scale : {0.013, 0.26, 0.5, 0.61, 0.999, 1.0, 1.7, 4.0, 9.3}) {
        const QImage screen = shown(image, scale, {0.3, 0.7}, {100, 100});
        const int x = std::min(50, static_cast<int>(200 * scale));
        EXPECT_EQ(screen.pixel(x, x), qRgb(201, 77, 3)) << scale;
    }
}

TEST(ImagePainter, DetailFinerThanTheScreenIsAveraged) {
    // At a scale of a half and below, each device pixel covers whole cells of the pattern.
    for (const double scale : {0.5, 0.25, 0.125}) {
        const auto [low, high] = rangeInTheCentre(shown(checkerboard({800, 800}), scale, {}, {90, 90}));
        EXPECT_EQ(low, 100) << scale;
        EXPECT_EQ(high, 100) << scale;
    }
    // In between, averaging over a device pixel leaves little contrast.
    for (const double scale : {0.53, 0.6, 0.7}) {
        const auto [low, high] = rangeInTheCentre(shown(checkerboard({800, 800}), scale, {}, {90, 90}));
        EXPECT_GT(low, 40) << scale;
        EXPECT_LT(high, 160) << scale;
    }
}

TEST(ImagePainter, BrightnessDoesNotDependOnTheOffset) {
    // A bright line, one pixel wide, adds the same light at every offset.
    const Image image =
        painted({300, 40}, [](int, int column) { return column == 150 ? grey(255) : grey(0); });
    for (const double scale : {0.3, 0.55, 0.8}) {
        for (const double offset : {0.0, 0.1, 0.25, 0.5, 0.77}) {
            const QImage screen = shown(image, scale, {offset, 0}, {250, 8});
            int light = 0;
            for (int x = 0; x < screen.width(); ++x)
                light += qRed(screen.pixel(x, 4));
            EXPECT_NEAR(light, 255 * scale, 3) << scale << " at " << offset;
        }
    }
}

TEST(ImagePainter, PaintingInPartsEqualsPaintingTheWhole) {
    const Image image = noise({500, 400});
    for (const double scale : {0.2, 0.37, 0.7, 1.0, 2.5, 6.0}) {
        const QTransform toScreen(scale, 0, 0, scale, -3.3, 1.6);
        QImage whole(200, 150, QImage::Format_ARGB32_Premultiplied);
        whole.fill(Qt::black);
        QImage parts = whole;
        {
            QPainter painter(&whole);
            paintImage(painter, image, toScreen, whole.rect());
            QPainter partPainter(&parts);
            for (int y = 0; y < 150; y += 50)
                for (int x = 0; x < 200; x += 50)
                    paintImage(partPainter, image, toScreen, QRect(x, y, 50, 50));
        }
        int maxDifference = 0;
        for (int y = 0; y < whole.height(); ++y)
            for (int x = 0; x < whole.width(); ++x)
                maxDifference =
                    std::max(maxDifference, std::abs(qRed(whole.pixel(x, y)) - qRed(parts.pixel(x, y))));
        // Smooth enlarging rounds its steps from the corner of each part.
        EXPECT_LE(maxDifference, scale > 1 && scale < kCrispScale ? 3 : 0) << scale;
    }
}

TEST(ImagePainter, EdgePixelsAreBlendedByCoverage) {
    const Image image = filled({100, 100}, grey(200));
    // 70.4 device pixels from 10.5 on: nine tenths of the last one are covered.
    const QImage screen = shown(image, 0.704, {10.5, 10.5}, {120, 120});
    EXPECT_EQ(qAlpha(screen.pixel(9, 40)), 0);
    EXPECT_NEAR(qAlpha(screen.pixel(10, 40)), 255 * 0.5, 2);
    EXPECT_EQ(qAlpha(screen.pixel(11, 40)), 255);
    EXPECT_EQ(qAlpha(screen.pixel(79, 40)), 255);
    EXPECT_NEAR(qAlpha(screen.pixel(80, 40)), 255 * 0.9, 2);
    EXPECT_EQ(qAlpha(screen.pixel(81, 40)), 0);
}

TEST(ImagePainter, AtOneDevicePixelPerPixelPixelsAreExactAtAnyRatio) {
    const Image image = noise({120, 100});
    for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QImage screen = shown(image, 1 / ratio, {}, {120, 100}, ratio);
        const std::vector<RGBA32> pixels = pixelsOf(image);
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 120; ++x) {
                const RGBA32 pixel = pixels[static_cast<std::size_t>(y * 120 + x)];
                ASSERT_EQ(screen.pixel(x, y), qRgb(pixel.red(), pixel.green(), pixel.blue()))
                    << x << ", " << y << " at ratio " << ratio;
            }
    }
}

TEST(ImagePainter, EnlargingIsSmoothBelowFourDevicePixelsPerPixelAndCrispFromThereOn) {
    const Image image = painted({40, 40}, [](int, int column) { return column < 20 ? grey(0) : grey(200); });
    const auto blendedPixels = [](const QImage& screen) {
        const int y = screen.height() / 2;
        int count = 0;
        for (int x = 0; x < screen.width(); ++x)
            count += qRed(screen.pixel(x, y)) > 5 && qRed(screen.pixel(x, y)) < 195;
        return count;
    };
    EXPECT_EQ(blendedPixels(shown(image, 4, {}, {160, 160})), 0);
    EXPECT_GT(blendedPixels(shown(image, 3.9, {}, {160, 160})), 0);
    EXPECT_EQ(blendedPixels(shown(image, 2, {}, {160, 160}, 2)), 0);
    EXPECT_GT(blendedPixels(shown(image, 1.9, {}, {160, 160}, 2)), 0);
}

} // namespace
} // namespace complexion
