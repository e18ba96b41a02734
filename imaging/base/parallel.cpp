// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace complexion {

namespace {

/// `work` on so many threads, or on fewer when memory or threads are lacking.
std::vector<std::jthread> startThreads(int count, const std::function<void()>& work) {
    std::vector<std::jthread> threads;
    try {
        threads.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            threads.emplace_back(work);
        return threads;
    } catch (const std::exception&) {
        return threads;
    }
}

} // namespace

int coreCount() {
    return static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
}

void parallelFor(int count, const std::function<void(int)>& body) {
    const int threads = std::min(count, coreCount());
    if (threads <= 1) {
        for (int i = 0; i < count; ++i)
            body(i);
        return;
    }

    std::atomic<int> next = 0;
    std::exception_ptr failure;
    std::mutex failureMutex;
    const auto work = [&] {
        try {
            for (int i = next++; i < count; i = next++)
                body(i);
        } catch (...) {
            const std::scoped_lock lock(failureMutex);
            failure = std::current_exception();
            next = count;
        }
    };
    {
        const std::vector<std::jthread> helpers = startThreads(threads - 1, work);
        work();
    }
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace complexion
