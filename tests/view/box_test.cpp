// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/box.h"

#include <QImage>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace complexion {
namespace {

class CountingView : public QWidget {
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
    void wheelEvent(QWheelEvent*) override { ++presses; }
};

TEST(Box, APressOnItNeverReachesWhatLiesBelow) {
    CountingView below;
    Box box(&below);
    QWidget disabled(&box);
    disabled.setEnabled(false);
    QTest::mouseClick(&box, Qt::LeftButton);
    QTest::mouseDClick(&box, Qt::LeftButton);
    QTest::mouseClick(&disabled, Qt::LeftButton);
    EXPECT_EQ(below.presses, 0);
}

TEST(Box, IsAsOpaqueAsItsAlphaSays) {
    QWidget below;
    below.resize(100, 100);
    QPalette white;
    white.setColor(QPalette::Window, Qt::white);
    white.setColor(QPalette::Base, Qt::black);
    below.setPalette(white);
    Box box(&below);
    box.setGeometry(20, 20, 60, 60);
    const auto shade = [&below] { return below.grab().toImage().pixelColor(50, 50).red(); };
    box.setAlpha(0.8);
    EXPECT_NEAR(shade(), 51, 1);
    box.setAlpha(0);
    EXPECT_EQ(shade(), 255);
    box.setAlpha(1);
    EXPECT_EQ(shade(), 0);
}

TEST(Box, AlphaStaysBetweenNoneAndFull) {
    Box box;
    EXPECT_EQ(box.alpha(), 1);
    box.setAlpha(2);
    EXPECT_EQ(box.alpha(), 1);
    box.setAlpha(-1);
    EXPECT_EQ(box.alpha(), 0);
}

} // namespace
} // namespace complexion
