// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace complexion {

/// Prints one line to standard output and flushes it. Operations on images and files print nothing else.
void printLine(std::string_view line);

} // namespace complexion
