// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

namespace complexion {
namespace {

class Comparison : public EditorTest {
protected:
    /// The colour on the screen at a pixel of the photo.
    QColor colorOnScreen(PixelPosition position) {
        QImage screen(root->size(), QImage::Format_RGB32);
        root->render(&screen);
        const Point point = shownAt(position);
        return screen.pixelColor(static_cast<int>(point.x), root->height() - 1 - static_cast<int>(point.y));
    }
    static QColor colorOf(RGBA32 pixel) { return QColor(pixel.red(), pixel.green(), pixel.blue()); }
};

TEST_F(Comparison, ShowsTheSourceAndThenTheWorkingImageAgain) {
    openThroughPanel(makePhoto());
    retouch(0);
    EXPECT_EQ(colorOnScreen(blemishes()[0]), colorOf(kSkin));
    controller->ShowSource(true);
    EXPECT_EQ(colorOnScreen(blemishes()[0]), colorOf(kBlemish));
    controller->ShowSource(false);
    EXPECT_EQ(colorOnScreen(blemishes()[0]), colorOf(kSkin));
}

TEST_F(Comparison, ChangesOnlyTheScreen) {
    openThroughPanel(makePhoto());
    retouch(0);
    expectUnchangedBy([this] { controller->ShowSource(true); });
    expectUnchangedBy([this] { controller->ShowSource(false); });
}

TEST_F(Comparison, SavingMeanwhileSavesTheWorkingImage) {
    openThroughPanel(makePhoto());
    retouch(0);
    controller->ShowSource(true);
    save(platform.photos() / "portrait_retouched.png");
    EXPECT_TRUE(
        samePixels(decoded(platform.photos() / "portrait_retouched.png"), controller->originalImage()));
    EXPECT_EQ(controller->originalImage().pixel(20, 20), kSkin);
}

TEST_F(Comparison, TheSourceIsShownWithoutTheEffect) {
    const Image source = painted(kPhotoSize, [](int, int) { return RGBA32(200, 120, 90, 255); });
    openThroughPanel(makePhoto("colored.png", source));
    selectEffect(5);
    EXPECT_NE(colorOnScreen({30, 40}), QColor(200, 120, 90));
    controller->ShowSource(true);
    EXPECT_EQ(colorOnScreen({30, 40}), QColor(200, 120, 90));
}

TEST_F(Comparison, ARepairThatFinishesMeanwhileIsShownAfterwards) {
    openThroughPanel(makePhoto());
    clickPixel(blemishes()[0]);
    controller->ShowSource(true);
    queues.runAll();
    EXPECT_EQ(colorOnScreen(blemishes()[0]), colorOf(kBlemish));
    controller->ShowSource(false);
    EXPECT_EQ(colorOnScreen(blemishes()[0]), colorOf(kSkin));
}

TEST_F(Comparison, AnotherPhotoHasItsOwnSource) {
    openThroughPanel(makePhoto());
    controller->ShowSource(true);
    openThroughPanel(makePhoto("other.png", filled(kPhotoSize, kBlemish)));
    EXPECT_EQ(colorOnScreen({30, 40}), colorOf(kBlemish));
    controller->ShowSource(false);
    EXPECT_EQ(colorOnScreen({30, 40}), colorOf(kBlemish));
}

TEST_F(Comparison, WithoutAPhotoThereIsNothingToShow) {
    controller->ShowSource(true);
    EXPECT_FALSE(controller->isShowingSource());
    EXPECT_FALSE(imageView->image().has_value());
}

} // namespace
} // namespace complexion
