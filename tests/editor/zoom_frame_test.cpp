// SPDX-License-Identifier: GPL-3.0-or-later

// The arithmetic of zooming and panning, without a view.
#include "editor/zoom_frame.h"
#include "tests/editor/frames.h"

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {

namespace {

/// A frame of `ratio` times the area, with the same centre.
Frame centred(double ratio) {
    const double width = kArea.width * ratio;
    const double height = kArea.height * ratio;
    return {(kArea.width - width) / 2, (kArea.height - height) / 2, width, height};
}

/// A point of the area as a fraction of the frame's width and height.
Point fractionAt(const Frame& frame, Point point) {
    return {(point.x - frame.x) / frame.width, (point.y - frame.y) / frame.height};
}

void expectNear(Point actual, Point expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
}

TEST(ZoomFrame, AStepInEnlargesByATenthAboutTheCentre) {
    expectNear(zoomed(kFitted, kArea, kZoomInFactor), {-20, -15, 440, 330});
}

TEST(ZoomFrame, AStepOutShrinksByATenthAboutTheCentre) {
    expectNear(zoomed(centred(2), kArea, kZoomOutFactor), centred(1.8));
}

TEST(ZoomFrame, IsNeverSmallerThanTheArea) {
    EXPECT_EQ(zoomed(kFitted, kArea, kZoomOutFactor), kFitted);
    expectNear(zoomed(centred(1.05), kArea, kZoomOutFactor), kFitted);
}

TEST(ZoomFrame, AStepToARatioOfExactlyOneIsNotLimited) {
    // 1.25 * 0.8 rounds to exactly 1, which is not below the limit.
    const Frame frame{-50, -37.5, 500, 375};
    expectNear(zoomed(frame, kArea, 0.8), kFitted);
}

TEST(ZoomFrame, TwentyFiveStepsInReachTenTimesTheArea) {
    Frame frame = kFitted;
    for (int i = 0; i < 24; ++i)
        frame = zoomed(frame, kArea, kZoomInFactor);
    EXPECT_NEAR(frame.width, kArea.width * std::pow(1.1, 24), 1e-6);
    EXPECT_NEAR(frame.height, kArea.height * std::pow(1.1, 24), 1e-6);
    frame = zoomed(frame, kArea, kZoomInFactor);
    EXPECT_EQ(frame.width, 4000);
    EXPECT_EQ(frame.height, 3000);
    EXPECT_NEAR(frame.x, -1800, 1e-9);
    EXPECT_NEAR(frame.y, -1350, 1e-9);
    EXPECT_EQ(zoomed(frame, kArea, kZoomInFactor), frame);
}

TEST(ZoomFrame, OnlyTheWidthIsComparedWithTheLimits) {
    // Relative to the area, the height is several times the width: only the width counts.
    const Frame tall{-200, -1350, 800, 3000};
    expectNear(zoomed(tall, kArea, kZoomInFactor), {-240, -1500, 880, 3300});
    const Frame tallest{-1900, -4350, 3900, 9000};
    const Frame limited = zoomed(tallest, kArea, kZoomInFactor);
    EXPECT_EQ(limited.width, 4000);
    EXPECT_EQ(limited.height, 3000);
    const Frame narrow{0, -100, 420, 900};
    const Frame fittedNarrow = zoomed(narrow, kArea, kZoomOutFactor);
    EXPECT_EQ(fittedNarrow, kFitted);
}

TEST(ZoomFrame, BothDirectionsApplyBothLimits) {
    // Resizing the window may leave a frame outside the limits.
    EXPECT_EQ(zoomed({0, 0, 100, 75}, kArea, kZoomInFactor), kFitted);
    const Frame limited = zoomed(centred(20), kArea, kZoomOutFactor);
    EXPECT_EQ(limited.width, 4000);
    EXPECT_EQ(limited.height, 3000);
}

TEST(ZoomFrame, AStepOutOfACornerLeavesNoGap) {
    const Frame topRight{kArea.width - 800, kArea.height - 600, 800, 600};
    const Frame next = zoomed(topRight, kArea, kZoomOutFactor);
    expectNear(next, {kArea.width - 720, kArea.height - 540, 720, 540});
    const Frame bottomLeft{0, 0, 800, 600};
    expectNear(zoomed(bottomLeft, kArea, kZoomOutFactor), {0, 0, 720, 540});
}

TEST(ZoomFrame, FittingLeavesNoGap) {
    EXPECT_EQ(fitted(centred(3), kArea), kFitted);
    EXPECT_EQ(fitted({12, -7, 10, 10}, kArea), kFitted);
}

TEST(ZoomFrame, RepositioningClosesGapsOnEachAxis) {
    EXPECT_EQ(repositioned({10, -100, 800, 600}, kArea), (Frame{0, -100, 800, 600}));
    EXPECT_EQ(repositioned({-401, -100, 800, 600}, kArea), (Frame{-400, -100, 800, 600}));
    EXPECT_EQ(repositioned({-100, 5, 800, 600}, kArea), (Frame{-100, 0, 800, 600}));
    EXPECT_EQ(repositioned({-100, -301, 800, 600}, kArea), (Frame{-100, -300, 800, 600}));
    EXPECT_EQ(repositioned({-100, -100, 800, 600}, kArea), (Frame{-100, -100, 800, 600}));
    EXPECT_EQ(repositioned({-400, -300, 800, 600}, kArea), (Frame{-400, -300, 800, 600}));
}

TEST(ZoomFrame, AFrameSmallerThanTheAreaIsAlignedToTheBottomLeft) {
    EXPECT_EQ(repositioned({50, 40, 200, 100}, kArea), (Frame{0, 0, 200, 100}));
    EXPECT_EQ(repositioned({-50, -40, 200, 100}, kArea), (Frame{0, 0, 200, 100}));
    EXPECT_EQ(repositioned({500, 400, 200, 100}, kArea), (Frame{0, 0, 200, 100}));
    EXPECT_EQ(repositioned({-100, 40, 800, 100}, kArea), (Frame{-100, 0, 800, 100}));
}

TEST(ZoomFrame, ADragMovesTheFrameWithThePointer) {
    EXPECT_EQ(panned({-100, -100, 800, 600}, kArea, 7, 0), (Frame{-93, -100, 800, 600}));
    EXPECT_EQ(panned({-100, -100, 800, 600}, kArea, 0, 7), (Frame{-100, -107, 800, 600})); // pointer down
    EXPECT_EQ(panned({-100, -100, 800, 600}, kArea, -2.5, -1.25), (Frame{-102.5, -98.75, 800, 600}));
}

TEST(ZoomFrame, ADragMayReachTheEdgeButAMoveBeyondItIsDropped) {
    const Frame frame{-5, -5, 800, 600};
    EXPECT_EQ(panned(frame, kArea, 5, 0), (Frame{0, -5, 800, 600}));
    EXPECT_EQ(panned(frame, kArea, 5.5, 0), frame);
    EXPECT_EQ(panned(frame, kArea, 0, -5), (Frame{-5, 0, 800, 600}));
    EXPECT_EQ(panned(frame, kArea, 0, -5.5), frame);
    const Frame other{-395, -295, 800, 600};
    EXPECT_EQ(panned(other, kArea, -5, 0), (Frame{-400, -295, 800, 600}));
    EXPECT_EQ(panned(other, kArea, -6, 0), other);
    EXPECT_EQ(panned(other, kArea, 0, 5), (Frame{-395, -300, 800, 600}));
    EXPECT_EQ(panned(other, kArea, 0, 6), other);
}

TEST(ZoomFrame, ADiagonalDragAtAnEdgeMovesAlongTheOtherAxis) {
    EXPECT_EQ(panned({0, -100, 800, 600}, kArea, 3, 4), (Frame{0, -104, 800, 600}));
    EXPECT_EQ(panned({-100, 0, 800, 600}, kArea, 3, -4), (Frame{-97, 0, 800, 600}));
}

TEST(ZoomFrame, AFittedPhotoCannotBeDragged) {
    EXPECT_EQ(panned(kFitted, kArea, 1, 1), kFitted);
    EXPECT_EQ(panned(kFitted, kArea, -1, -1), kFitted);
    EXPECT_EQ(panned(kFitted, kArea, 0, 0), kFitted);
}

TEST(ZoomFrame, AFittedPhotoStaysFittedWhenTheWindowIsResized) {
    expectNear(resized(kFitted, kArea, {1000, 500}), {0, 0, 1000, 500});
    expectNear(resized(kFitted, kArea, {90, 700}), {0, 0, 90, 700});
}

TEST(ZoomFrame, AZoomedPhotoKeepsItsRatioAndCentreWhenTheWindowIsResized) {
    // The centre of the area is at 3/8 of the frame's width and 5/8 of its height.
    const Frame frame{-100, -225, 800, 600};
    const Frame next = resized(frame, kArea, {600, 500});
    EXPECT_NEAR(next.width, 1200, 1e-9);
    EXPECT_NEAR(next.height, 1000, 1e-9);
    EXPECT_NEAR((300 - next.x) / next.width, 3.0 / 8, 1e-9);
    EXPECT_NEAR((250 - next.y) / next.height, 5.0 / 8, 1e-9);
}

TEST(ZoomFrame, ResizingTheWindowLeavesNoGap) {
    const Frame corner{0, -300, 800, 600};
    const Frame next = resized(corner, kArea, {150, 800});
    EXPECT_LE(next.x, 0);
    EXPECT_LE(next.y, 0);
    EXPECT_GE(next.x + next.width, 150);
    EXPECT_GE(next.y + next.height, 800);
}

TEST(ZoomFrame, AStepToExactlyALimitIsNotLimited) {
    // Limiting would change the disproportionate heights.
    EXPECT_EQ(zoomed({-100, -200, 800, 900}, kArea, 0.5), (Frame{0, 0, 400, 450}));
    EXPECT_EQ(zoomed({-500, -200, 2000, 900}, kArea, 2), (Frame{-1500, -650, 4000, 1800}));
}

TEST(ZoomFrame, EvenAFractionalGapIsClosed) {
    EXPECT_EQ(repositioned({0.5, 0.25, 800, 600}, kArea), (Frame{0, 0, 800, 600}));
    EXPECT_EQ(repositioned({-400.5, -300.25, 800, 600}, kArea), (Frame{-400, -300, 800, 600}));
}

TEST(ZoomFrame, ResizingFromAnEmptyWindowFitsThePhoto) {
    EXPECT_EQ(resized({0, 0, 10, 10}, {0, 300}, kArea), kFitted);
    EXPECT_EQ(resized({0, 0, 10, 10}, {400, 0}, kArea), kFitted);
    EXPECT_EQ(resized({0, 0, 2, 600}, {1, 300}, kArea), (Frame{0, 0, 800, 600}));
    EXPECT_EQ(resized({0, 0, 800, 2}, {400, 1}, kArea), (Frame{0, 0, 800, 600}));
}

TEST(ZoomFrame, ResizingBackRestoresTheFrame) {
    const Frame frame{-130, -110, 880, 660};
    expectNear(resized(resized(frame, kArea, {1000, 333}), {1000, 333}, kArea), frame);
}

TEST(ZoomAbout, KeepsThePointUnderThePointer) {
    for (const Point about : {Point{10, 290}, Point{200, 150}, Point{333, 44}}) {
        for (const double factor : {kZoomInFactor, kZoomOutFactor}) {
            const Frame next = zoomedAbout(kZoomed, kArea, factor, about);
            EXPECT_NEAR(next.width, kZoomed.width * factor, 1e-9);
            expectNear(fractionAt(next, about), fractionAt(kZoomed, about));
        }
    }
}

TEST(ZoomAbout, TheFramesCentreGivesTheStepOfTheButtons) {
    const Point centre{kZoomed.x + kZoomed.width / 2, kZoomed.y + kZoomed.height / 2};
    EXPECT_EQ(zoomedAbout(kZoomed, kArea, kZoomInFactor, centre), zoomed(kZoomed, kArea, kZoomInFactor));
}

TEST(ZoomAbout, HasTheSameLimitsAndLeavesNoGap) {
    Frame frame{0, 0, 400, 300};
    for (int i = 0; i < 25; ++i)
        frame = zoomedAbout(frame, kArea, kZoomInFactor, {0, 0});
    EXPECT_EQ(frame, (Frame{0, 0, 4000, 3000}));
    for (int i = 0; i < 40; ++i)
        frame = zoomedAbout(frame, kArea, kZoomOutFactor, {399, 299});
    EXPECT_EQ(frame, (Frame{0, 0, 400, 300}));
}

TEST(ZoomTo, ReachesARatioAboutThePointWithinTheLimits) {
    const Frame next = zoomedTo(kZoomed, kArea, 4, {100, 100});
    EXPECT_EQ(next.width, 1600);
    expectNear(fractionAt(next, {100, 100}), fractionAt(kZoomed, {100, 100}));
    EXPECT_EQ(zoomedTo(kZoomed, kArea, 40, {100, 100}).width, 4000);
    EXPECT_EQ(zoomedTo(kZoomed, kArea, 0.2, {100, 100}), (Frame{0, 0, 400, 300}));
}

TEST(Moved, ThePhotoStopsAtTheEdge) {
    EXPECT_EQ(moved(kZoomed, kArea, 20, 30), (Frame{-280, -280, 1000, 750}));
    EXPECT_EQ(moved(kZoomed, kArea, 5000, 0).x, 0);
    EXPECT_EQ(moved(kZoomed, kArea, -5000, 0).x, -600);
    EXPECT_EQ(moved(kZoomed, kArea, 0, 5000).y, -450);
    EXPECT_EQ(moved(kZoomed, kArea, 0, -5000).y, 0);
}

} // namespace

} // namespace complexion
