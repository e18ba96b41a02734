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

/// What a screen of `size` device pixels at `ratio` of them a point shows of a picture whose pixels are
/// `scale` points wide, the first at `offset`.
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

/// The darkest and the lightest red in the middle of a screen, away from the picture's edges.
std::pair<int, int> rangeInTheMiddle(const QImage& screen) {
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

TEST(ImagePainter, APlainPictureStaysItsVeryColorAtEveryScale) {
    const Image image = filled({400, 400}, {201, 77, 3, 255});
    for (const double scale : {0.013, 0.26, 0.5, 0.61, 0.999, 1.0, 1.7, 4.0, 9.3}) {
        const QImage screen = shown(image, scale, {0.3, 0.7}, {100, 100});
        const int x = std::min(50, static_cast<int>(200 * scale));
        EXPECT_EQ(screen.pixel(x, x), qRgb(201, 77, 3)) << scale;
    }
}

TEST(ImagePainter, FineDetailBelowTheScreensIsEvenlyGrey) {
    // At a half and below, whole cells of the pattern lie under each device pixel.
    for (const double scale : {0.5, 0.25, 0.125}) {
        const auto [low, high] = rangeInTheMiddle(shown(checkerboard({800, 800}), scale, {}, {90, 90}));
        EXPECT_EQ(low, 100) << scale;
        EXPECT_EQ(high, 100) << scale;
    }
    // Between, what is left of it is what a device pixel's area leaves, far from black and white.
    for (const double scale : {0.53, 0.6, 0.7}) {
        const auto [low, high] = rangeInTheMiddle(shown(checkerboard({800, 800}), scale, {}, {90, 90}));
        EXPECT_GT(low, 40) << scale;
        EXPECT_LT(high, 160) << scale;
    }
}

TEST(ImagePainter, ADeviceBrightnessDoesNotDependOnWhereThePictureLies) {
    // A bright line, one pixel wide: however it moves, the screen has the same light from it.
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

TEST(ImagePainter, APartOfTheScreenIsPaintedAsTheWholeIs) {
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
        int most = 0;
        for (int y = 0; y < whole.height(); ++y)
            for (int x = 0; x < whole.width(); ++x)
                most = std::max(most, std::abs(qRed(whole.pixel(x, y)) - qRed(parts.pixel(x, y))));
        // Smooth enlarging counts its steps from each part's own corner.
        EXPECT_LE(most, scale > 1 && scale < kCrispScale ? 3 : 0) << scale;
    }
}

TEST(ImagePainter, ThePictureEndsWhereItEnds) {
    const Image image = filled({100, 100}, grey(200));
    // 70.4 device pixels from 10.5 on: the last one is covered by nine tenths.
    const QImage screen = shown(image, 0.704, {10.5, 10.5}, {120, 120});
    EXPECT_EQ(qAlpha(screen.pixel(9, 40)), 0);
    EXPECT_NEAR(qAlpha(screen.pixel(10, 40)), 255 * 0.5, 2);
    EXPECT_EQ(qAlpha(screen.pixel(11, 40)), 255);
    EXPECT_EQ(qAlpha(screen.pixel(79, 40)), 255);
    EXPECT_NEAR(qAlpha(screen.pixel(80, 40)), 255 * 0.9, 2);
    EXPECT_EQ(qAlpha(screen.pixel(81, 40)), 0);
}

TEST(ImagePainter, EveryDevicePixelCountsWhateverTheRatio) {
    // Half a point a pixel is one device pixel each at ratio 2: the pixels come out as they are.
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

TEST(ImagePainter, PixelsAreCrispFromFourDevicePixelsOnAndSmoothBelow) {
    const Image image = painted({40, 40}, [](int, int column) { return column < 20 ? grey(0) : grey(200); });
    const auto blends = [](const QImage& screen) {
        const int y = screen.height() / 2;
        int between = 0;
        for (int x = 0; x < screen.width(); ++x)
            between += qRed(screen.pixel(x, y)) > 5 && qRed(screen.pixel(x, y)) < 195;
        return between;
    };
    EXPECT_EQ(blends(shown(image, 4, {}, {160, 160})), 0);
    EXPECT_GT(blends(shown(image, 3.9, {}, {160, 160})), 0);
    EXPECT_EQ(blends(shown(image, 2, {}, {160, 160}, 2)), 0);
    EXPECT_GT(blends(shown(image, 1.9, {}, {160, 160}, 2)), 0);
}

} // namespace
} // namespace complexion
