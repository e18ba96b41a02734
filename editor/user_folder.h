// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>

namespace complexion {

/// One of the user's base folders (XDG Base Directory Specification): the value of the environment variable
/// `variable`, otherwise `fallback` in the home folder. Nothing if neither is an absolute path.
std::optional<std::filesystem::path> userFolder(const char* variable, const char* fallback);

} // namespace complexion
