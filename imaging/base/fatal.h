// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace complexion {

/// Ends the program because a precondition is broken: names it on standard error and aborts.
/// Not for what a user or a file can cause in normal work.
[[noreturn]] void fatal(std::string_view brokenPrecondition);

} // namespace complexion
