// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace complexion {

/// The number of threads that can run at once, at least 1.
int coreCount();

/// Calls `body(i)` once for each i in 0 .. count - 1, on all cores, and returns when all calls have. The
/// calls start in ascending order. Rethrows the exception of a call.
void parallelFor(int count, const std::function<void(int)>& body);

} // namespace complexion
