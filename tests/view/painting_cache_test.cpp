// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/painting_cache.h"

#include <QApplication>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPixmapCache>

#include <gtest/gtest.h>

namespace complexion {
namespace {

/// Counts its paintings.
class CountedLabel : public QLabel {
public:
    using QLabel::QLabel;
    int takePaintings() { return std::exchange(m_paintings, 0); }

protected:
    void paintEvent(QPaintEvent* event) override {
        ++m_paintings;
        QLabel::paintEvent(event);
    }

private:
    int m_paintings = 0;
};

/// A panel with a label over a coloured root.
class PaintingCacheTest : public testing::Test {
protected:
    PaintingCacheTest() {
        root.resize(200, 100);
        root.setAutoFillBackground(true);
        panel.setGeometry(20, 10, 120, 60);
        label.setGeometry(10, 10, 100, 40);
        new PaintingCache(&panel);
        root.show();
        QApplication::processEvents();
        label.takePaintings();
    }

    /// Repaints everything below the panel, as if a photo moved there.
    void moveWhatIsBelow() {
        root.update();
        QApplication::processEvents();
    }

    QImage shown() { return root.grab().toImage(); }
    QImage paintedAgain() {
        QPixmapCache::clear();
        return shown();
    }

    QWidget root;
    QWidget panel{&root};
    CountedLabel label{QStringLiteral("before"), &panel};
};

TEST_F(PaintingCacheTest, NothingIsPaintedAgainWhileOnlyTheBackgroundMoves) {
    for (int i = 0; i < 3; ++i)
        moveWhatIsBelow();
    EXPECT_EQ(label.takePaintings(), 0);
    EXPECT_EQ(shown(), paintedAgain());
}

TEST_F(PaintingCacheTest, AChangeDuringAMovementIsPaintedOnce) {
    const QImage before = shown();
    label.setText(QStringLiteral("after"));
    moveWhatIsBelow();
    EXPECT_EQ(label.takePaintings(), 1);
    moveWhatIsBelow();
    EXPECT_EQ(label.takePaintings(), 0);
    EXPECT_NE(shown(), before);
    EXPECT_EQ(shown(), paintedAgain());
}

TEST_F(PaintingCacheTest, ChangedGeometryIsPainted) {
    panel.resize(140, 80);
    label.move(30, 20);
    moveWhatIsBelow();
    EXPECT_EQ(shown(), paintedAgain());
    panel.move(5, 5);
    moveWhatIsBelow();
    EXPECT_EQ(shown(), paintedAgain());
}

TEST_F(PaintingCacheTest, ChangesWhileHiddenAreShownAfterwards) {
    panel.hide();
    label.setText(QStringLiteral("after"));
    panel.show();
    moveWhatIsBelow();
    EXPECT_EQ(shown(), paintedAgain());
    root.hide();
    label.setText(QStringLiteral("before"));
    root.show();
    moveWhatIsBelow();
    EXPECT_EQ(shown(), paintedAgain());
}

TEST_F(PaintingCacheTest, IsSharpOnEveryScreen) {
    for (const double ratio : {1.0, 2.0}) {
        const auto paintedBy = [&] {
            QImage screen(root.size() * ratio, QImage::Format_RGB32);
            screen.setDevicePixelRatio(ratio);
            root.render(&screen);
            return screen;
        };
        const QImage cached = paintedBy();
        panel.graphicsEffect()->setEnabled(false);
        EXPECT_EQ(cached, paintedBy()) << ratio; // opaque text on nothing: the same pixels
        panel.graphicsEffect()->setEnabled(true);
    }
}

} // namespace
} // namespace complexion
