// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/view/painted_frame_fixture.h"

namespace complexion {
namespace {

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

} // namespace
} // namespace complexion
