// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/photo_thumbnail.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace complexion {

/// A file or folder in a list.
struct FolderEntry {
    std::string name; // the file system's bytes
    bool isFolder = false;
    std::int64_t size = 0;            // bytes; of files
    std::int64_t modifiedSeconds = 0; // since 1970; of files
    bool operator==(const FolderEntry&) const = default;
};

using EntriesFound = std::function<void(std::vector<FolderEntry>)>;

/// Lists a folder: its folders, and its files with one of `extensions` (lower case, without dot) in any
/// letter case; no hidden entries. Calls `found` first with all entries except symbolic links, and then once
/// for each link, because a link's target may be on a file system that hangs. Returns the error that ended
/// the listing.
std::error_code listFolder(const std::filesystem::path& folder, const std::vector<std::string>& extensions,
                           const EntriesFound& found);

enum class FileKind { Missing, Folder, File };

/// What a path refers to; Missing if that cannot be determined.
FileKind fileKind(const std::filesystem::path& path);

/// The panels' access to the file system. All calls are made on background threads and may block forever.
struct FileAccess {
    std::function<std::error_code(const std::filesystem::path& folder,
                                  const std::vector<std::string>& extensions, const EntriesFound& found)>
        list = listFolder;
    std::function<FileKind(const std::filesystem::path& path)> kindOf = fileKind;
    std::function<QImage(const std::filesystem::path& path, int side, const std::function<bool()>& isWanted)>
        thumbnail = photoThumbnail;
};

} // namespace complexion
