// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"

#include <filesystem>

namespace complexion {

/// A new folder that only this user can access (mode 0700). The destructor removes it with its contents. The
/// folder is locked while the process lives; an unlocked one was left behind by a process that was killed.
class PrivateFolder {
public:
    /// Creates the folder in $TMPDIR, or in /var/tmp, which is meant for large files (/tmp is often in
    /// memory). Removes the folders there that killed runs of this user left behind. An error if none can be
    /// created.
    static Result<PrivateFolder> create();

    PrivateFolder(PrivateFolder&& other) noexcept;
    PrivateFolder& operator=(PrivateFolder&&) = delete;
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder();

    const std::filesystem::path& path() const { return m_path; }

private:
    PrivateFolder(std::filesystem::path path, int lock) : m_path(std::move(path)), m_lock(lock) {}

    std::filesystem::path m_path; // empty once moved from
    int m_lock;                   // the locked folder's file descriptor; negative if it could not be opened
};

} // namespace complexion
