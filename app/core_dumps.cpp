// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/core_dumps.h"

#include <sys/resource.h>

namespace complexion {

void forgoCoreDumps() {
    // A limit of 0 keeps the kernel from writing a file, but not from piping a dump to a collecting program;
    // one of 1 keeps it from both (core(5); fs/coredump.c). Non-dumpable processes (prctl(2)) would have none
    // either, but could not be served by the desktop's portals, which look at /proc of whoever asks.
    rlimit limit = {};
    if (::getrlimit(RLIMIT_CORE, &limit) != 0 || limit.rlim_max == 0)
        return;
    limit.rlim_cur = 1;
    ::setrlimit(RLIMIT_CORE, &limit);
}

} // namespace complexion
