// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/zoom_frame.h"
#include "tests/editor/editor_fixture.h"

#include <cmath>

namespace complexion {
namespace {

constexpr PointSize kArea{400, 300};
constexpr Frame kZoomed{-300, -250, 1000, 750};

/// The part of a frame, 0 to 1 on each axis, that stands at a point of the area.
Point partAt(const Frame& frame, Point point) {
    return {(point.x - frame.x) / frame.width, (point.y - frame.y) / frame.height};
}

void expectNear(Point actual, Point expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
}

TEST(ZoomAbout, WhatIsUnderThePointerStaysThere) {
    for (const Point about : {Point{10, 290}, Point{200, 150}, Point{333, 44}}) {
        for (const double factor : {kZoomInFactor, kZoomOutFactor}) {
            const Frame next = zoomedAbout(kZoomed, kArea, factor, about);
            EXPECT_NEAR(next.width, kZoomed.width * factor, 1e-9);
            expectNear(partAt(next, about), partAt(kZoomed, about));
        }
    }
}

TEST(ZoomAbout, TheFramesOwnMiddleGivesTheStepOfTheButtons) {
    const Point middle{kZoomed.x + kZoomed.width / 2, kZoomed.y + kZoomed.height / 2};
    EXPECT_EQ(zoomedAbout(kZoomed, kArea, kZoomInFactor, middle), zoomed(kZoomed, kArea, kZoomInFactor));
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

TEST(ZoomTo, ARatioIsReachedAboutThePointWithinTheLimits) {
    const Frame next = zoomedTo(kZoomed, kArea, 4, {100, 100});
    EXPECT_EQ(next.width, 1600);
    expectNear(partAt(next, {100, 100}), partAt(kZoomed, {100, 100}));
    EXPECT_EQ(zoomedTo(kZoomed, kArea, 40, {100, 100}).width, 4000);
    EXPECT_EQ(zoomedTo(kZoomed, kArea, 0.2, {100, 100}), (Frame{0, 0, 400, 300}));
}

TEST(Moved, ThePhotoGoesToTheEdgeAndNoFurther) {
    EXPECT_EQ(moved(kZoomed, kArea, 20, 30), (Frame{-280, -280, 1000, 750}));
    EXPECT_EQ(moved(kZoomed, kArea, 5000, 0).x, 0);
    EXPECT_EQ(moved(kZoomed, kArea, -5000, 0).x, -600);
    EXPECT_EQ(moved(kZoomed, kArea, 0, 5000).y, -450);
    EXPECT_EQ(moved(kZoomed, kArea, 0, -5000).y, 0);
}

class Looking : public EditorTest {};

TEST_F(Looking, WithoutAPhotoNothingZooms) {
    const Frame before = imageView->frame();
    controller->ZoomAbout({10, 10}, 3);
    controller->ZoomToPixels({10, 10});
    EXPECT_EQ(imageView->frame(), before);
}

TEST_F(Looking, StepsAreThoseOfTheButtons) {
    openThroughPanel(makePhoto());
    controller->ZoomAbout({10, 10}, 3);
    EXPECT_NEAR(imageView->frame().width, 400 * std::pow(1.1, 3), 1e-9);
    controller->ZoomAbout({10, 10}, -1);
    EXPECT_NEAR(imageView->frame().width, 400 * std::pow(1.1, 3) * 0.9, 1e-9);
}

TEST_F(Looking, OnePixelIsOneOfTheScreenAndOnItsGrid) {
    // 1000 by 700 pixels: 0.4 points each when fitted.
    openThroughPanel(makePhoto("large.png", filled({1000, 700}, kSkin)));
    controller->ZoomToPixels({133, 71});
    const QTransform shown = imageView->pixelsToWidget();
    EXPECT_NEAR(shown.m11(), 1, 1e-12);
    EXPECT_NEAR(shown.dx(), std::round(shown.dx()), 1e-9);
    EXPECT_NEAR(shown.dy(), std::round(shown.dy()), 1e-9);
}

TEST_F(Looking, OnePixelStaysAsLargeAsTheLimitAllows) {
    // Already five points a pixel when fitted: smaller would leave a gap.
    openThroughPanel(makePhoto());
    controller->ZoomToPixels({133, 71});
    EXPECT_EQ(imageView->frame(), (Frame{0, 0, 400, 300}));
}

TEST_F(Looking, RevealingMovesThePhotoOnlyAsFarAsNeeded) {
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

TEST_F(Looking, TheEditAreaGrowsByTenthsWithinItsBounds) {
    const auto sizeAfter = [this](int steps) {
        controller->StepEditAreaSize(steps);
        EXPECT_EQ(controller->textFieldEditAreaSize->text().toInt(),
                  controller->stepperEditAreaSize->integerValue());
        return controller->stepperEditAreaSize->integerValue();
    };
    EXPECT_EQ(sizeAfter(1), 11);
    EXPECT_EQ(sizeAfter(-3), 8);
    EXPECT_EQ(sizeAfter(-100), 1);
    EXPECT_EQ(sizeAfter(1000), 500);
    EXPECT_EQ(sizeAfter(-1), 450);
}

TEST_F(Looking, TheThresholdMovesByGreyLevelsWithinItsBounds) {
    controller->StepThreshold(3);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 13);
    controller->StepThreshold(-20);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 0);
    controller->StepThreshold(200);
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 100);
}

} // namespace
} // namespace complexion
