// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace complexion::test {

/// Makes a window that is shown the active one, as the window manager does: its controls can have the focus.
inline void activate(QWidget& window) {
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

} // namespace complexion::test
