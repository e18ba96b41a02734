// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/painted_frame.h"

#include "tests/fakes/pictures.h"
#include "view/image_painter.h"

#include <QPaintEngine>
#include <QPainter>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdlib>

namespace complexion {
namespace {

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
        return QTransform(scale, 0, 0, scale, offset.x(), offset.y());
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

TEST_F(PaintedFrameTest, APannedPictureEqualsOnePaintedWithoutACache) {
    const Image image = waves({900, 700});
    for (const double scale : {0.21, 0.5, 0.83, 1.0, 1.7, 4.6})
        for (const double screenRatio : {1.0, 1.5, 2.0}) {
            ratio = screenRatio;
            QPointF offset(-31.25, -17.5);
            // Across the borders of the stored pixels, beyond the picture's edges, and back.
            for (const QPointF step : {QPointF(0, 0), QPointF(-6, 4), QPointF(40, -30), QPointF(-250, -150),
                                       QPointF(350, 210), QPointF(0, 8), QPointF(-100, 0)}) {
                offset += step;
                const QTransform toPainter = placed(scale, offset);
                // The toolkit may put the border of an enlarged pixel one device pixel elsewhere when it
                // paints a part.
                const int reach = scale < kCrispScale / ratio ? 0 : 1;
                EXPECT_LE(largestDifference(kept(image, toPainter), fresh(image, toPainter), reach), 2)
                    << scale << " at " << offset.x() << ", " << offset.y() << " ratio " << screenRatio;
            }
        }
}

TEST_F(PaintedFrameTest, APanPaintsOnlyTheNewlyVisibleStrip) {
    const auto counter = std::make_shared<CountingTransform>();
    const Image image = waves({900, 700}).transformed(counter);
    kept(image, placed(0.7, {-50, -50}));
    EXPECT_GE(counter->takeCount(), 300 * 200);
    kept(image, placed(0.7, {-57, -45}));
    const std::int64_t strips = 7 * 200 + 5 * 300;
    EXPECT_GT(counter->takeCount(), strips / 2);
    kept(image, placed(0.7, {-57, -45}));
    EXPECT_EQ(counter->takeCount(), 0) << "no movement";
    kept(image, placed(0.7, {-50, -50}));
    EXPECT_LE(counter->takeCount(), strips) << "the way back";
}

TEST_F(PaintedFrameTest, AMoveByAFractionOfAPixelPaintsEverything) {
    const Image image = waves({900, 700});
    kept(image, placed(0.7, {-50, -50}));
    const QTransform moved = placed(0.7, {-50.4, -50});
    EXPECT_LE(largestDifference(kept(image, moved), fresh(image, moved)), 1);
}

TEST_F(PaintedFrameTest, AnEditPaintsOnlyTheChangedPixels) {
    const auto counter = std::make_shared<CountingTransform>();
    const Image before = waves({900, 700});
    const Image after = painted({900, 700}, [](int row, int column) {
        return row >= 150 && row < 170 && column >= 200 && column < 220 ? RGBA32(255, 255, 255, 255)
                                                                        : wave(row, column);
    });
    for (const double scale : {0.4, 1.0, 2.0}) {
        frame.clear();
        const QTransform toPainter = placed(scale, {-10, -20});
        kept(before.transformed(counter), toPainter);
        counter->takeCount();
        frame.invalidate({200, 150, 20, 20});
        const QImage shown = kept(after.transformed(counter), toPainter);
        EXPECT_LE(largestDifference(shown, fresh(after, toPainter)), 2) << scale;
        EXPECT_LE(counter->takeCount(), 60 * 60) << scale;
    }
}

TEST_F(PaintedFrameTest, AnEditOutsideTheViewIsPaintedWhenItBecomesVisible) {
    const Image before = filled({900, 700}, grey(40));
    const Image after = filled({900, 700}, grey(90));
    kept(before, placed(1, {0, 0}));
    frame.invalidate({0, 0, 900, 700});
    const QTransform moved = placed(1, {-100, 0});
    EXPECT_EQ(largestDifference(kept(after, moved), fresh(after, moved)), 0);
}

TEST_F(PaintedFrameTest, AViewThatGrowsKeepsItsPixels) {
    const auto counter = std::make_shared<CountingTransform>();
    const Image image = waves({900, 700}).transformed(counter);
    kept(image, placed(0.7, {-57, -45}));
    counter->takeCount();
    screenSize = {330, 220};
    const QTransform toPainter = placed(0.7, {-57, -45});
    const QImage shown = kept(image, toPainter);
    EXPECT_LE(counter->takeCount(), 330 * 220 - 300 * 200);
    EXPECT_LE(largestDifference(shown, fresh(image, toPainter)), 2);
}

TEST_F(PaintedFrameTest, TransparentPixelsStayTransparentAfterAPan) {
    const Image image = painted({900, 700}, [](int row, int column) {
        return (row / 20 + column / 20) % 2 == 0 ? RGBA32(0, 0, 0, 0) : RGBA32(100, 50, 20, 100);
    });
    kept(image, placed(0.9, {0, 0}));
    const QTransform moved = placed(0.9, {-300, -200}); // every stored pixel is reused
    EXPECT_LE(largestDifference(kept(image, moved), fresh(image, moved)), 1);
}

TEST_F(PaintedFrameTest, TheBackgroundIsVisibleThroughAndBesideThePicture) {
    frame = PaintedFrame(QColor(10, 20, 30));
    const Image image = filled({100, 80}, RGBA32(100, 50, 20, 100));
    for (const double scale : {0.13, 0.45, 0.97, 1.3})
        for (const QPointF offset : {QPointF(20, 10), QPointF(-40, 90), QPointF(290.3, -20.7)}) {
            const QTransform toPainter = placed(scale, offset);
            QImage screen = blankScreen();
            screen.fill(QColor(10, 20, 30));
            QPainter painter(&screen);
            paintImage(painter, image, toPainter, view());
            painter.end();
            EXPECT_LE(largestDifference(kept(image, toPainter), screen), 1) << scale << " at " << offset.x();
        }
}

/// Zooming in a view that takes longer to paint than one frame of the display.
class LargeView : public PaintedFrameTest {
protected:
    LargeView() { screenSize = {1600, 1000}; }

