// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"

#include "imaging/base/task_recording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace complexion {

namespace {

/// Counts the calls with each index.
class CallCounts {
public:
    explicit CallCounts(int count) : m_calls(static_cast<std::size_t>(count)) {}
    void add(int index) { ++m_calls[static_cast<std::size_t>(index)]; }
    bool areAllOne() const {
        return std::ranges::all_of(m_calls, [](const std::atomic<int>& calls) { return calls == 1; });
    }

private:
    std::vector<std::atomic<int>> m_calls;
};

} // namespace

TEST(Parallel, EveryIndexIsCalledOnce) {
    for (const int count : {0, 1, 2, 3, 7, 1000}) {
        CallCounts calls(count);
        parallelFor(count, [&](int index) { calls.add(index); });
        EXPECT_TRUE(calls.areAllOne()) << count;
    }
}

TEST(Parallel, WorkThatNobodyWaitsForLeavesACoreFree) {
    const auto threadsOf = [] {
        std::mutex mutex;
        std::set<std::thread::id> threads;
        parallelFor(200, [&](int) {
            std::this_thread::sleep_for(std::chrono::microseconds(200));
            const std::scoped_lock lock(mutex);
            threads.insert(std::this_thread::get_id());
        });
        return static_cast<int>(threads.size());
    };
    {
        const OneCoreFree free;
        EXPECT_LE(threadsOf(), std::max(1, coreCount() - 1));
    }
    EXPECT_LE(threadsOf(), coreCount());
    if (coreCount() > 1) {
        EXPECT_GT(threadsOf(), 1);
    }
}

TEST(Parallel, ARecordingHasTheTimeOfEachTask) {
    const auto work = [](double seconds) {
        const double begin = TaskRecording::processorSeconds();
        while (TaskRecording::processorSeconds() - begin < seconds) {
        }
    };
    std::set<std::thread::id> threads;
    const TaskRecording recording;
    parallelFor(3, [&](int index) {
        threads.insert(std::this_thread::get_id());
        work(index == 1 ? 0.02 : 0);
        parallelFor(5, [](int) {}); // part of the task
    });
    parallelFor(0, [](int) {});
    parallelFor(1, [&](int) { work(0.01); });
    EXPECT_EQ(threads, std::set{std::this_thread::get_id()});
    ASSERT_EQ(recording.calls().size(), 3U);
    ASSERT_EQ(recording.calls()[0].size(), 3U);
    EXPECT_GE(recording.calls()[0][1], 0.02);
    EXPECT_LT(recording.calls()[0][0], 0.02);
    EXPECT_TRUE(recording.calls()[1].empty());
    EXPECT_GE(recording.calls()[2][0], 0.01);
}

TEST(Parallel, CallsMayBeNested) {
    constexpr int kOuter = 20;
    constexpr int kInner = 30;
    CallCounts calls(kOuter * kInner);
    parallelFor(kOuter, [&](int outer) {
        parallelFor(kInner, [&](int inner) { calls.add(outer * kInner + inner); });
    });
    EXPECT_TRUE(calls.areAllOne());
}

TEST(Parallel, AnExceptionReachesTheCallerAndStopsTheLoop) {
    for (const int culprit : {0, 1, 500}) {
        std::atomic<int> calls = 0;
        const auto body = [&](int index) {
            ++calls;
            if (index == culprit)
                throw std::runtime_error("broken");
        };
        EXPECT_THROW(parallelFor(1'000'000, body), std::runtime_error);
        EXPECT_LT(calls, 1'000'000) << culprit;
    }
    CallCounts calls(100);
    parallelFor(100, [&](int index) { calls.add(index); });
    EXPECT_TRUE(calls.areAllOne());
}

TEST(Parallel, AnExceptionOfANestedCallReachesTheOutermostCaller) {
    const auto nested = [](int) {
        parallelFor(10, [](int index) {
            if (index == 5)
                throw std::runtime_error("broken");
        });
    };
    EXPECT_THROW(parallelFor(10, nested), std::runtime_error);
}

TEST(Parallel, SeveralThreadsMayCallAtOnce) {
    constexpr int kCallers = 4;
    constexpr int kRounds = 200;
    std::array<std::atomic<int>, kCallers> sums = {};
    {
        std::vector<std::jthread> callers;
        callers.reserve(sums.size());
        for (std::atomic<int>& sum : sums)
            callers.emplace_back([&sum] {
                for (int round = 0; round < kRounds; ++round)
                    parallelFor(10, [&sum](int index) { sum += index; });
            });
    }
    for (const std::atomic<int>& sum : sums)
        EXPECT_EQ(sum, kRounds * 45);
}

// A forked process has only the thread that called fork.
TEST(Parallel, AForkedChildCanCall) {
    parallelFor(10, [](int) {}); // starts the threads
    const pid_t child = fork();
    if (child == 0) {
        std::atomic<int> sum = 0;
        parallelFor(10, [&sum](int index) { sum += index; });
        _exit(sum == 45 ? 0 : 1);
    }
    ASSERT_GT(child, 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

} // namespace complexion
