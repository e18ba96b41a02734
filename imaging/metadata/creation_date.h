// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>

namespace complexion {

using CreationDate = std::chrono::system_clock::time_point;

/// The file's creation date: from an attribute of the file (see setCreationDate), else the file system's
/// birth time, else the modification time. nullopt if the file's attributes cannot be read.
std::optional<CreationDate> creationDate(const std::filesystem::path& path);

/// Stores `date` as the file's creation date: natively on NTFS and SMB shares, elsewhere in the extended
/// attribute "user.crtime_usec", because the birth time cannot be set. False if the file system supports
/// neither or writing fails. Does not change the modification time.
bool setCreationDate(const std::filesystem::path& path, CreationDate date);

} // namespace complexion
