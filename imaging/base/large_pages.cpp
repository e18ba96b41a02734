// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/large_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace complexion {

void useLargePages(void* first, std::size_t length) {
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(first) % page) % page;
    if (length > before)
        ::madvise(static_cast<std::uint8_t*>(first) + before, (length - before) / page * page, MADV_HUGEPAGE);
}

} // namespace complexion
