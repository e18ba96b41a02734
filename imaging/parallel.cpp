// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace complexion {

void parallelFor(int count, const std::function<void(int)>& body) {
    const int cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    const int threads = std::min(count, cores);
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
        std::vector<std::jthread> helpers;
        try {
            helpers.reserve(static_cast<std::size_t>(threads));
            for (int i = 1; i < threads; ++i)
                helpers.emplace_back(work);
        } catch (const std::exception&) { // memory or threads are lacking: those that run do it all
        }
        work();
    }
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace complexion
