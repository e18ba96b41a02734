// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"

#include <filesystem>

namespace complexion {

/// A new folder that only this user can enter (mode 0700), removed with everything in it when its owner goes.
/// It is locked as long as the process lives, however that ends; a folder without a lock was left by a
/// process that was killed.
class PrivateFolder {
public:
    /// Made in $TMPDIR, or in /var/tmp, which is meant for large files, where /tmp is often memory. Removes
    /// the folders there that killed runs of this user have left.
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
    int m_lock;                   // a file descriptor of the folder that holds the lock; negative for none
};

} // namespace complexion
