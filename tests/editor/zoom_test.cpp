// SPDX-License-Identifier: GPL-3.0-or-later

// The zoom actions, the pointer and the keys change the view's frame. zoom_frame_test.cpp tests the
// arithmetic.
#include "editor/zoom_frame.h"
#include "tests/editor/editor_fixture.h"
#include "tests/editor/frames.h"

#include <cmath>

namespace complexion {

namespace {

void expectNoGap(const Frame& frame) {
    EXPECT_LE(frame.x, 0);
    EXPECT_LE(frame.y, 0);
    EXPECT_GE(frame.x + frame.width, kArea.width - 1e-9);
    EXPECT_GE(frame.y + frame.height, kArea.height - 1e-9);
}

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

TEST_F(Zoom, TheShownScaleIsInDevicePixelsPerPixel) {
    EXPECT_EQ(controller->shownScale(), std::nullopt);
    openThroughPanel(makePhoto("large.png", filled({800, 600}, kSkin)));
    const double expected = imageView->frame().width / 800 * imageView->devicePixelRatioF();
    ASSERT_TRUE(controller->shownScale());
    EXPECT_NEAR(*controller->shownScale(), expected, 1e-9);
}

TEST_F(Zoom, ADragNeedsNoPhoto) {
    drag(5, 5);
    EXPECT_EQ(frame(), kFitted);
    imageView->setFrame({-10, -20, 500, 400});
    drag(-5, 5);
    EXPECT_EQ(frame(), (Frame{-15, -25, 500, 400}));
}

TEST_F(Zoom, ResettingNeedsNoPhoto) {
    imageView->setFrame({-10, -20, 500, 400});
    controller->ResetZoom();
    EXPECT_EQ(frame(), kFitted);
}

TEST_F(Zoom, TheActionsChangeTheViewsFrame) {
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

TEST_F(Zoom, AStepOutOfTheFittedSizeKeepsTheFrame) {
    openPhoto();
    controller->OnZoomOut(nullptr);
    EXPECT_EQ(frame(), kFitted);
}

TEST_F(Zoom, AStepOutAtTheTopRightCornerLeavesNoGap) {
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

TEST_F(Zoom, RepositioningClosesGaps) {
    imageView->setFrame({30, 40, 800, 600});
    controller->RepositionImageInVisibleArea();
    EXPECT_EQ(frame(), (Frame{0, 0, 800, 600}));
    imageView->setFrame({30, 40, 100, 100});
    controller->RepositionImageInVisibleArea();
    EXPECT_EQ(frame(), (Frame{0, 0, 100, 100}));
}

TEST_F(Zoom, TheVisibleAreaIsTheCurrentRootView) {
    openPhoto();
    root->resize(800, 500);
    controller->OnResetZoom(nullptr);
    EXPECT_EQ(frame(), (Frame{0, 0, 800, 500}));
}

TEST_F(Zoom, ResizingTheWindowKeepsTheRatio) {
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

TEST_F(Zoom, ADeletedViewIsFatal) {
    openPhoto();
    EXPECT_DEATH(
        {
            delete controller->imageView.data();
            drag(1, 1);
        },
        "gone");
}

class ZoomAtPoint : public EditorTest {};

TEST_F(ZoomAtPoint, DoesNothingWithoutAPhoto) {
    const Frame before = imageView->frame();
    controller->ZoomAbout({10, 10}, 3);
    controller->ZoomToPixels({10, 10});
    EXPECT_EQ(imageView->frame(), before);
}

TEST_F(ZoomAtPoint, HasTheStepsOfTheButtons) {
    openThroughPanel(makePhoto());
    controller->ZoomAbout({10, 10}, 3);
    EXPECT_NEAR(imageView->frame().width, 400 * std::pow(1.1, 3), 1e-9);
    controller->ZoomAbout({10, 10}, -1);
    EXPECT_NEAR(imageView->frame().width, 400 * std::pow(1.1, 3) * 0.9, 1e-9);
}

TEST_F(ZoomAtPoint, ToPixelsAlignsPixelsWithTheScreen) {
    // 1000 by 700 pixels: 0.4 points each when fitted.
    openThroughPanel(makePhoto("large.png", filled({1000, 700}, kSkin)));
    controller->ZoomToPixels({133, 71});
    const QTransform shown = imageView->pixelsToWidget();
    EXPECT_NEAR(shown.m11(), 1, 1e-12);
    EXPECT_NEAR(shown.dx(), std::round(shown.dx()), 1e-9);
    EXPECT_NEAR(shown.dy(), std::round(shown.dy()), 1e-9);
}

TEST_F(ZoomAtPoint, ToPixelsIsLimitedToTheFittedSize) {
    // Fitted, a pixel already has five points: a smaller scale would leave a gap.
    openThroughPanel(makePhoto());
    controller->ZoomToPixels({133, 71});
    EXPECT_EQ(imageView->frame(), (Frame{0, 0, 400, 300}));
}

TEST_F(ZoomAtPoint, RevealingMovesThePhotoNoFurtherThanNeeded) {
    openThroughPanel(makePhoto());
    controller->ZoomAbout({200, 150}, 12);
    const Frame before = imageView->frame();
    controller->Reveal({40, 30}, 20);
    EXPECT_EQ(imageView->frame(), before);
    controller->Reveal({79.5, 30}, 20);
    EXPECT_LT(imageView->frame().x, before.x);
    EXPECT_EQ(imageView->frame().y, before.y);
    EXPECT_NEAR(imageView->frame().x, kArea.width - imageView->frame().width, 20);
}

} // namespace

} // namespace complexion
