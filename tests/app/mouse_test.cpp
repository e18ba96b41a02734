// SPDX-License-Identifier: GPL-3.0-or-later

// The mouse must not repair where the photo is panned, nor change settings that it scrolls over.
#include "tests/app/photo_input_fixture.h"

namespace complexion {
namespace {

TEST_F(PhotoInputTest, AQuickPanIsNotAClick) {
    turnWheel(8);
    const int distance = QApplication::startDragDistance();
    int repairs = 0;
    for (const int moved : {distance, distance + 3, 60, 200, -distance, -200}) {
        const Frame before = photo().frame();
        drag(Qt::LeftButton, {moved, 0}); // takes no time
        EXPECT_NE(photo().frame(), before) << moved;
        queues.runAll();
        EXPECT_EQ(controller->currenState, repairs) << moved;
    }
    drag(Qt::LeftButton, {distance - 1, 0}); // an unsteady click
    queues.runAll();
    EXPECT_EQ(controller->currenState, ++repairs);
    QTest::mouseClick(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    EXPECT_EQ(controller->currenState, ++repairs);
}

TEST_F(PhotoInputTest, APanThatEndsWhereItBeganIsNotAClick) {
    turnWheel(8);
    QTest::mousePress(&photo(), Qt::LeftButton, {}, centre());
    for (const QPoint by : {QPoint(0, 30), QPoint(0, 0)}) {
        QMouseEvent move(QEvent::MouseMove, centre() + by, photo().mapToGlobal(centre() + by), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(&photo(), &move);
    }
    QTest::mouseRelease(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(PhotoInputTest, AReleaseFarFromItsPressPansEvenWithoutAMoveEvent) {
    turnWheel(8);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
        const Frame before = photo().frame();
        QTest::mousePress(&photo(), button, {}, centre());
        QTest::mouseRelease(&photo(), button, {}, centre() + QPoint(-20, 10));
        EXPECT_EQ(photo().frame(), (Frame{before.x - 20, before.y - 10, before.width, before.height}));
        queues.runAll();
        EXPECT_EQ(controller->currenState, 0);
    }
}

TEST_F(PhotoInputTest, ALeftReleaseWhileAnotherButtonIsDownIsHandled) {
    for (const Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton}) {
        const std::int64_t before = controller->currenState;
        QTest::mousePress(&photo(), Qt::LeftButton, {}, centre());
        QTest::mousePress(&photo(), other, {}, centre());
        QTest::mouseRelease(&photo(), Qt::LeftButton, {}, centre());
        queues.runAll();
        EXPECT_EQ(controller->currenState, before + 1) << "with button " << other;
        QTest::mouseRelease(&photo(), other, {}, centre());
        // No button is down any more, so moving the pointer must not pan.
        const Frame frame = photo().frame();
        turnWheel(1);
        point(centre() + QPoint(40, 40));
        turnWheel(-1);
        EXPECT_EQ(photo().frame(), frame);
    }
}

TEST_F(PhotoInputTest, AButtonThatPansNeverClicks) {
    QTest::mousePress(&photo(), Qt::MiddleButton, {}, centre());
    QTest::mousePress(&photo(), Qt::LeftButton, {}, centre());
    QTest::mouseRelease(&photo(), Qt::MiddleButton, {}, centre());
    QTest::mouseRelease(&photo(), Qt::LeftButton, {}, centre());
    queues.runAll();
    EXPECT_EQ(controller->currenState, 0);
}

/// A photo of skin with a scratch across its middle.
Image scratched() {
    return painted({300, 200}, [](int row, int column) {
        return std::abs(row - 100) <= 1
                   ? RGBA32(90, 60, 50, 255)
                   : RGBA32(static_cast<std::uint8_t>(200 + (3 * row + column) % 5), 160, 140, 255);
    });
}

class StrokeInputTest : public PhotoInputTest {
protected:
    StrokeInputTest() {
        const std::filesystem::path path = platform.photos() / "scratched.png";
        EXPECT_TRUE(ImageTools::SaveImage(scratched(), path, "png"));
        controller->OpenFile(path);
        bar().comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
        controller->SetEditAreaSize(8);
    }

    QPoint shownAt(int row, int column) {
        return photo().pixelsToWidget().map(QPointF(column + 0.5, row + 0.5)).toPoint();
    }
    void drawAlongTheScratch() {
        QTest::mousePress(&photo(), Qt::LeftButton, Qt::ShiftModifier, shownAt(100, 100));
        for (int column = 110; column <= 200; column += 10) {
            const QPoint at = shownAt(100, column);
            QMouseEvent move(QEvent::MouseMove, at, photo().mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                             Qt::ShiftModifier);
            QApplication::sendEvent(&photo(), &move);
        }
    }
    RGBA32 middle() const { return controller->originalImage().pixel(100, 150); }
};

TEST_F(StrokeInputTest, ADragWithShiftRepairsAlongItInOneStep) {
    const Frame frame = photo().frame();
    const RGBA32 scratch = middle();
    drawAlongTheScratch();
    EXPECT_FALSE(window.strokeOutline().path().isEmpty());
    EXPECT_TRUE(window.strokeOutline().isVisible());
    QTest::mouseRelease(&photo(), Qt::LeftButton, Qt::ShiftModifier, shownAt(100, 200));
    EXPECT_TRUE(window.strokeOutline().path().isEmpty());
    queues.runAll();
    EXPECT_EQ(photo().frame(), frame) << "no pan";
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_NE(middle(), scratch);
    EXPECT_EQ(controller->originalImage().pixel(100, 20), scratch);
    controller->OnUndo(nullptr);
    EXPECT_EQ(middle(), scratch);
}

TEST_F(StrokeInputTest, AClickWithShiftIsAClick) {
    QTest::mouseClick(&photo(), Qt::LeftButton, Qt::ShiftModifier, shownAt(40, 150));
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_TRUE(window.strokeOutline().path().isEmpty());
}

TEST_F(StrokeInputTest, WithFlatColorAStrokeIsRefusedWithItsReason) {
    bar().comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::FlatColor));
    QStringList notices;
    QObject::connect(controller.get(), &ViewController::noticed, controller.get(),
                     [&](const QString& text) { notices << text; });
    drawAlongTheScratch();
    QTest::mouseRelease(&photo(), Qt::LeftButton, Qt::ShiftModifier, shownAt(100, 200));
    queues.runAll();
    EXPECT_EQ(notices, QStringList(QStringLiteral("Strokes need the natural repair.")));
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(StrokeInputTest, AWideStrokeIsRefusedWithItsReason) {
    controller->SetEditAreaSize(kMaxStrokeRadius + 1);
    QStringList notices;
    QObject::connect(controller.get(), &ViewController::noticed, controller.get(),
                     [&](const QString& text) { notices << text; });
    drawAlongTheScratch();
    QTest::mouseRelease(&photo(), Qt::LeftButton, Qt::ShiftModifier, shownAt(100, 200));
    queues.runAll();
    EXPECT_EQ(notices, QStringList(QStringLiteral("Strokes need an edit area of at most 64 pixels.")));
    EXPECT_EQ(controller->currenState, 0);
}

TEST_F(StrokeInputTest, EscapeCancelsIt) {
    drawAlongTheScratch();
    QTest::keyClick(&photo(), Qt::Key_Escape);
    EXPECT_TRUE(window.strokeOutline().path().isEmpty());
}

TEST_F(StrokeInputTest, TheKeysDrawIt) {
    const RGBA32 scratch = middle();
    point(shownAt(100, 150));
    QTest::keyClick(&photo(), Qt::Key_Left, Qt::ShiftModifier);
    const std::int64_t away = 100 - disc().place()->row;
    for (int i = 0; i < std::abs(away); ++i)
        QTest::keyClick(&photo(), away > 0 ? Qt::Key_Down : Qt::Key_Up);
    QTest::keyClick(&photo(), Qt::Key_Return, Qt::ShiftModifier);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&photo(), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(window.strokeOutline().path().size(), 4);
    QTest::keyClick(&photo(), Qt::Key_Return, Qt::ShiftModifier);
    queues.runAll();
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_NE(middle(), scratch);
}

TEST_F(PhotoInputTest, AltAndTheWheelKeepTheFocus) {
    QTest::keyPress(&photo(), Qt::Key_Alt, Qt::AltModifier);
    turnWheel(1, Qt::AltModifier, {400, 200}, /*sideways*/ true);
    QTest::keyRelease(&photo(), Qt::Key_Alt);
    EXPECT_EQ(window.focusWidget(), &photo());
    // Alt alone opens the menus.
    QTest::keyPress(&photo(), Qt::Key_Alt, Qt::AltModifier);
    QTest::keyRelease(&photo(), Qt::Key_Alt);
    EXPECT_NE(window.focusWidget(), &photo());
}

TEST_F(PhotoInputTest, TheWheelOverAControlWithoutTheFocusChangesNothing) {
    const auto turnOver = [](QWidget* control, int notches) {
        const QPoint at = control->rect().center();
        QWheelEvent event(at, control->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(control, &event);
    };
    const std::vector<QWidget*> controls = {bar().textFieldEditAreaSize, bar().stepperEditAreaSize,
                                            bar().sliderThreshold, bar().comboRepair, bar().comboEffect};
    const auto values = [this] {
        return std::vector<double>{
            double(bar().stepperEditAreaSize->integerValue()), bar().sliderThreshold->floatValue(),
            double(bar().comboRepair->currentIndex()), double(bar().comboEffect->currentIndex())};
    };
    const std::vector<double> before = values();
    for (QWidget* control : controls) {
        EXPECT_FALSE(control->focusPolicy() & ~Qt::StrongFocus) << control->objectName().toStdString();
        turnOver(control, -1);
        EXPECT_EQ(values(), before) << control->objectName().toStdString();
        EXPECT_TRUE(photo().hasFocus());
    }
    EXPECT_EQ(zoom(), 1);
    for (QWidget* control : controls) {
        (control == bar().stepperEditAreaSize ? bar().textFieldEditAreaSize : control)->setFocus();
        const std::vector<double> start = values();
        turnOver(control, -1);
        EXPECT_NE(values(), start) << control->objectName().toStdString();
    }
}

TEST_F(PhotoInputTest, AClickBetweenTheButtonsOfTheRailRepairsNothing) {
    const WindowContents& contents = window.contents();
    const std::vector<Box*> boxes = {contents.boxSelectImage, contents.boxResetImage, contents.boxSaveImage,
                                     contents.boxUndo,        contents.boxRedo,       contents.boxZoomIn,
                                     contents.boxZoomOut,     contents.boxResetZoom,  contents.boxZoom,
                                     contents.boxCompare};
    for (std::size_t i = 1; i < boxes.size(); ++i) {
        const QRect above = boxes[i - 1]->geometry();
        const QRect below = boxes[i]->geometry();
        ASSERT_GT(below.top(), above.bottom() + 1);
        const QPoint gap(above.center().x(), (above.bottom() + below.top()) / 2);
        QWidget* const hit = window.rootView().childAt(gap);
        ASSERT_TRUE(hit);
        QTest::mouseClick(hit, Qt::LeftButton, {}, hit->mapFrom(&window.rootView(), gap));
        queues.runAll();
        EXPECT_EQ(controller->currenState, 0) << "above box " << i;
    }
    EXPECT_EQ(zoom(), 1);
}

} // namespace
} // namespace complexion
