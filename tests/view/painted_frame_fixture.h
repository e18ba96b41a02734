// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/fakes/pictures.h"
#include "view/image_painter.h"
#include "view/painted_frame.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdlib>

namespace complexion {

/// Counts pixels without changing them.
class CountingTransform : public PixelTransform {
public:
    void apply(std::span<RGBA32> pixels) const override { m_count += std::ssize(pixels); }
    /// Since the last call.
    std::int64_t takeCount() const { return m_count.exchange(0); }

private:
    mutable std::atomic<std::int64_t> m_count = 0;
};

/// A screen and the cached frame that is painted on it.
class PaintedFrameTest : public testing::Test {
protected:
    static QTransform placed(double scale, QPointF offset) {
        return {scale, 0, 0, scale, offset.x(), offset.y()};
    }

    QImage blankScreen() const {
        QImage screen(screenSize, QImage::Format_ARGB32_Premultiplied);
        screen.setDevicePixelRatio(ratio);
        screen.fill(Qt::transparent);
        return screen;
    }
    QRect view() const { return {QPoint(), (QSizeF(screenSize) / ratio).toSize()}; }

    /// The frame's painting.
    QImage kept(const Image& image, const QTransform& toPainter) {
        QImage screen = blankScreen();
        QPainter painter(&screen);
        frame.paint(painter, image, toPainter, view(), view());
        return screen;
    }

    /// The same without a cache.
    QImage fresh(const Image& image, const QTransform& toPainter) const {
        QImage screen = blankScreen();
        QPainter painter(&screen);
        paintImage(painter, image, toPainter, view());
        return screen;
    }

    static int difference(QRgb one, QRgb other) {
        int largest = 0;
        for (const int shift : {0, 8, 16, 24})
            largest = std::max(largest, std::abs(int((one >> shift) & 255) - int((other >> shift) & 255)));
        return largest;
    }

    /// The largest difference of a pixel of `one` from the most similar pixel of `other` within `reach`.
    /// Ignores a border of that width, whose similar pixels may be beyond the edge.
    static int largestDifference(const QImage& one, const QImage& other, int reach = 0) {
        int largest = 0;
        for (int y = reach; y < one.height() - reach; ++y)
            for (int x = reach; x < one.width() - reach; ++x) {
                int smallest = 255;
                for (int row = y - reach; row <= y + reach; ++row)
                    for (int column = x - reach; column <= x + reach; ++column)
                        smallest = std::min(smallest, difference(one.pixel(x, y), other.pixel(column, row)));
                largest = std::max(largest, smallest);
            }
        return largest;
    }

    /// A smooth pattern in which every part differs from its neighbours.
    static RGBA32 wave(int row, int column) {
        return {static_cast<std::uint8_t>(128 + 100 * std::sin(row * 0.11)),
                static_cast<std::uint8_t>(128 + 100 * std::sin(column * 0.07)),
                static_cast<std::uint8_t>(100 + 90 * std::sin((row + column) * 0.05)), 255};
    }
    static Image waves(PixelSize size) { return painted(size, wave); }

    PaintedFrame frame;
    QSize screenSize{300, 200};
    double ratio = 1;
};

} // namespace complexion
