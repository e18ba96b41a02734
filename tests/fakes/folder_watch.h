// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace complexion {

/// Watches which files come and go in a folder, in order.
class FolderWatch {
public:
    explicit FolderWatch(const std::filesystem::path& folder);
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;
    ~FolderWatch();

    /// "+NAME" for a file that appeared under its name, "-NAME" for one that was deleted, since the last
    /// call. Temporary files of an atomic write do not count.
    std::vector<std::string> events();

private:
    int m_inotify = -1;
};

} // namespace complexion
