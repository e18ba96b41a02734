// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/retouch_fixture.h"

namespace complexion {

namespace {

// Which presses are clicks.

TEST_F(Retouch, AShortPressRepairsTheBlemishUnderIt) {
    openPhoto();
    clickPixel(blemishes()[0], 0.15);
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(),
                           skinWithBlemishes(kPhotoSize, {blemishes()[1], blemishes()[2]})));
    EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
    EXPECT_EQ(controller->stateImagesPath.size(), 2U);
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_TRUE(samePixels(decoded(currentPath()), controller->originalImage()));
    EXPECT_FALSE(controller->imageProcessing);
    EXPECT_TRUE(controller->canUndo());
}

TEST_F(Retouch, ALongPressDoesNothing) {
    openPhoto();
    expectUnchangedBy([this] {
        clickPixel(blemishes()[0], 0.25);
        EXPECT_EQ(queues.backgroundCount(), 0U);
    });
}

TEST_F(Retouch, APressOfExactlyAFifthOfASecondIsAClick) {
    openPhoto();
    clickPixel(blemishes()[0], 0.2);
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();

    controller->mouseDown({.locationInWindow = shownAt(blemishes()[1])});
    platform.uptime += 200'000'001;
    controller->mouseUp({.locationInWindow = shownAt(blemishes()[1])});
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(Retouch, APressOfOneNanosecondMoreIsNotAClick) {
    openPhoto();
    const Point place = shownAt(blemishes()[0]);
    for (const std::uint64_t nanoseconds : {200'000'000U, 200'000'001U}) {
        controller->mouseDown({.locationInWindow = place});
        platform.uptime += nanoseconds;
        controller->mouseUp({.locationInWindow = place});
        EXPECT_EQ(queues.backgroundCount(), nanoseconds == 200'000'000 ? 1U : 0U);
        queues.runAll();
    }
}

TEST_F(Retouch, APressOfZeroDurationIsAClick) {
    openPhoto();
    clickPixel(blemishes()[0], 0);
    EXPECT_EQ(queues.backgroundCount(), 1U);
}

TEST_F(Retouch, AReleaseEarlierThanItsPressIsFatal) {
    openPhoto();
    controller->mouseDown({});
    platform.uptime -= 1;
    EXPECT_DEATH(controller->mouseUp({}), "");
}

TEST_F(Retouch, APressThatMovedIsBothAPanAndAClick) {
    openPhoto();
    controller->OnZoomIn(nullptr);
    const Frame before = imageView->frame();
    controller->mouseDown({.locationInWindow = shownAt(blemishes()[0])});
    drag(4, -3);
    platform.uptime += 100'000'000;
    controller->mouseUp({.locationInWindow = shownAt(blemishes()[0])});
    EXPECT_EQ(imageView->frame(), (Frame{before.x + 4, before.y + 3, before.width, before.height}));
    queues.runAll();
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
}

TEST_F(Retouch, AClickWithoutAPhotoDoesNothing) {
    click({200, 150});
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(Retouch, AClickDuringARepairIsIgnored) {
    openPhoto();
    clickPixel(blemishes()[0]);
    queues.runBackground();
    EXPECT_TRUE(controller->imageProcessing);

    clickPixel(blemishes()[1]);

    EXPECT_EQ(queues.backgroundCount(), 0U);
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_EQ(controller->originalImage().pixel(30, 55), kBlemish);
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(Retouch, TheBusyFlagIsSetWhenTheRepairStartsNotAtTheClick) {
    openPhoto();
    clickPixel(blemishes()[0]);
    EXPECT_FALSE(controller->imageProcessing);
    queues.runBackground();
    EXPECT_TRUE(controller->imageProcessing);
    EXPECT_EQ(queues.mainCount(), 1U);
    queues.runMain();
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(Retouch, TwoQueuedRepairsBothRunOnTheImageAtTheirStart) {
    openPhoto();
    clickPixel(blemishes()[0]);
    clickPixel(blemishes()[1]);
    EXPECT_EQ(queues.backgroundCount(), 2U);
    // Both read the loaded image; the second result replaces the first.
    queues.runBackground();
    queues.runBackground();
    queues.runMain();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemishes()[0])));
    queues.runMain();
    EXPECT_TRUE(samePixels(controller->originalImage(), repaired(photo(), blemishes()[1])));
    EXPECT_EQ(controller->currenState, 2);
    EXPECT_EQ(stateFiles().size(), 3U);
    EXPECT_FALSE(controller->imageProcessing);
}

TEST_F(Retouch, ARepairThatStartsAfterAnotherFinishedRepairsItsResult) {
    openPhoto();
    clickPixel(blemishes()[0]);
    clickPixel(blemishes()[1]);
    queues.runBackground();
    queues.runMain();
    queues.runBackground();
    queues.runMain();
    EXPECT_TRUE(samePixels(controller->originalImage(), skinWithBlemishes(kPhotoSize, {blemishes()[2]})));
    EXPECT_EQ(controller->currenState, 2);
}

// Which pixel is clicked.

TEST_F(Retouch, AClickIsMappedFromTheViewToTheImage) {
    // 1000 by 500 pixels in a frame of 600 by 600: a scale of 0.6, with margins of 150 points above and
    // below.
    root->resize(600, 600);
    imageView->resize(600, 600);
    const Image wide = skinWithBlemishes({1000, 500}, {{249, 500}});
    openThroughPanel(makePhoto("wide.png", wide));
    ASSERT_EQ(imageView->frame(), (Frame{0, 0, 600, 600}));
    click({300, 300}); // (500, 250) in the image, y upward
    queues.runAll();
    const auto expected = ImageTools::RemovePimpleFromImage(wide, {500, 250}, 10, 1, {}, 10);
    ASSERT_TRUE(expected.has_value());
    EXPECT_FALSE(samePixels(*expected, wide));
    EXPECT_TRUE(samePixels(controller->originalImage(), *expected));
}

TEST_F(Retouch, AClickOnATallImageIsMapped) {
    const Image tall = skinWithBlemishes({60, 300}, {{100, 30}});
    openThroughPanel(makePhoto("tall.png", tall));
    // One point per pixel, with margins of 170 points left and right.
    click({200.5, 300 - 100 - 0.5});
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), filled({60, 300}, kSkin)));
}

TEST_F(Retouch, AClickOnAZoomedAndPannedImageIsMapped) {
    openPhoto();
    for (int i = 0; i < 7; ++i)
        controller->OnZoomIn(nullptr);
    drag(31.25, -17.5);
    for (std::size_t i = 0; i < blemishes().size(); ++i) {
        SCOPED_TRACE(i);
        const Image before = controller->originalImage();
        clickPixel(blemishes()[i]);
        queues.runAll();
        EXPECT_TRUE(samePixels(controller->originalImage(), repaired(before, blemishes()[i])));
    }
    EXPECT_TRUE(samePixels(controller->originalImage(), filled(kPhotoSize, kSkin)));
}

TEST_F(Retouch, AClickBesideTheImageChangesNoPixelAndIsRecorded) {
    root->resize(400, 400); // 50 points of margin above and below
    imageView->resize(400, 400);
    openPhoto();
    click({200, 20});
    EXPECT_EQ(queues.backgroundCount(), 1U);
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_EQ(controller->currenState, 1);
}

TEST_F(Retouch, AClickTooNearTheBorderChangesNoPixel) {
    openPhoto();
    clickPixel({3, 3});
    queues.runAll();
    EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_FALSE(controller->imageProcessing);
}

} // namespace

} // namespace complexion
