// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/aim.h"

#include "tests/editor/aim_fixture.h"

#include <QCoreApplication>

#include <cmath>

namespace complexion {
namespace {

TEST_F(AimTest, TheDiscFollowsTheMouseOverThePhoto) {
    aim->pointAt(Point{200, 150});
    EXPECT_FALSE(disc->place().has_value()); // no photo yet
    open();
    EXPECT_EQ(disc->place(), (PixelPosition{30, 40}));
    aim->pointAt(shownAt({12, 34}));
    EXPECT_EQ(disc->place(), (PixelPosition{12, 34}));
    aim->pointAt(std::nullopt);
    EXPECT_FALSE(disc->place().has_value());
}

TEST_F(AimTest, ThereIsNoDiscBesideThePhoto) {
    openThroughPanel(makePhoto("narrow.png", filled({60, 120}, kSkin)));
    aim->pointAt(Point{10, 150});
    EXPECT_FALSE(aim->place().has_value());
    aim->pointAt(Point{390, 150});
    EXPECT_FALSE(aim->place().has_value());
    aim->pointAt(Point{200, 150});
    EXPECT_TRUE(aim->place().has_value());
}

TEST_F(AimTest, TheDiscHasTheEditAreaSizeAsItsRadiusAndFollowsItsChanges) {
    open();
    aim->pointAt(shownAt({30, 40}));
    EXPECT_EQ(disc->shownRadius(), 50); // ten pixels of five points each
    controller->StepEditAreaSize(2);
    EXPECT_EQ(disc->shownRadius(), 60);
    EXPECT_EQ(controller->textFieldEditAreaSize->text(), QStringLiteral("12"));
}

TEST_F(AimTest, TheDiscFitsTheBlemishUnderIt) {
    openThroughPanel(makePhoto("spot.png", skinWithBlemishes({160, 120}, {{60, 80}})));
    aim->pointAt(shownAt({62, 81}));
    aim->fit();
    EXPECT_EQ(aim->place(), (PixelPosition{60, 80}));
    const auto fitted = controller->currentRepair().radius;
    EXPECT_EQ(announcements.last(), QStringLiteral("The edit area fits: %1 pixels.").arg(fitted));
    EXPECT_EQ(controller->textFieldEditAreaSize->text(), QString::number(fitted));
    EXPECT_EQ(controller->sliderThreshold->floatValue(), 10);
    aim->fit();
    EXPECT_EQ(announcements.last(), QStringLiteral("Nothing larger to fit here."));
    EXPECT_EQ(disc->caption(), QStringLiteral("Nothing larger to fit here."));
    EXPECT_EQ(controller->currentRepair().radius, fitted);
}

TEST_F(AimTest, AFittedDiscStaysUntilTheMouseMovesClearly) {
    openThroughPanel(makePhoto("spot.png", skinWithBlemishes({160, 120}, {{60, 80}})));
    const Point mouse = shownAt({62, 81});
    aim->pointAt(mouse);
    EXPECT_EQ(aim->clickPoint(mouse), mouse);
    aim->fit();
    const Point hardlyMoved{mouse.x + 1, mouse.y - 1};
    aim->pointAt(hardlyMoved);
    EXPECT_EQ(aim->place(), (PixelPosition{60, 80}));
    const Point clicked =
        imagePointAt(aim->clickPoint(hardlyMoved), controller->originalImage().size(), imageView->frame());
    EXPECT_EQ(pixelAt(clicked, controller->originalImage().size()), (PixelPosition{60, 80}));
    const Point moved = shownAt({90, 20});
    aim->pointAt(moved);
    EXPECT_EQ(aim->place(), (PixelPosition{90, 20}));
    EXPECT_EQ(aim->clickPoint(moved), moved);
}

TEST_F(AimTest, AButtonFitsTheDiscAtItsLastPosition) {
    openThroughPanel(makePhoto("spot.png", skinWithBlemishes({160, 120}, {{60, 80}, {30, 40}})));
    aim->pointAt(shownAt({31, 41}));
    aim->pointAt(std::nullopt);
    EXPECT_FALSE(aim->place().has_value());
    aim->fit();
    EXPECT_EQ(aim->place(), (PixelPosition{30, 40}));
    EXPECT_EQ(disc->place(), aim->place());
}

TEST_F(AimTest, OnCleanSkinTheDiscIsUnchanged) {
    openThroughPanel(makePhoto("clean.png", filled({160, 120}, kSkin)));
    aim->pointAt(shownAt({60, 80}));
    aim->fit();
    EXPECT_EQ(announcements.last(), QStringLiteral("No blemish to fit here."));
    EXPECT_EQ(disc->caption(), QStringLiteral("No blemish to fit here."));
    EXPECT_EQ(controller->currentRepair().radius, 10);
}

TEST_F(AimTest, ASecondRingShowsTheFittingSizeUntilTheDiscHasIt) {
    openThroughPanel(makePhoto("spot.png", skinWithBlemishes({160, 120}, {{60, 80}})));
    controller->SetEditAreaSize(20);
    aim->pointAt(shownAt({60, 80}));
    EXPECT_FALSE(disc->secondRing().has_value());
    restUntil([this] { return disc->secondRing().has_value(); });
    EXPECT_EQ(disc->secondRing()->place, (PixelPosition{60, 80}));
    EXPECT_LT(disc->secondRing()->radius, 20 / 1.2);
    EXPECT_EQ(disc->caption(), QStringLiteral("F fits the ring"));

    aim->fit();
    EXPECT_FALSE(disc->secondRing().has_value());
    controller->SetEditAreaSize(20);
    restUntil([this] { return disc->secondRing().has_value(); });
    EXPECT_EQ(disc->caption(), QString()); // shown only once
}

TEST_F(AimTest, ADiscThatFitsHasNoSecondRing) {
    openThroughPanel(makePhoto("spot.png", skinWithBlemishes({160, 120}, {{60, 80}})));
    aim->pointAt(shownAt({60, 80}));
    aim->fit();
    controller->StepEditAreaSize(1);
    queues.runAll();
    restUntilPreview(); // as long as a second ring needs
    QCoreApplication::processEvents();
    EXPECT_FALSE(disc->secondRing().has_value());
}

TEST_F(AimTest, AfterAZoomTheSameMousePositionIsAnotherPixel) {
    open();
    const Point mouse{100, 100};
    aim->pointAt(mouse);
    const auto before = aim->place();
    controller->ZoomAbout({400, 300}, 5);
    EXPECT_NE(aim->place(), before);
    const Point point = imagePointAt(mouse, controller->originalImage().size(), imageView->frame());
    EXPECT_EQ(aim->place(), pixelAt(point, controller->originalImage().size()));
}

TEST_F(AimTest, ThePreviewOutlinesThePixelsThatTheClickRepairs) {
    open();
    pointAtPixel(blemishes()[0]);
    EXPECT_EQ(disc->look(), DiscLook::Repairs);
    const PixelMask outlined = disc->outlined();
    EXPECT_GT(outlined.count(), 0);
    const Image before = controller->originalImage();
    restUntilPreview();
    EXPECT_TRUE(controller->originalImage().isSameObject(before));
    EXPECT_TRUE(shown().isSameObject(before));

    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_EQ(changedPixels(before, controller->originalImage()), outlined);
}

TEST_F(AimTest, TheDiscShowsWhyAClickWouldNotRepair) {
    const Image photo = painted(kPhotoSize, [](int row, int column) {
        return row < 30 ? kSkin : column < 40 ? grey(40) : grey(120);
    });
    openThroughPanel(makePhoto("edges.png", photo));
    pointAtPixel({15, 40});
    EXPECT_EQ(disc->look(), DiscLook::Idle);
    pointAtPixel({5, 40});
    EXPECT_EQ(disc->look(), DiscLook::OverBorder);
    pointAtPixel({45, 40});
    EXPECT_EQ(disc->look(), DiscLook::Uneven);
}

TEST_F(AimTest, ChangingASettingUpdatesThePreview) {
    open();
    pointAtPixel(blemishes()[0]);
    EXPECT_EQ(disc->look(), DiscLook::Repairs);
    controller->sliderThreshold->setFloatValue(100);
    EXPECT_EQ(disc->look(), DiscLook::Plain); // not yet computed
    EXPECT_EQ(disc->outlined(), PixelMask{});
    queues.runAll();
    EXPECT_EQ(disc->look(), DiscLook::Repairs); // the disc's mean is between blemish and skin
    controller->stepperEditAreaSize->setIntegerValue(2);
    queues.runAll();
    EXPECT_EQ(disc->look(), DiscLook::Idle);
}

TEST_F(AimTest, ChoosingTheOtherRepairUpdatesThePreview) {
    open();
    pointAtPixel(blemishes()[0]);
    EXPECT_EQ(disc->look(), DiscLook::Repairs);
    controller->comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    EXPECT_EQ(disc->look(), DiscLook::Plain); // not yet computed
    queues.runAll();
    EXPECT_EQ(disc->look(), DiscLook::Repairs);
    const Image before = controller->originalImage();
    const PixelMask outlined = disc->outlined();
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_EQ(changedPixels(before, controller->originalImage()), outlined);
}

TEST_F(AimTest, MovingThePointerRemovesThePreview) {
    open();
    pointAtPixel(blemishes()[0]);
    restUntilPreview();
    aim->pointAt(shownAt({30, 40}));
    EXPECT_FALSE(imageView->isShowingReplacement());
}

TEST_F(AimTest, AnOutdatedPreviewIsNotShown) {
    open();
    aim->pointAt(shownAt(blemishes()[0]));
    queues.runBackground();
    aim->pointAt(shownAt({55, 70}));
    queues.runMain();
    EXPECT_EQ(disc->look(), DiscLook::Plain);
    EXPECT_EQ(disc->outlined(), PixelMask{});
}

TEST_F(AimTest, AfterTheClickThereIsNothingLeftToRepair) {
    open();
    pointAtPixel(blemishes()[0]);
    restUntilPreview();
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_FALSE(imageView->isShowingReplacement());
    EXPECT_EQ(disc->look(), DiscLook::Idle);
    EXPECT_EQ(announcements.back(), QStringLiteral("Repaired 29 pixels."));
}

TEST_F(AimTest, ThePreviewCanBeTurnedOff) {
    open();
    aim->setPreviewing(false);
    pointAtPixel(blemishes()[0]);
    EXPECT_EQ(queues.backgroundCount(), 0U);
    EXPECT_TRUE(disc->place().has_value());
    EXPECT_EQ(disc->look(), DiscLook::Plain);
    aim->setPreviewing(true);
    queues.runAll();
    EXPECT_EQ(disc->look(), DiscLook::Repairs);
}

TEST_F(AimTest, AClickOnAPreviewIsShownThroughTheEffect) {
    open();
    selectEffect(5);
    const Image before = shown();
    pointAtPixel(blemishes()[0]);
    restUntilPreview();
    clickPixel(blemishes()[0]);
    queues.runAll();
    EXPECT_FALSE(samePixels(shown(), before));
}

TEST_F(AimTest, ChoosingAnEffectShowsThePreviewThroughIt) {
    const Image photo = painted(kPhotoSize, [](int row, int column) {
        return std::hypot(row - 20, column - 20) < 3 ? RGBA32(90, 30, 30, 255) : RGBA32(220, 170, 140, 255);
    });
    openThroughPanel(makePhoto("colored.png", photo));
    pointAtPixel({20, 20});
    restUntilPreview();
    const auto colorOnScreen = [this] {
        QImage screen(root->size(), QImage::Format_RGB32);
        root->render(&screen);
        return screen.pixelColor(200, 150);
    };
    const QColor before = colorOnScreen();
    selectEffect(5);
    EXPECT_TRUE(imageView->isShowingReplacement());
    EXPECT_NE(colorOnScreen(), before);
    EXPECT_EQ(colorOnScreen().red(), colorOnScreen().blue()); // black and white
}

// The keyboard.

TEST_F(AimTest, TheKeysMoveTheDiscFromTheCentreOfTheView) {
    open();
    aim->moveBy(0, 0);
    EXPECT_EQ(aim->place(), (PixelPosition{30, 40}));
    aim->moveBy(3, -2);
    EXPECT_EQ(aim->place(), (PixelPosition{28, 43}));
    aim->moveBy(-1000, 1000);
    EXPECT_EQ(aim->place(), (PixelPosition{59, 0}));
    aim->pointAt(shownAt({12, 34}));
    EXPECT_EQ(aim->place(), (PixelPosition{12, 34}));
    aim->moveBy(1, 0);
    EXPECT_EQ(aim->place(), (PixelPosition{12, 35}));
}

TEST_F(AimTest, TheKeysDoNothingWithoutAPhoto) {
    aim->moveBy(1, 1);
    aim->act();
    EXPECT_FALSE(aim->place().has_value());
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(AimTest, MovingTheDiscOutOfTheViewScrollsThePhoto) {
    open();
    for (int i = 0; i < 10; ++i)
        controller->OnZoomIn(nullptr);
    aim->moveBy(0, 0);
    aim->moveBy(39, 29);
    const Point there = shownAt(*aim->place());
    EXPECT_GT(there.x, 0);
    EXPECT_LT(there.x, kRootSize.width);
    EXPECT_GT(there.y, 0);
    EXPECT_LT(there.y, kRootSize.height);
}

TEST_F(AimTest, ActingRepairsAtTheDiscAndAnnouncesTheOutcome) {
    open();
    aim->moveBy(0, 0);
    aim->moveBy(static_cast<int>(blemishes()[0].column) - 40, static_cast<int>(blemishes()[0].row) - 30);
    queues.runAll();
    restUntil([this] { return !announcements.empty(); });
    EXPECT_EQ(announcements.back(), QStringLiteral("Column 21, row 21. 29 pixels would be repaired."));
    aim->act();
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
    EXPECT_EQ(announcements.back(), QStringLiteral("Repaired 29 pixels."));
    aim->act();
    queues.runAll();
    EXPECT_EQ(announcements.back(), QStringLiteral("Not repaired: nothing stands out from the skin."));
}

TEST_F(AimTest, ActingDuringARepairIsIgnored) {
    open();
    aim->moveBy(0, 0);
    queues.runAll();
    aim->act();
    queues.runBackground();
    EXPECT_TRUE(controller->imageProcessing);
    aim->act();
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
}

// The colour picker.

TEST_F(AimTest, WhilePickingActingPicksTheColorAndRepairsNothing) {
    openThroughPanel(makePhoto("plain.png", filled(kPhotoSize, {200, 150, 100, 255})));
    aim->setPicking(true);
    pointAtPixel({30, 40});
    aim->act();
    queues.runAll();
    EXPECT_EQ(picked, QColor(200, 150, 100));
    EXPECT_EQ(controller->currenState, 0);
    EXPECT_EQ(disc->look(), DiscLook::Plain);
}

// Comparing with the original.

TEST_F(AimTest, TheOriginalHidesTheDiscAndItsPreview) {
    open();
    pointAtPixel(blemishes()[0]);
    restUntilPreview();
    controller->ShowSource(true);
    EXPECT_FALSE(disc->place().has_value());
    EXPECT_TRUE(imageView->isShowingReplacement());
    controller->ShowSource(false);
    EXPECT_FALSE(imageView->isShowingReplacement());
    EXPECT_TRUE(disc->place().has_value());
}

} // namespace
} // namespace complexion
