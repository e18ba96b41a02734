// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/zoom_frame.h"
#include "tests/editor/editor_fixture.h"

#include <cmath>

namespace complexion {

namespace {

constexpr PointSize kArea{400, 300};
constexpr Frame kFitted{0, 0, 400, 300};

/// A frame of `ratio` times the area, with its centre in the area's.
Frame centred(double ratio) {
    const double width = kArea.width * ratio;
    const double height = kArea.height * ratio;
    return {(kArea.width - width) / 2, (kArea.height - height) / 2, width, height};
}

void expectNear(const Frame& actual, const Frame& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.width, expected.width, 1e-9);
    EXPECT_NEAR(actual.height, expected.height, 1e-9);
}

void expectNoGap(const Frame& frame) {
    EXPECT_LE(frame.x, 0);
    EXPECT_LE(frame.y, 0);
    EXPECT_GE(frame.x + frame.width, kArea.width - 1e-9);
    EXPECT_GE(frame.y + frame.height, kArea.height - 1e-9);
}

// The rules.

TEST(ZoomFrame, AStepInIsATenthAboutTheCentre) {
    expectNear(zoomed(kFitted, kArea, kZoomInFactor), {-20, -15, 440, 330});
}

TEST(ZoomFrame, AStepOutIsATenthAboutTheCentre) {
    expectNear(zoomed(centred(2), kArea, kZoomOutFactor), centred(1.8));
}

TEST(ZoomFrame, NothingIsSmallerThanTheArea) {
    EXPECT_EQ(zoomed(kFitted, kArea, kZoomOutFactor), kFitted);
    expectNear(zoomed(centred(1.05), kArea, kZoomOutFactor), kFitted);
}

TEST(ZoomFrame, ARatioOfExactlyOneAfterTheStepIsAnOrdinaryStep) {
    // 1.25 is a binary fraction, and so is 0.8 of it within the last place: the ratio is not below 1.
    const Frame frame{-50, -37.5, 500, 375};
    expectNear(zoomed(frame, kArea, 0.8), kFitted);
}

TEST(ZoomFrame, TwentyFiveStepsInLandOnTenTimesTheArea) {
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
    // Three times as high as wide, in proportion to the area: the width alone decides.
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

TEST(ZoomFrame, BothDirectionsKnowBothLimits) {
    // A window that shrank or grew leaves a frame outside the limits.
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

TEST(ZoomFrame, FittingKeepsNoGap) {
    EXPECT_EQ(fitted(centred(3), kArea), kFitted);
    EXPECT_EQ(fitted({12, -7, 10, 10}, kArea), kFitted);
}

TEST(ZoomFrame, AFrameIsMovedBackIntoPlaceOnEachAxis) {
    EXPECT_EQ(repositioned({10, -100, 800, 600}, kArea), (Frame{0, -100, 800, 600}));
    EXPECT_EQ(repositioned({-401, -100, 800, 600}, kArea), (Frame{-400, -100, 800, 600}));
    EXPECT_EQ(repositioned({-100, 5, 800, 600}, kArea), (Frame{-100, 0, 800, 600}));
    EXPECT_EQ(repositioned({-100, -301, 800, 600}, kArea), (Frame{-100, -300, 800, 600}));
    EXPECT_EQ(repositioned({-100, -100, 800, 600}, kArea), (Frame{-100, -100, 800, 600}));
    EXPECT_EQ(repositioned({-400, -300, 800, 600}, kArea), (Frame{-400, -300, 800, 600}));
}

TEST(ZoomFrame, AFrameSmallerThanTheAreaIsPinnedToTheLeftAndBottom) {
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

TEST(ZoomFrame, ADragMayReachTheEdgeButAStepBeyondIsDroppedWhole) {
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

TEST(ZoomFrame, ADiagonalDragAlongAnEdgeStillMovesTheOtherWay) {
    EXPECT_EQ(panned({0, -100, 800, 600}, kArea, 3, 4), (Frame{0, -104, 800, 600}));
    EXPECT_EQ(panned({-100, 0, 800, 600}, kArea, 3, -4), (Frame{-97, 0, 800, 600}));
}

TEST(ZoomFrame, WithoutZoomNothingMoves) {
    EXPECT_EQ(panned(kFitted, kArea, 1, 1), kFitted);
    EXPECT_EQ(panned(kFitted, kArea, -1, -1), kFitted);
    EXPECT_EQ(panned(kFitted, kArea, 0, 0), kFitted);
}

TEST(ZoomFrame, AFittedPhotoStaysFittedInAnotherSizeOfWindow) {
    expectNear(resized(kFitted, kArea, {1000, 500}), {0, 0, 1000, 500});
    expectNear(resized(kFitted, kArea, {90, 700}), {0, 0, 90, 700});
}

TEST(ZoomFrame, AZoomedPhotoKeepsItsRatioAndCentreInAnotherSizeOfWindow) {
    // The point in the middle of the area lies at 3/8 of the frame's width and 5/8 of its height.
    const Frame frame{-100, -225, 800, 600};
    const Frame next = resized(frame, kArea, {600, 500});
    EXPECT_NEAR(next.width, 1200, 1e-9);
    EXPECT_NEAR(next.height, 1000, 1e-9);
    EXPECT_NEAR((300 - next.x) / next.width, 3.0 / 8, 1e-9);
    EXPECT_NEAR((250 - next.y) / next.height, 5.0 / 8, 1e-9);
}

TEST(ZoomFrame, AnotherSizeOfWindowOpensNoGap) {
    const Frame corner{0, -300, 800, 600};
    const Frame next = resized(corner, kArea, {150, 800});
    EXPECT_LE(next.x, 0);
    EXPECT_LE(next.y, 0);
    EXPECT_GE(next.x + next.width, 150);
    EXPECT_GE(next.y + next.height, 800);
}

TEST(ZoomFrame, ThereAndBackAgainIsWhereItWas) {
    const Frame frame{-130, -110, 880, 660};
    expectNear(resized(resized(frame, kArea, {1000, 333}), {1000, 333}, kArea), frame);
}

// The actions.

class Zoom : public EditorTest {
protected:
    void openPhoto() { openThroughPanel(makePhoto()); }
    Frame frame() const { return imageView->frame(); }
};

TEST_F(Zoom, WithoutAPhotoTheActionsDoNothing) {
    imageView->setFrame({-10, -20, 500, 400});
    controller->OnZoomIn(nullptr);
    controller->OnZoomOut(nullptr);
    controller->OnResetZoom(nullptr);
    EXPECT_EQ(frame(), (Frame{-10, -20, 500, 400}));
}

TEST_F(Zoom, WithoutAPhotoADragStillFollowsTheRule) {
    drag(5, 5);
    EXPECT_EQ(frame(), kFitted);
    imageView->setFrame({-10, -20, 500, 400});
    drag(-5, 5);
    EXPECT_EQ(frame(), (Frame{-15, -25, 500, 400}));
}

TEST_F(Zoom, ResettingItselfNeedsNoPhoto) {
    imageView->setFrame({-10, -20, 500, 400});
    controller->ResetZoom();
    EXPECT_EQ(frame(), kFitted);
}

TEST_F(Zoom, TheActionsMoveTheViewsFrameByTheRules) {
    openPhoto();
    Frame expected = kFitted;
    for (int i = 0; i < 27; ++i) {
        controller->OnZoomIn(nullptr);
        expected = zoomed(expected, kArea, 1.1);
        EXPECT_EQ(frame(), expected);
    }
    EXPECT_EQ(frame().width, 4000);
    drag(-40, 25);
    expected = panned(expected, kArea, -40, 25);
    EXPECT_EQ(frame(), expected);
    for (int i = 0; i < 27; ++i) {
        controller->OnZoomOut(nullptr);
        expected = zoomed(expected, kArea, 0.9);
        EXPECT_EQ(frame(), expected);
        expectNoGap(frame());
    }
    EXPECT_EQ(frame(), kFitted);
}

TEST_F(Zoom, FromTheFittedSizeAStepOutKeepsTheFrame) {
    openPhoto();
    controller->OnZoomOut(nullptr);
    EXPECT_EQ(frame(), kFitted);
}

TEST_F(Zoom, AStepOutOfThePannedTopRightCornerLeavesNoGap) {
    openPhoto();
    for (int i = 0; i < 8; ++i)
        controller->OnZoomIn(nullptr);
    for (int i = 0; i < 2000; ++i)
        drag(-1, 1); // the photo's top right corner comes into the area
    EXPECT_NEAR(frame().x + frame().width, kArea.width, 1);
    EXPECT_NEAR(frame().y + frame().height, kArea.height, 1);
    controller->OnZoomOut(nullptr);
    expectNoGap(frame());
}

TEST_F(Zoom, ResetFitsThePhoto) {
    openPhoto();
    controller->OnZoomIn(nullptr);
    drag(3, 3);
    controller->OnResetZoom(nullptr);
    EXPECT_EQ(frame(), kFitted);
}

TEST_F(Zoom, TheFrameIsPulledBackIntoTheVisibleArea) {
    imageView->setFrame({30, 40, 800, 600});
    controller->RepositionImageInVisibleArea();
    EXPECT_EQ(frame(), (Frame{0, 0, 800, 600}));
    imageView->setFrame({30, 40, 100, 100});
    controller->RepositionImageInVisibleArea();
    EXPECT_EQ(frame(), (Frame{0, 0, 100, 100}));
}

TEST_F(Zoom, TheVisibleAreaIsTheRootViewAsItIsNow) {
    openPhoto();
    root->resize(800, 500);
    controller->OnResetZoom(nullptr);
    EXPECT_EQ(frame(), (Frame{0, 0, 800, 500}));
}

TEST_F(Zoom, AnotherSizeOfWindowKeepsTheRatio) {
    openPhoto();
    controller->OnZoomIn(nullptr);
    root->resize(800, 500);
    controller->visibleAreaResized(kArea, {800, 500});
    expectNear(frame(), {-40, -25, 880, 550});
}

TEST_F(Zoom, EffectsRetouchingUndoRedoAndReloadKeepTheZoom) {
    openPhoto();
    for (int i = 0; i < 3; ++i)
        controller->OnZoomIn(nullptr);
    drag(-11, 5);
    const Frame before = frame();
    selectEffect(3);
    EXPECT_EQ(frame(), before);
    retouch(0);
    EXPECT_EQ(frame(), before);
    controller->OnUndo(nullptr);
    EXPECT_EQ(frame(), before);
    controller->OnRedo(nullptr);
    EXPECT_EQ(frame(), before);
    reload();
    EXPECT_EQ(frame(), before);
}

TEST_F(Zoom, AnotherPhotoResetsTheZoom) {
    openPhoto();
    controller->OnZoomIn(nullptr);
    openThroughPanel(makePhoto("second.png"));
    EXPECT_EQ(frame(), kFitted);
    controller->OnZoomIn(nullptr);
    EXPECT_TRUE(drop(makePhoto("third.png")));
    EXPECT_EQ(frame(), kFitted);
}

TEST_F(Zoom, AViewThatIsGoneIsFatal) {
    openPhoto();
    EXPECT_DEATH(
        {
            delete controller->imageView.data();
            drag(1, 1);
        },
        "gone");
}

} // namespace

} // namespace complexion
