// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/picture_reading.h"
#include "imaging/reading/reader_execution.h"
#include "tests/fakes/counts_on_abort.h"

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    complexion::serveIfExecutedAsReader(argc, argv, complexion::answerReading);
    complexion::writeCountsOnAbort();
    testing::InitGoogleMock(&argc, argv);
    // Death tests fork, and this process has several threads.
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    return RUN_ALL_TESTS();
}
