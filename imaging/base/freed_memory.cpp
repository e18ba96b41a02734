// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/freed_memory.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace complexion {

void keepFreedMemory() {
#if defined(__GLIBC__)
    constexpr int kMaxKept = 8 << 20;   // bytes at the end of a heap
    constexpr int kMinMapped = 4 << 20; // bytes: larger blocks are always given back
    ::mallopt(M_TRIM_THRESHOLD, kMaxKept);
    ::mallopt(M_MMAP_THRESHOLD, kMinMapped);
#endif
}

} // namespace complexion
