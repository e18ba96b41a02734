// SPDX-License-Identifier: GPL-3.0-or-later

// The exact frame after zooming at a point, moving by keys and revealing the disc, against values worked out
// by hand.
#include "tests/editor/editor_fixture.h"
#include "tests/editor/frames.h"

namespace complexion {

namespace {

/// A root view on a screen with two pixels per point.
class HighDpiView : public QWidget {
protected:
    int metric(PaintDeviceMetric kind) const override {
        if (kind == PdmDevicePixelRatio)
            return 2;
        if (kind == PdmDevicePixelRatioScaled)
            return static_cast<int>(2 * devicePixelRatioFScale());
        return QWidget::metric(kind);
    }
};

class ZoomPositionTest : public EditorTest {
protected:
    void open(PixelSize size) { openThroughPanel(makePhoto("photo.png", filled(size, kSkin))); }

    void expectFrame(const Frame& expected) const { expectNear(imageView->frame(), expected); }

    /// The frame after revealing a point of the zoomed photo with this margin.
    Frame revealed(Point inImage, double margin) {
        imageView->setFrame(kZoomed);
        controller->Reveal(inImage, margin);
        return imageView->frame();
    }
};

TEST_F(ZoomPositionTest, ZoomStepsKeepTheirFixedPoint) {
    open({80, 60});
    controller->ZoomAbout({100, 75}, 2);
    expectFrame({100 - 0.25 * 484, 75 - 0.25 * 363, 484, 363});
    controller->ZoomAbout({100, 75}, -1);
    expectFrame({100 - 0.25 * 435.6, 75 - 0.25 * 326.7, 435.6, 326.7});
    controller->ZoomAbout({100, 75}, 0);
    expectFrame({100 - 0.25 * 435.6, 75 - 0.25 * 326.7, 435.6, 326.7});
}

TEST_F(ZoomPositionTest, ZoomingToPixelsKeepsThePointAndAlignsToPixels) {
    // Fitted, a pixel has 0.4 points: 2.5 times the area shows it at one. The margins above and below are 25
    // points.
    open({1000, 700});
    controller->ZoomToPixels({133, 71});
    // The photo's corner would be at -199.5, -81.5; aligned to whole points it is at -200, -82.
    expectFrame({-200, -107, 1000, 750});
}

TEST_F(ZoomPositionTest, ZoomingToPixelsAlignsATallPhoto) {
    // Fitted, a pixel has 0.3 points. The margins left and right are 950 / 3 points.
    open({700, 1000});
    controller->ZoomToPixels({133, 71});
    // The corner would be at 6.33, -165.67.
    expectFrame({6 - 950.0 / 3, -166, 4000.0 / 3, 1000});
}

TEST_F(ZoomPositionTest, ZoomingToPixelsUsesThePixelsOfAHighDpiScreen) {
    open({1000, 700});
    HighDpiView view;
    view.resize(400, 300);
    controller->view = &view;
    controller->ZoomToPixels({133, 71});
    // The corner would be at -33.25, -5.25; aligned to half points it is at -33.5, -5.5, with a margin of
    // 12.5 below it.
    expectFrame({-33.5, -18, 500, 375});
}

TEST_F(ZoomPositionTest, TheShownScaleCountsThePixelsOfAHighDpiScreen) {
    open({1000, 700});
    HighDpiView view;
    controller->view = &view;
    EXPECT_DOUBLE_EQ(*controller->shownScale(), 0.8); // 0.4 points a pixel
}

TEST_F(ZoomPositionTest, ZoomingToPixelsAtTheEdgeLeavesNoGap) {
    open({1000, 700});
    controller->ZoomToPixels({0, 0});
    expectFrame({0, 0, 1000, 750});
    controller->OnResetZoom(nullptr);
    controller->ZoomToPixels({400, 300});
    expectFrame({-600, -450, 1000, 750});
}

TEST_F(ZoomPositionTest, ThePhotoMovesWithTheKeys) {
    open({80, 60});
    imageView->setFrame(kZoomed);
    controller->MovePhoto(7, 5);
    expectFrame({-293, -255, 1000, 750});
}

TEST_F(ZoomPositionTest, RevealingMovesThePointInsideTheMarginOfEachSide) {
    open({80, 60});
    // 12.5 points per pixel.
    EXPECT_EQ(revealed({24.8, 40}, 20), (Frame{-290, -250, 1000, 750}));
    EXPECT_EQ(revealed({55.2, 40}, 20), (Frame{-310, -250, 1000, 750}));
    EXPECT_EQ(revealed({40, 20.8}, 20), (Frame{-300, -240, 1000, 750}));
    EXPECT_EQ(revealed({40, 43.2}, 20), (Frame{-300, -260, 1000, 750}));
    EXPECT_EQ(revealed({24.8, 20.8}, 20), (Frame{-290, -240, 1000, 750}));
    EXPECT_EQ(revealed({40, 36}, 20), kZoomed);
}

TEST_F(ZoomPositionTest, RevealingWithAMarginOfMoreThanHalfTheAreaCentresThePoint) {
    open({80, 60});
    EXPECT_EQ(revealed({30, 25}, 500), (Frame{-175, -162.5, 1000, 750}));
}

TEST_F(ZoomPositionTest, RevealingAccountsForTheMarginsBesideThePhoto) {
    open({80, 30}); // margins of 187.5 points above and below
    EXPECT_EQ(revealed({40, 6}, 20), (Frame{-300, -242.5, 1000, 750}));
    open({40, 60}); // margins of 250 points left and right
    EXPECT_EQ(revealed({4.8, 40}, 20), (Frame{-290, -250, 1000, 750}));
}

} // namespace

} // namespace complexion
