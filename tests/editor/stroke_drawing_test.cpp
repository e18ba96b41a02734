// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stroke_drawing.h"

#include "tests/editor/aim_fixture.h"

namespace complexion {
namespace {

class StrokeDrawingTest : public AimTest {
protected:
    void SetUp() override {
        AimTest::SetUp();
        outline = new StrokeOutline(imageView);
        drawing = std::make_unique<StrokeDrawing>(*controller, *aim, outline);
    }
    void openForStrokes() {
        open();
        controller->comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    }

    StrokeOutline* outline = nullptr; // owned by the view
    std::unique_ptr<StrokeDrawing> drawing;
};

TEST_F(StrokeDrawingTest, ALongStrokeKeepsItsEndsAndHasABoundedNumberOfPoints) {
    openForStrokes();
    controller->SetEditAreaSize(5);
    const Point first{10, 10};
    Point last;
    for (int i = 0; i < 6000; ++i) {
        last = {10.0 + i % 200, 10.0 + (i * 7) % 150};
        drawing->drawTo(i == 0 ? first : last);
    }
    const QPolygonF& path = outline->path();
    EXPECT_LE(path.size(), static_cast<qsizetype>(kMaxStrokePoints));
    EXPECT_GT(path.size(), static_cast<qsizetype>(kMaxStrokePoints / 4));
    const PointSize size = controller->originalImage().size();
    const Point start = imagePointAt(first, size, imageView->frame());
    EXPECT_EQ(path.first(), QPointF(start.x, size.height - start.y));
}

TEST_F(StrokeDrawingTest, ItsResultIsPreviewedWhileItRests) {
    openForStrokes();
    const PixelPosition spot = blemishes()[0];
    const auto colorOfSpot = [&] {
        QImage screen(root->size(), QImage::Format_RGB32);
        root->render(&screen);
        const Point at = shownAt(spot);
        return screen.pixelColor(static_cast<int>(at.x), screen.height() - static_cast<int>(at.y));
    };
    const QColor blemish = colorOfSpot();
    const Point begin = shownAt({spot.row, spot.column - 6});
    const Point end = shownAt({spot.row, spot.column + 6});
    aim->pointAt(begin);
    drawing->drawTo(begin);
    aim->pointAt(end);
    drawing->drawTo(end);
    queues.runAll();
    restUntilPreview();
    EXPECT_NE(disc->look(), DiscLook::Plain);

    const Point further = shownAt({spot.row + 8, spot.column + 8});
    aim->pointAt(further);
    drawing->drawTo(further);
    EXPECT_FALSE(imageView->isShowingReplacement()) << "of a shorter stroke";
    queues.runAll();
    restUntilPreview();
    const QColor previewed = colorOfSpot();
    EXPECT_NE(previewed, blemish);

    drawing->finish();
    queues.runAll();
    EXPECT_FALSE(imageView->isShowingReplacement());
    EXPECT_EQ(colorOfSpot(), previewed);
}

TEST_F(StrokeDrawingTest, AnotherPhotoCancelsIt) {
    openForStrokes();
    drawing->drawTo({100, 100});
    drawing->drawTo({150, 100});
    EXPECT_TRUE(drawing->isDrawing());
    openThroughPanel(makePhoto("other.png"));
    EXPECT_FALSE(drawing->isDrawing());
    EXPECT_TRUE(outline->path().isEmpty());
    drawing->finish();
    EXPECT_EQ(queues.backgroundCount(), 0U);
}

TEST_F(StrokeDrawingTest, WithoutAPhotoNothingIsDrawn) {
    drawing->drawTo({100, 100});
    drawing->toggleByKeys();
    EXPECT_FALSE(drawing->isDrawing());
}

TEST_F(StrokeDrawingTest, TheOutlineIsPaintedAroundThePath) {
    openForStrokes();
    controller->SetEditAreaSize(8);
    drawing->drawTo({100, 150});
    drawing->drawTo({300, 150});
    QImage picture(outline->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    outline->render(&picture, {}, {}, QWidget::DrawChildren);
    const int middle = picture.height() - 150;
    const double radius = shownLength(*imageView, 8);
    EXPECT_EQ(qAlpha(picture.pixel(200, middle)), 0) << "the skin under the stroke stays visible";
    EXPECT_GT(qAlpha(picture.pixel(200, middle - static_cast<int>(radius))), 100);
    EXPECT_GT(qAlpha(picture.pixel(200, middle + static_cast<int>(radius))), 100);
}

} // namespace
} // namespace complexion
