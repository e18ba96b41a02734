// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/user_folder.h"

#include <cstdlib>

namespace complexion {

namespace {

/// The value of an environment variable that names a folder; empty unless it is an absolute path.
std::filesystem::path folderNamedBy(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value == '/' ? value : "";
}

} // namespace

std::optional<std::filesystem::path> userFolder(const char* variable, const char* fallback) {
    if (std::filesystem::path named = folderNamedBy(variable); !named.empty())
        return named;
    const std::filesystem::path home = folderNamedBy("HOME");
    if (home.empty())
        return std::nullopt;
    return home / fallback;
}

} // namespace complexion
