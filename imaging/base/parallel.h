// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace complexion {

/// How many threads can run at once.
int coreCount();

/// Calls `body(i)` once for each i in 0 .. count - 1, on all cores, and returns when all are done.
/// The calls are taken in ascending order. An exception of a call is thrown again here.
void parallelFor(int count, const std::function<void(int)>& body);

} // namespace complexion
