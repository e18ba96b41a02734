// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace complexion {

/// Prints one line on standard output, at once: the only words that operations on images and files have.
void printLine(std::string_view line);

} // namespace complexion
