// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace complexion::bench {

/// Seconds of a clock that never goes back.
double now();

/// Seconds of processor time that this program has used, on all cores together.
double processorTime();

/// How many seconds `work` takes.
double secondsOf(const std::function<void()>& work);

} // namespace complexion::bench
