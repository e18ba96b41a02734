// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/counts_on_abort.h"
#include "tests/fakes/private_home.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    // No test opens a visible window, even on a desktop.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The tests expect the system's messages in English.
    qputenv("LC_ALL", "C.UTF-8");
    // Static, as the toolkit saves its settings at exit, after main.
    static const complexion::PrivateHome home;
    complexion::writeCountsOnAbort();
    testing::InitGoogleMock(&argc, argv);
    // Death tests fork, and this process has several threads.
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
