// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/stopwatch.h"

#include <ctime>

namespace complexion::bench {

namespace {

double read(clockid_t clock) {
    constexpr double kNanosecond = 1e-9;
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * kNanosecond;
}

} // namespace

double now() {
    return read(CLOCK_MONOTONIC);
}

double processorTime() {
    return read(CLOCK_PROCESS_CPUTIME_ID);
}

double secondsOf(const std::function<void()>& work) {
    const double start = now();
    work();
    return now() - start;
}

} // namespace complexion::bench
