// SPDX-License-Identifier: GPL-3.0-or-later

// What a large view shows after a zoom, until its final pixels are painted.
#include "tests/view/painted_frame_fixture.h"

#include <QPaintEngine>

namespace complexion {
namespace {

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

/// The same over an opaque background, as in the window.
class LargeOpaqueView : public LargeView {
protected:
    LargeOpaqueView() { frame = PaintedFrame(kBackground); }

    void prepareAll(const Image& picture) {
        for (int i = 0; i < 1000 && !frame.prepareBackdrop(picture, std::chrono::milliseconds(1)); ++i) {
        }
    }

    QImage freshOpaque(const Image& picture, const QTransform& toPainter) const {
        QImage screen = blankScreen();
        screen.fill(kBackground);
        QPainter painter(&screen);
        paintImage(painter, picture, toPainter, view());
        return screen;
    }

    static constexpr QColor kBackground{255, 0, 255};
};

TEST_F(LargeOpaqueView, ZoomingOutPaintsNextToNothingAtOnce) {
    kept(image, larger);
    prepareAll(image);
    // Several steps without a rest.
    for (const double scale : {0.65, 0.6, 0.56}) {
        counter->takeCount();
        const QTransform smaller = placed(scale, {-200 + (0.75 - scale) * 1300, -125 + (0.75 - scale) * 800});
        const QImage shown = kept(image, smaller);
        EXPECT_TRUE(frame.isProvisional());
        EXPECT_LT(counter->takeCount(), 1600 * 1000 / 20) << scale;
        EXPECT_LE(largestDifference(shown, freshOpaque(image, smaller)), 70) << "no hole, no shift";
    }
    const QTransform last = placed(0.56, {47, 27});
    kept(image, last);
    refineAll(image);
    EXPECT_FALSE(frame.isProvisional());
    EXPECT_LE(largestDifference(kept(image, last), freshOpaque(image, last)), 1);
}

TEST_F(LargeOpaqueView, ZoomingOutWithoutPreparationShowsTheWholePicture) {
    kept(image, larger);
    const QImage shown = kept(image, fitted);
    EXPECT_LE(largestDifference(shown, freshOpaque(image, fitted)), 70);
}

TEST_F(LargeOpaqueView, TheBackdropShowsEdits) {
    const Image before = filled({2400, 1600}, grey(10));
    const Image after = painted({2400, 1600}, [](int row, int column) {
        return row >= 1300 && row < 1500 && column >= 2000 && column < 2300 ? grey(200) : grey(10);
    });
    kept(before, larger);
    prepareAll(before);
    frame.invalidate({2000, 1300, 300, 200});
    kept(after, larger);
    const QTransform smaller = placed(0.56, {0, 0});
    const QImage shown = kept(after, smaller);
    ASSERT_TRUE(frame.isProvisional());
    EXPECT_EQ(qGray(shown.pixel(1200, 780)), 200);
    EXPECT_EQ(qGray(shown.pixel(1000, 780)), 10);
}

TEST_F(LargeOpaqueView, ASmallViewNeedsNoBackdrop) {
    screenSize = {300, 200};
    kept(image, larger);
    counter->takeCount();
    EXPECT_TRUE(frame.prepareBackdrop(image, std::chrono::milliseconds(1)));
    EXPECT_EQ(counter->takeCount(), 0);
}

TEST_F(LargeView, RefiningBeginsNearThePointer) {
    kept(image, fitted);
    kept(image, larger);
    const QRegion first = frame.refine(image, {1500, 100}, std::chrono::milliseconds(0));
    EXPECT_TRUE(first.contains(QPoint(1500, 100)));
    EXPECT_FALSE(first.contains(QPoint(100, 900)));
}

// For example, while the wheel turns: the few pixels that are final by then cover little of the next view.
TEST_F(LargeView, AZoomDuringRefiningKeepsThePixelsOfTheWholeView) {
    kept(image, fitted);
    kept(image, larger);
    ASSERT_FALSE(frame.refine(image, {800, 500}, std::chrono::milliseconds(0)).isEmpty());
    ASSERT_TRUE(frame.isProvisional());
    counter->takeCount();
    const QTransform largest = placed(0.9, {-450, -300});
    const QImage scaled = kept(image, largest);
    EXPECT_EQ(counter->takeCount(), 0) << "nothing is painted immediately";
    EXPECT_LE(largestDifference(scaled, fresh(image, largest)), 70);
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
