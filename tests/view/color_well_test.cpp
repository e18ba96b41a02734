// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/color_well.h"

#include <QApplication>
#include <QColorDialog>
#include <QSignalSpy>
#include <QTimer>

#include <gtest/gtest.h>

namespace complexion {
namespace {

/// Clicks the well and, in the dialog that opens, takes `color` or cancels.
void choose(ColorWell& well, const QColor& color, bool accept) {
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog);
        dialog->setCurrentColor(color);
        accept ? dialog->accept() : dialog->reject();
    });
    well.click();
}

TEST(ColorWell, AClickChoosesAColor) {
    ColorWell well;
    QSignalSpy changed(&well, &ColorWell::colorChanged);
    choose(well, QColor(200, 150, 120), true);
    EXPECT_EQ(well.color(), QColor(200, 150, 120));
    EXPECT_EQ(changed.count(), 1);
}

TEST(ColorWell, CancellingKeepsTheColor) {
    ColorWell well;
    well.setColor(QColor(10, 20, 30));
    QSignalSpy changed(&well, &ColorWell::colorChanged);
    choose(well, QColor(200, 150, 120), false);
    EXPECT_EQ(well.color(), QColor(10, 20, 30));
    EXPECT_EQ(changed.count(), 0);
}

TEST(ColorWell, TheSameColorAgainIsNoChange) {
    ColorWell well;
    well.setColor(Qt::red);
    QSignalSpy changed(&well, &ColorWell::colorChanged);
    well.setColor(Qt::red);
    EXPECT_EQ(changed.count(), 0);
}

TEST(ColorWell, ShowsItsColor) {
    ColorWell well;
    well.setColor(QColor(200, 150, 120));
    well.resize(well.sizeHint());
    EXPECT_EQ(well.grab().toImage().pixelColor(well.rect().center()), QColor(200, 150, 120));
}

TEST(ColorWell, TellsItsColorToAScreenReader) {
    ColorWell well;
    well.setColor(QColor(200, 150, 120));
    EXPECT_EQ(well.accessibleDescription(), QStringLiteral("#c89678"));
}

} // namespace
} // namespace complexion
