// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace complexion {

/// Records which files are created and deleted in a folder, in order.
class FolderWatch {
public:
    explicit FolderWatch(const std::filesystem::path& folder);
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;
    ~FolderWatch();

    /// The events since the last call: "+NAME" for a file that was renamed to NAME, "-NAME" for one that was
    /// deleted. Temporary files of atomic writes are left out.
    std::vector<std::string> events();

private:
    int m_inotify = -1;
};

} // namespace complexion
