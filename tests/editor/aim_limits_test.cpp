// SPDX-License-Identifier: GPL-3.0-or-later

// The aim where there is nothing to aim at: beside the photo, after another one was opened, without a disc.
#include "tests/editor/aim_fixture.h"

namespace complexion {

namespace {

class AimLimits : public AimTest {
protected:
    void openFilled(PixelSize size) { openThroughPanel(makePhoto("other.png", filled(size, kSkin))); }
};

TEST_F(AimLimits, WithoutAPhotoFittingDoesNothing) {
    aim->pointAt(Point{10, 10});
    aim->fit();
    aim->act();
    EXPECT_FALSE(aim->place());
    EXPECT_TRUE(announcements.isEmpty());
}

// As the photo is wider than the view, there is space above and below it, and then at its sides.
TEST_F(AimLimits, ThereIsNoDiscOnAnySideOfThePhoto) {
    openFilled({160, 20});
    pointAtPixel({10, 80});
    EXPECT_TRUE(disc->place());
    for (const Point beside : {Point{200, 10}, Point{200, 290}}) {
        aim->pointAt(beside);
        EXPECT_FALSE(disc->place());
    }
    openFilled({20, 160});
    pointAtPixel({80, 10});
    EXPECT_TRUE(disc->place());
    for (const Point beside : {Point{10, 150}, Point{390, 150}}) {
        aim->pointAt(beside);
        EXPECT_FALSE(disc->place());
    }
}

TEST_F(AimLimits, FittingReturnsToTheLastPlaceOnlyIfThePhotoContainsIt) {
    openFilled({80, 60});
    pointAtPixel({50, 70});
    aim->pointAt(std::nullopt);
    EXPECT_FALSE(aim->place());
    openFilled({20, 16});
    aim->fit();
    EXPECT_EQ(aim->place(), (PixelPosition{8, 10})) << "the middle";
}

TEST_F(AimLimits, WhilePickingNothingIsFitted) {
    open();
    pointAtPixel(blemishes()[0]);
    aim->setPicking(true);
    const std::int64_t radius = controller->currentRepair().radius;
    aim->fit();
    EXPECT_EQ(controller->currentRepair().radius, radius);
    EXPECT_TRUE(announcements.isEmpty());
}

// The view's overlays are destroyed before the aim.
TEST_F(AimLimits, WithoutItsDiscTheAimStillFitsAndRepairs) {
    open();
    controller->SetEditAreaSize(20);
    const PixelPosition blemish = blemishes()[0];
    delete disc;
    pointAtPixel(blemish);
    EXPECT_EQ(aim->place(), blemish);
    aim->fit();
    EXPECT_LT(controller->currentRepair().radius, 20);
    EXPECT_TRUE(announcements.last().startsWith(QStringLiteral("The edit area fits")))
        << announcements.last().toStdString();
    aim->act();
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_EQ(
        controller->originalImage().pixel(static_cast<int>(blemish.row), static_cast<int>(blemish.column)),
        kSkin);
}

TEST_F(AimLimits, WithoutItsDiscTheAimSaysThatNothingFits) {
    openFilled({80, 60});
    delete disc;
    pointAtPixel({30, 40});
    aim->fit();
    EXPECT_EQ(announcements.last(), QStringLiteral("No blemish to fit here."));
}

TEST_F(AimLimits, APreviewThatEndsAfterTheDiscIsGoneIsNotShown) {
    open();
    aim->setPreviewing(true);
    aim->pointAt(shownAt(blemishes()[0]));
    delete disc;
    queues.runAll();
    EXPECT_FALSE(imageView->isShowingReplacement());
}

} // namespace

} // namespace complexion
