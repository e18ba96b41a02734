// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/private_folder.h"
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

/// An environment variable's value for as long as it lives.
class Environment {
public:
    Environment(const char* name, const std::string& value) : m_name(name) {
        if (const char* before = std::getenv(name))
            m_before = before;
        setenv(name, value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        if (m_before)
            setenv(m_name, m_before->c_str(), 1);
        else
            unsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<std::string> m_before;
};

TEST(PrivateFolder, OnlyTheUserMayEnter) {
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(std::filesystem::status(folder->path()).permissions(), std::filesystem::perms::owner_all);
}

TEST(PrivateFolder, StandsInTheTemporaryDirectoryThatIsSet) {
    const TemporaryFolder parent;
    const Environment variable("TMPDIR", parent.path());
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->path().parent_path(), parent.path());
}

TEST(PrivateFolder, StandsInVarTmpWhenNoneIsSet) {
    const Environment variable("TMPDIR", "");
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->path().parent_path(), "/var/tmp");
}

TEST(PrivateFolder, GoesWithAllThatIsInIt) {
    std::filesystem::path path;
    {
        Result<PrivateFolder> folder = PrivateFolder::create();
        ASSERT_TRUE(folder);
        const PrivateFolder moved = std::move(*folder);
        path = moved.path();
        writeFile(path / "state", "x");
        ASSERT_TRUE(std::filesystem::exists(path / "state"));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(PrivateFolder, EachRunHasItsOwn) {
    const Result<PrivateFolder> one = PrivateFolder::create();
    const Result<PrivateFolder> other = PrivateFolder::create();
    EXPECT_NE(one->path(), other->path());
}

TEST(PrivateFolder, SaysWhyThereIsNone) {
    const Environment variable("TMPDIR", "/nowhere/at/all");
    const Result<PrivateFolder> folder = PrivateFolder::create();
    ASSERT_FALSE(folder);
    EXPECT_THAT(folder.error().message, testing::HasSubstr("/nowhere/at/all"));
}

TEST(SystemPlatform, TheUptimeNeverGoesBack) {
    SystemPlatform platform("/", [] {});
    std::uint64_t last = platform.monotonicNanoseconds();
    for (int i = 0; i < 1000; ++i) {
        const std::uint64_t now = platform.monotonicNanoseconds();
        EXPECT_GE(now, last);
        last = now;
    }
}

TEST(SystemPlatform, TheWallClockTellsSecondsSince1970) {
    SystemPlatform platform("/", [] {});
    EXPECT_NEAR(platform.secondsSince1970(), static_cast<double>(std::time(nullptr)), 2);
}

TEST(SystemPlatform, TerminatesAsItWasTold) {
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

TEST(SystemQueues, MainWorkRunsOnTheMainThreadInOrderAndNotAtOnce) {
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

TEST(SystemQueues, TheEndWaitsForWhatRunsAndDropsWhatIsPending) {
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
