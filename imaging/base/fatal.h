// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace complexion {

/// Reports a broken precondition on standard error and aborts. Not for anything that a user or a file can
/// cause.
[[noreturn]] void fatal(std::string_view brokenPrecondition);

} // namespace complexion
