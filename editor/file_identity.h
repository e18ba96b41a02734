// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace complexion {

/// Identifies a file and its version: equal if a path still refers to the same, unchanged file.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedNanoseconds = 0; // since 1970
    std::int64_t changedNanoseconds = 0;
    bool operator==(const FileIdentity&) const = default;
};

/// Of the file at `path`; nothing if there is none.
std::optional<FileIdentity> identify(const std::filesystem::path& path);
/// Of an open file.
std::optional<FileIdentity> identify(int descriptor);

} // namespace complexion
