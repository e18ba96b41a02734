// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace complexion::bench {

/// Seconds of a monotonic clock.
double now();

/// The processor time of this process in seconds, summed over all cores.
double processorTime();

/// The seconds that `work` takes.
double secondsOf(const std::function<void()>& work);

} // namespace complexion::bench
