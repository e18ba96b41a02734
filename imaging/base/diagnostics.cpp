// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/diagnostics.h"

#include <cstdio>

namespace complexion {

void printLine(std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

} // namespace complexion
