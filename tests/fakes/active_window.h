// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace complexion::test {

/// Activates a visible window, as the window manager would, so that its controls can take the focus.
inline void activate(QWidget& window) {
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

} // namespace complexion::test
