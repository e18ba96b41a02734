// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/look.h"
#include "tests/fakes/private_home.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    // Wherever it is started, a window of these tests is seen by nobody.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The tests know the system's messages in English, whatever language the user reads.
    qputenv("LC_ALL", "C.UTF-8");
    // Static: the toolkit keeps its settings when it goes, after main.
    static const complexion::PrivateHome home;
    testing::InitGoogleMock(&argc, argv);
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    QApplication application(argc, argv);
    complexion::applyLook(application, 1);
    return RUN_ALL_TESTS();
}
