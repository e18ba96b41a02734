// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system_platform.h"
#include "app/system_queues.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>

namespace complexion {
namespace {

TEST(SystemPlatform, TheUptimeIsMonotonic) {
    SystemPlatform platform("/", [] {});
    std::uint64_t last = platform.monotonicNanoseconds();
    for (int i = 0; i < 1000; ++i) {
        const std::uint64_t now = platform.monotonicNanoseconds();
        EXPECT_GE(now, last);
        last = now;
    }
}

TEST(SystemPlatform, TheWallClockIsInSecondsSince1970) {
    SystemPlatform platform("/", [] {});
    EXPECT_NEAR(platform.secondsSince1970(), static_cast<double>(std::time(nullptr)), 2);
}

TEST(SystemPlatform, TerminateCallsTheGivenFunction) {
    int terminations = 0;
    SystemPlatform platform("/", [&terminations] { ++terminations; });
    platform.terminate();
    EXPECT_EQ(terminations, 1);
}

TEST(SystemQueues, BackgroundWorkRunsOnAnotherThread) {
    SystemQueues queues;
    QSemaphore done;
    QThread* thread = nullptr;
    queues.submitBackground([&] {
        thread = QThread::currentThread();
        done.release();
    });
    done.acquire();
    EXPECT_NE(thread, QThread::currentThread());
}

TEST(SystemQueues, MainWorkRunsLaterOnTheMainThreadInOrder) {
    SystemQueues queues;
    std::vector<int> order;
    queues.submitBackground([&] {
        queues.submitMain([&] { order.push_back(QThread::currentThread() == qApp->thread() ? 1 : -1); });
        queues.submitMain([&] { order.push_back(2); });
    });
    queues.finish();
    EXPECT_TRUE(order.empty());
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST(SystemQueues, TheDestructorWaitsForRunningTasksAndDropsPendingOnes) {
    const auto keptAlive = std::make_shared<int>(0);
    bool finished = false;
    bool ranOnMain = false;
    {
        SystemQueues queues;
        QSemaphore started;
        queues.submitBackground([&, keptAlive] {
            started.release();
            queues.submitMain([&ranOnMain, keptAlive] { ranOnMain = true; });
            finished = true;
        });
        started.acquire();
    }
    EXPECT_TRUE(finished);
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(ranOnMain);
    EXPECT_EQ(keptAlive.use_count(), 1);
}

} // namespace
} // namespace complexion
