// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>

namespace complexion {

using CreationDate = std::chrono::system_clock::time_point;

/// When the file was made: what an attribute of the file says (see setCreationDate), else the birth time that
/// the file system keeps, else the modification time. Nothing when the file's attributes cannot be read.
std::optional<CreationDate> creationDate(const std::filesystem::path& path);

/// Keeps `date` as the file's creation date where its file system has a place for one: the date itself on
/// NTFS and on network shares (SMB), the extended attribute "user.crtime_usec" elsewhere, because a birth
/// time can be read and not set. False when there is no such place or it cannot be written. Leaves the
/// modification time alone.
bool setCreationDate(const std::filesystem::path& path, CreationDate date);

} // namespace complexion
