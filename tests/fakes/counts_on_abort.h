// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>

#ifdef COMPLEXION_COVERAGE
extern "C" void __gcov_dump(); // NOLINT: the compiler's name
#endif

namespace complexion {

/// In a build that counts coverage, has the process write its counts before it aborts. Otherwise, what the
/// child process of a death test executes up to the fatal error would count as not covered.
inline void writeCountsOnAbort() {
#ifdef COMPLEXION_COVERAGE
    std::signal(SIGABRT, [](int) { __gcov_dump(); });
#endif
}

} // namespace complexion
