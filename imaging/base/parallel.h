// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace complexion {

/// The number of threads that can run at once, at least 1.
int coreCount();

/// Calls `body(i)` once for each i in 0 .. count - 1, on all cores, and returns when all calls have. The
/// calls start in ascending order. Rethrows the exception of a call.
void parallelFor(int count, const std::function<void(int)>& body);

/// While it exists, calls of parallelFor by the thread that constructed it leave one core free, if there are
/// several. For work that nobody waits for.
class OneCoreFree {
public:
    OneCoreFree();
    OneCoreFree(const OneCoreFree&) = delete;
    OneCoreFree& operator=(const OneCoreFree&) = delete;
    ~OneCoreFree();
};

} // namespace complexion
