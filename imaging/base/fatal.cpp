// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/fatal.h"

#include <cstdio>
#include <cstdlib>

namespace complexion {

void fatal(std::string_view brokenPrecondition) {
    std::fprintf(stderr, "complexion: fatal: %.*s\n", static_cast<int>(brokenPrecondition.size()),
                 brokenPrecondition.data());
    std::abort();
}

} // namespace complexion
