// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/window_fixture.h"
#include "tests/fakes/active_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPixmapCache>

namespace complexion {
namespace {

/// The boxes over the photo are painted from a cache.
class OverlayPainting : public WindowTest {
protected:
    OverlayPainting() {
        open();
        test::activate(window); // which repaints all controls
        QApplication::processEvents();
    }

    /// Moves the photo, as in the middle of a drag.
    void pan() {
        Frame frame = photo().frame();
        frame.x += 3;
        photo().setFrame(frame);
        QApplication::processEvents();
    }

    QImage shown() { return window.grab().toImage(); }

    /// Checks that `change` is visible, even if the photo moves in the same frame.
    void expectPainted(const char* what, const std::function<void()>& change) {
        const QImage before = box->grab().toImage();
        change();
        pan();
        const QImage after = box->grab().toImage();
        EXPECT_NE(before, after) << what;
        const QImage whole = shown();
        QPixmapCache::clear();
        EXPECT_EQ(whole, shown()) << what;
    }

    QWidget* box = &bar();
};

/// Counts the paintings of all controls in some boxes.
class PaintingCounter : public QObject {
public:
    void watch(const QWidget& box) {
        for (QWidget* control : box.findChildren<QWidget*>())
            control->installEventFilter(this);
    }
    int takeCount() { return std::exchange(m_count, 0); }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        m_count += event->type() == QEvent::Paint;
        return false;
    }

private:
    int m_count = 0;
};

TEST_F(OverlayPainting, NoControlIsPaintedWhileThePhotoMoves) {
    PaintingCounter counter;
    for (const Box* overlay : window.findChildren<Box*>())
        counter.watch(*overlay);
    // Not at first: the toolkit animates controls that have just been enabled.
    const auto isPaintedWithoutControls = [&] {
        counter.takeCount();
        for (int i = 0; i < 5; ++i)
            pan();
        return counter.takeCount() == 0;
    };
    EXPECT_TRUE(QTest::qWaitFor(isPaintedWithoutControls));
}

TEST_F(OverlayPainting, NothingIsPaintedAfterAMovement) {
    class Recorder : public QObject {
    public:
        int paintings = 0;

    protected:
        bool eventFilter(QObject*, QEvent* event) override {
            paintings += event->type() == QEvent::Paint;
            return false;
        }
    };
    Recorder recorder;
    photo().installEventFilter(&recorder);
    const auto isLeftAlone = [&] {
        pan();
        recorder.paintings = 0;
        QTest::qWait(100); // longer than after a zoom
        return recorder.paintings == 0;
    };
    EXPECT_TRUE(QTest::qWaitFor(isLeftAlone));
}

TEST_F(OverlayPainting, OnlyTheScaleIsPaintedWhileThePhotoIsZoomed) {
    controller->OnZoomIn(nullptr); // enables a button
    PaintingCounter scale;
    PaintingCounter others;
    for (const Box* overlay : window.findChildren<Box*>())
        (overlay == window.contents().boxZoom ? scale : others).watch(*overlay);
    const auto isOnlyTheScalePainted = [&] {
        scale.takeCount();
        others.takeCount();
        controller->OnZoomIn(nullptr);
        QApplication::processEvents();
        controller->OnZoomOut(nullptr);
        QApplication::processEvents();
        return others.takeCount() == 0 && scale.takeCount() == 2;
    };
    EXPECT_TRUE(QTest::qWaitFor(isOnlyTheScalePainted));
}

TEST_F(OverlayPainting, AChangeOfASettingIsVisibleWhileThePhotoMoves) {
    expectPainted("field", [&] { bar().textFieldEditAreaSize->setText(QStringLiteral("12")); });
    expectPainted("threshold", [&] { bar().sliderThreshold->setFloatValue(63); });
    expectPainted("repair", [&] { bar().comboRepair->setCurrentIndex(1); });
    expectPainted("repair", [&] { bar().comboRepair->setCurrentIndex(0); });
    expectPainted("autodetection", [&] { bar().checkAutodetectColor->toggle(); });
    expectPainted("color", [&] { bar().colorWellCustomColor->setColor(Qt::green); });
    expectPainted("pipette", [&] { bar().pipette->toggle(); });
    expectPainted("effect", [&] { bar().comboEffect->setCurrentIndex(3); });
    expectPainted("focus", [&] { bar().sliderThreshold->setFocus(); });
    expectPainted("group", [&] { bar().comboEffect->setEnabled(false); });
    expectPainted("alpha", [&] { bar().setAlpha(0.5); });
    expectPainted("size", [&] { window.resize(700, 600); });
    expectPainted("text size", [&] {
        QFont font = QApplication::font();
        font.setPixelSize(font.pixelSize() + 2);
        bar().textFieldEditAreaSize->setFont(font);
    });
}

TEST_F(OverlayPainting, AChangeOfAButtonIsVisibleWhileThePhotoMoves) {
    for (Box* overlay : window.findChildren<Box*>()) {
        auto* const button = overlay->findChild<QAbstractButton*>();
        // Any movement enables the zoom's button again.
        if (overlay == &bar() || overlay == window.contents().boxZoom || !button || !overlay->isVisible())
            continue;
        box = overlay;
        const std::string name = overlay->objectName().toStdString();
        button->setEnabled(true);
        pan();
        expectPainted(name.c_str(), [&] { button->setDown(true); });
        expectPainted(name.c_str(), [&] { button->setDown(false); });
        expectPainted(name.c_str(), [&] { button->setEnabled(false); });
    }
    box = window.contents().boxZoom;
    expectPainted("zoom", [&] { controller->OnZoomIn(nullptr); });
}

} // namespace
} // namespace complexion
