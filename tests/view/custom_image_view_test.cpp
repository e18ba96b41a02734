// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/custom_image_view.h"

#include "imaging/screen_colors.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>

#include <array>

namespace complexion {

namespace {

/// A view of 80 by 60 points with a frame of the same size, on a coloured root view.
class Painting : public testing::Test {
protected:
    Painting() {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(1, 2, 3));
        root.setPalette(palette);
        root.setAutoFillBackground(true);
        root.resize(80, 60);
        view = new CustomImageView(&root);
        view->setGeometry(root.rect());
        view->setFrame({0, 0, 80, 60});
    }

    QColor at(int x, int y) { return root.grab().toImage().pixelColor(x, y); }

    /// The left half is red, the right half green, and the lower half darker.
    static Image halves(PixelSize size) {
        return painted(size, [size](int row, int column) {
            const auto level = static_cast<std::uint8_t>(row < size.height / 2 ? 250 : 100);
            return column < size.width / 2 ? RGBA32(level, 0, 0, 255) : RGBA32(0, level, 0, 255);
        });
    }

    const QColor background{1, 2, 3};
    const QColor red{250, 0, 0};
    const QColor green{0, 250, 0};
    const QColor darkRed{100, 0, 0};
    const QColor darkGreen{0, 100, 0};
    QWidget root;
    CustomImageView* view = nullptr;
};

TEST_F(Painting, WithoutAnImageNothingIsPainted) {
    EXPECT_EQ(at(40, 30), background);
}

TEST_F(Painting, ABackgroundColourIsPaintedAroundTheImageAndWithoutOne) {
    view->setBackground(QColor(4, 5, 6));
    EXPECT_EQ(at(40, 30), QColor(4, 5, 6));
    view->setImage(halves({30, 60}));
    EXPECT_EQ(at(2, 30), QColor(4, 5, 6));
    EXPECT_EQ(at(30, 10), red);
}

TEST_F(Painting, AtOnePointPerPixelPixelsAreExact) {
    const Image image = painted({80, 60}, [](int row, int column) {
        return RGBA32(static_cast<std::uint8_t>(row * 4), static_cast<std::uint8_t>(column * 3),
                      static_cast<std::uint8_t>((row * 31 + column * 17) % 256), 255);
    });
    view->setImage(image);
    const QImage picture = root.grab().toImage();
    ASSERT_EQ(picture.size(), QSize(80, 60));
    for (int row = 0; row < 60; ++row)
        for (int column = 0; column < 80; ++column) {
            const RGBA32 pixel = image.pixel(row, column);
            ASSERT_EQ(picture.pixelColor(column, row), QColor(pixel.red(), pixel.green(), pixel.blue()))
                << row << ", " << column;
        }
}

TEST_F(Painting, IsInTheColorsOfTheMonitor) {
    const ColorProfile monitor = monitorProfile(monitorOfPrimaries());
    for (const ColorProfile& profile : {ColorProfile(), ColorProfile::fromIcc(wideProfile())}) {
        const Image image = halves({80, 60}).withProfile(profile);
        view->setImage(image);
        view->setMonitor({});
        const QColor before = at(20, 10);
        view->setMonitor(monitor); // also where pixels are painted already
        std::array<RGBA32, 1> expected = {RGBA32(250, 0, 0, 255)};
        screenTransform(profile, monitor)->apply(expected);
        EXPECT_EQ(at(20, 10), QColor(expected[0].red(), expected[0].green(), expected[0].blue()));
        EXPECT_NE(at(20, 10), before);
        EXPECT_TRUE(view->image()->isSameObject(image));
        view->setMonitor({});
        EXPECT_EQ(at(20, 10), before);
    }
}

TEST_F(Painting, TheImageIsFittedIntoTheFrame) {
    view->setImage(halves({40, 30}));
    EXPECT_EQ(at(20, 15), red);
    EXPECT_EQ(at(60, 15), green);
    EXPECT_EQ(at(20, 45), darkRed);
    EXPECT_EQ(at(60, 45), darkGreen);
    EXPECT_EQ(at(0, 0), red);
    EXPECT_EQ(at(79, 59), darkGreen);
}

TEST_F(Painting, MarginsShowTheBackground) {
    view->setImage(halves({40, 10})); // 80 by 20 points, with margins of 20 above and below
    EXPECT_EQ(at(20, 18), background);
    EXPECT_EQ(at(20, 22), red);
    EXPECT_EQ(at(60, 37), darkGreen);
    EXPECT_EQ(at(60, 42), background);

    view->setImage(halves({10, 30})); // 20 by 60 points, with margins of 30 left and right
    EXPECT_EQ(at(28, 15), background);
    EXPECT_EQ(at(32, 15), red);
    EXPECT_EQ(at(47, 15), green);
    EXPECT_EQ(at(52, 15), background);
}

TEST_F(Painting, TheFramesOriginIsAtTheBottomLeft) {
    view->setFrame({10, 5, 40, 30}); // columns 10 to 50, rows 25 to 55
    view->setImage(halves({40, 30}));
    EXPECT_EQ(at(9, 30), background);
    EXPECT_EQ(at(10, 25), red);
    EXPECT_EQ(at(12, 23), background);
    EXPECT_EQ(at(48, 53), darkGreen);
    EXPECT_EQ(at(48, 56), background);
    EXPECT_EQ(at(51, 30), background);
}

TEST_F(Painting, AZoomedFrameShowsItsPart) {
    // Four times the size of the view, with the same centre.
    view->setFrame({-120, -90, 320, 240});
    view->setImage(halves({80, 60}));
    EXPECT_EQ(at(20, 15), red);
    EXPECT_EQ(at(60, 15), green);
    EXPECT_EQ(at(20, 45), darkRed);
    EXPECT_EQ(at(60, 45), darkGreen);
    // Only the top right quarter.
    view->setFrame({-240, -180, 320, 240});
    EXPECT_EQ(at(5, 5), green);
    EXPECT_EQ(at(5, 55), green);
    EXPECT_EQ(at(75, 55), green);
}

TEST_F(Painting, ZoomedInFarAPixelIsASquareOfItsColor) {
    view->setFrame({0, 0, 800, 600});
    view->setImage(
        painted({80, 60}, [](int row, int column) { return (row + column) % 2 ? kSkin : kBlemish; }));
    // Ten points per pixel, with the image's bottom left corner visible.
    const QColor skin(180, 180, 180);
    const QColor dark(40, 40, 40);
    EXPECT_EQ(at(5, 55), skin); // row 59, column 0
    EXPECT_EQ(at(15, 55), dark);
    EXPECT_EQ(at(5, 45), dark);
    EXPECT_EQ(at(75, 5), skin); // row 54, column 7
}

TEST_F(Painting, ALargePhotoIsScaledDownWithoutAShift) {
    view->setImage(halves({1600, 1200}));
    EXPECT_EQ(at(36, 26), red);
    EXPECT_EQ(at(43, 26), green);
    EXPECT_EQ(at(36, 33), darkRed);
    EXPECT_EQ(at(43, 33), darkGreen);
    EXPECT_EQ(at(0, 0), red);
    EXPECT_EQ(at(79, 59), darkGreen);
}

TEST_F(Painting, FineDetailOfALargePhotoIsAveraged) {
    view->setImage(
        painted({640, 480}, [](int row, int column) { return (row + column) % 2 ? grey(200) : grey(100); }));
    const QImage picture = root.grab().toImage();
    for (int y = 5; y < 55; y += 5)
        for (int x = 5; x < 75; x += 5)
            EXPECT_NEAR(picture.pixelColor(x, y).red(), 150, 3) << x << ", " << y;
}

TEST_F(Painting, TransparentPixelsShowTheBackground) {
    view->setImage(painted({80, 60}, [](int, int column) {
        return column < 40 ? RGBA32(0, 0, 0, 0) : RGBA32(100, 0, 0, 128); // premultiplied
    }));
    EXPECT_EQ(at(20, 30), background);
    EXPECT_NEAR(at(60, 30).red(), 100, 1);
    EXPECT_NEAR(at(60, 30).green(), 1, 1);
}

TEST_F(Painting, AnImageIsFittedByItsSizeInPoints) {
    view->setImage(halves({80, 60}).withSize({60, 60})); // shown 60 points wide, with margins of 10
    EXPECT_EQ(at(8, 20), background);
    EXPECT_EQ(at(12, 20), red);
    EXPECT_EQ(at(67, 20), green);
    EXPECT_EQ(at(72, 20), background);
}

TEST_F(Painting, TheImageCanBeReplacedAndRemoved) {
    view->setImage(filled({80, 60}, kSkin));
    EXPECT_EQ(at(40, 30), QColor(180, 180, 180));
    view->setImage(filled({80, 60}, kBlemish));
    EXPECT_EQ(at(40, 30), QColor(40, 40, 40));
    view->setImage(std::nullopt);
    EXPECT_EQ(at(40, 30), background);
}

TEST_F(Painting, AnImageWithoutPixelsPaintsNothing) {
    view->setImage(Image());
    EXPECT_EQ(at(40, 30), background);
    view->setImage(Image::empty({40, 30}));
    EXPECT_EQ(at(40, 30), background);
}

TEST_F(Painting, AnEmptyFramePaintsNothing) {
    view->setImage(halves({80, 60}));
    view->setFrame({0, 0, 0, 0});
    EXPECT_EQ(at(40, 30), background);
}

TEST_F(Painting, OnlyAChangedFrameIsAnnounced) {
    int announced = 0;
    QObject::connect(view, &CustomImageView::frameChanged, view, [&] { ++announced; });
    view->setFrame({1, 2, 3, 4});
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(view->frame(), (Frame{1, 2, 3, 4}));
    view->setFrame({1, 2, 3, 4});
    EXPECT_EQ(announced, 1);
}

/// Counts the mouse presses that reach the widget.
class PressCounter : public QWidget {
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
};

TEST(Mouse, PressesOnTheViewReachTheRootView) {
    PressCounter root;
    root.resize(80, 60);
    CustomImageView view(&root);
    view.setGeometry(root.rect());
    QMouseEvent press(QEvent::MouseButtonPress, {5, 5}, {5, 5}, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &press);
    EXPECT_EQ(root.presses, 1);
}

class Repainting : public Painting {
protected:
    /// Shows `first`, then `next`, and returns the region that is repainted for `next`.
    QRegion repaintedRegion(const Image& first, const Image& next) {
        class Recorder : public QObject {
        public:
            QRegion region;

        protected:
            bool eventFilter(QObject*, QEvent* event) override {
                if (event->type() == QEvent::Paint)
                    region += static_cast<QPaintEvent*>(event)->region();
                return false;
            }
        };
        root.show();
        view->setImage(first);
        QApplication::processEvents();
        Recorder recorder;
        view->installEventFilter(&recorder);
        view->setImage(next);
        QApplication::processEvents();
        view->removeEventFilter(&recorder);
        return recorder.region;
    }
};

TEST_F(Repainting, IsLimitedToTheChangedTile) {
    root.resize(800, 600);
    view->setGeometry(root.rect());
    view->setFrame({0, 0, 800, 600});
    const Image first = filled({800, 600}, kSkin);
    auto bands = first.bands();
    // The pixel at (row 300, column 500): band 4, tile 1 of it.
    const auto band = bands[4];
    auto tiles = band->tiles();
    PixelBlock block = PixelBlock::uninitialized(tiles[1]->block().size);
    std::fill_n(block.row(0), block.size.area(), kSkin);
    block.row(300 - 4 * Tile::kHeight)[500 - Tile::kWidth] = kBlemish;
    tiles[1] = std::make_shared<const Tile>(std::move(block));
    bands[4] = std::make_shared<const Band>(tiles);
    const QRegion region = repaintedRegion(first, first.withBands(bands));
    EXPECT_TRUE(region.contains(QPoint(500, 300)));
    EXPECT_LT(region.boundingRect().width(), 300);
    EXPECT_LT(region.boundingRect().height(), 100);
    EXPECT_EQ(at(500, 300), QColor(40, 40, 40));
}

TEST_F(Repainting, IsNotDoneForTheSameImage) {
    const Image image = halves({80, 60});
    EXPECT_TRUE(repaintedRegion(image, image).isEmpty());
}

} // namespace

} // namespace complexion