    void refineAll(const Image& picture) {
        for (int i = 0; i < 1000 && frame.isProvisional(); ++i)
            frame.refine(picture, {800, 500}, std::chrono::milliseconds(1));
    }

    const std::shared_ptr<CountingTransform> counter = std::make_shared<CountingTransform>();
    const Image image = waves({2400, 1600}).transformed(counter);
    const QTransform fitted = placed(0.6, {0, 0});
    const QTransform larger = placed(0.75, {-200, -125});
};

TEST_F(LargeView, ManyZoomsLeaveNoOldPixels) {
    frame = PaintedFrame(Qt::black);
    QImage shown;
    for (const double scale : {0.6, 0.66, 0.73, 0.62, 0.6, 0.8}) {
        const QTransform toPainter = placed(scale, {-20 * scale, -30 * scale});
        kept(image, toPainter);
        refineAll(image);
        shown = kept(image, toPainter);
        QImage screen = blankScreen();
        screen.fill(Qt::black);
        QPainter painter(&screen);
        paintImage(painter, image, toPainter, view());
        painter.end();
        EXPECT_LE(largestDifference(shown, screen), 1) << scale;
    }
}

TEST_F(LargeView, ZoomingInShowsScaledPixelsUntilTheNewOnesArePainted) {
    EXPECT_LE(largestDifference(kept(image, fitted), fresh(image, fitted)), 1);
    counter->takeCount();
    const QImage scaled = kept(image, larger);
    EXPECT_EQ(counter->takeCount(), 0) << "nothing is painted immediately";
    EXPECT_TRUE(frame.isProvisional());
    EXPECT_LE(largestDifference(scaled, fresh(image, larger)), 70) << "no hole, no shift";
    refineAll(image);
    EXPECT_FALSE(frame.isProvisional());
    EXPECT_LE(largestDifference(kept(image, larger), fresh(image, larger)), 1);
}

TEST_F(LargeView, ScaledPixelsAreInPlace) {
    // Two levels from pixel to pixel: a shift by one would show.
    const Image slope = painted({2400, 1600}, [](int row, int column) {
        const auto triangle = [](int x) { return static_cast<std::uint8_t>(std::abs(x * 2 % 400 - 200)); };
        return RGBA32(triangle(row), triangle(column), triangle(row + column), 255);
    });
    for (const double screenRatio : {1.0, 1.5, 2.0})
        for (const bool in : {true, false}) {
            ratio = screenRatio;
            frame.clear();
            const double scale = 1 / ratio;
            const QTransform from = placed(scale, {-100.3, -60.7});
            const QTransform to = in ? placed(1.1 * scale, {-190.1, -116}) : placed(0.95 * scale, {-55, -33});
            kept(slope, placed(scale, {-83.3, -49.7}));
            kept(slope, from); // the stored pixels wrap around
            const QImage scaled = kept(slope, to);
            ASSERT_TRUE(frame.isProvisional());
            EXPECT_LE(largestDifference(scaled, fresh(slope, to)), 4) << "ratio " << ratio;
            refineAll(slope);
            EXPECT_EQ(kept(slope, to), fresh(slope, to)) << "ratio " << ratio;
        }
}

TEST_F(LargeView, PixelsWrittenDirectlyEqualPaintedOnes) {
    for (const double screenRatio : {1.0, 1.5, 2.0}) {
        ratio = screenRatio;
        PaintedFrame direct(Qt::black);
        PaintedFrame painted(Qt::black);
        for (const QTransform& toPainter :
             {placed(0.6, {-11, -7}), placed(0.6, {-31, 20}), placed(0.7, {-60, -40})}) {
            QImage directly = blankScreen();
            QImage byPainter = blankScreen();
            {
                QPainter painter(&directly);
                direct.paint(painter, image, toPainter, view(), view());
            }
            QPainter painter(&byPainter);
            painter.setClipRect(view()); // a painter with a clip cannot be bypassed
            painted.paint(painter, image, toPainter, view(), view());
            painter.end();
            EXPECT_EQ(directly, byPainter) << "ratio " << ratio;
        }
        EXPECT_TRUE(direct.isProvisional());
    }
}

TEST_F(LargeView, OnlyWhatAWidgetMayPaintIsWritten) {
    frame = PaintedFrame(Qt::black);
    const QRegion clip = QRegion(200, 100, 700, 500) + QRegion(950, 300, 100, 100);
    QImage screen = blankScreen();
    screen.paintEngine()->setSystemClip(clip);
    {
        QPainter painter(&screen);
        frame.paint(painter, image, fitted, view(), view());
    }
    {
        QPainter painter(&screen);
        frame.paint(painter, image, larger, view(), view());
    }
    EXPECT_EQ(qAlpha(screen.pixel(300, 300)), 255);
    EXPECT_EQ(qAlpha(screen.pixel(1000, 350)), 255);
    EXPECT_EQ(qAlpha(screen.pixel(199, 300)), 0);
    EXPECT_EQ(qAlpha(screen.pixel(920, 350)), 0);
    EXPECT_EQ(qAlpha(screen.pixel(1500, 900)), 0);
}

TEST_F(LargeView, ZoomingOutPaintsOnlyWhatWasNotVisible) {
    kept(image, larger);
    counter->takeCount();
    const QImage scaled = kept(image, fitted);
    EXPECT_GT(counter->takeCount(), 0);
    EXPECT_LE(largestDifference(scaled, fresh(image, fitted)), 70);
    refineAll(image);
    EXPECT_LE(largestDifference(kept(image, fitted), fresh(image, fitted)), 1);
}

TEST_F(LargeView, RefiningBeginsNearThePointer) {
    kept(image, fitted);
    kept(image, larger);
    const QRegion first = frame.refine(image, {1500, 100}, std::chrono::milliseconds(0));
    EXPECT_TRUE(first.contains(QPoint(1500, 100)));
    EXPECT_FALSE(first.contains(QPoint(100, 900)));
}

TEST_F(LargeView, AnEditDuringAZoomIsVisibleAtOnce) {
    kept(filled({2400, 1600}, grey(10)), fitted);
    kept(filled({2400, 1600}, grey(10)), larger);
    const Image after = filled({2400, 1600}, grey(200));
    frame.invalidate({0, 0, 2400, 1600});
    EXPECT_EQ(largestDifference(kept(after, larger), fresh(after, larger)), 0);
}

} // namespace
} // namespace complexion
