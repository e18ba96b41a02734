// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/result.h"

#include <filesystem>

namespace complexion {

/// A new folder that only this user can enter (mode 0700), removed with everything in it when its owner goes.
class PrivateFolder {
public:
    /// Made in $TMPDIR, or in /var/tmp, which is meant for large files, where /tmp is often memory.
    static Result<PrivateFolder> create();

    PrivateFolder(PrivateFolder&& other) noexcept;
    PrivateFolder& operator=(PrivateFolder&&) = delete;
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder();

    const std::filesystem::path& path() const { return m_path; }

private:
    explicit PrivateFolder(std::filesystem::path path) : m_path(std::move(path)) {}

    std::filesystem::path m_path; // empty once moved from
};

} // namespace complexion
