// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
