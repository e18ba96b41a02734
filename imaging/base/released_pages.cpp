// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/released_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace complexion {

void releasePages(Bytes& bytes, std::span<const ByteView> parts) {
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (const ByteView part : parts) {
        const auto first = reinterpret_cast<std::uintptr_t>(part.data());
        const std::uintptr_t begin = (first + page - 1) / page * page;
        const std::uintptr_t end = (first + part.size()) / page * page;
        // Private anonymous memory, as the C library allocates it, becomes zero.
        if (begin < end)
            ::madvise(bytes.data() + (begin - reinterpret_cast<std::uintptr_t>(bytes.data())), end - begin,
                      MADV_DONTNEED);
    }
}

} // namespace complexion
