// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/folder_listing.h"
#include "imaging/base/lower_case.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <utility>

namespace complexion {

namespace {

bool hasExtension(const std::string& name, const std::vector<std::string>& extensions) {
    const std::string extension = lowerCase(std::filesystem::path(name).extension());
    return !extension.empty() && std::ranges::count(extensions, extension.substr(1)) > 0;
}

/// The entry of that name in the open folder, following symbolic links; nullopt if it is not to be listed.
std::optional<FolderEntry> entryOf(int folder, const std::string& name,
                                   const std::vector<std::string>& extensions) {
    struct stat status = {};
    if (::fstatat(folder, name.c_str(), &status, 0) != 0)
        return std::nullopt;
    if (S_ISDIR(status.st_mode))
        return FolderEntry{.name = name, .isFolder = true};
    if (!S_ISREG(status.st_mode) || !hasExtension(name, extensions))
        return std::nullopt;
    return FolderEntry{.name = name, .size = status.st_size, .modifiedSeconds = status.st_mtim.tv_sec};
}

} // namespace

std::error_code listFolder(const std::filesystem::path& folder, const std::vector<std::string>& extensions,
                           const EntriesFound& found) {
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
    if (!open)
        return {errno, std::generic_category()};
    std::vector<FolderEntry> entries;
    std::vector<std::string> links;
    errno = 0;
    while (const dirent* const item = ::readdir(open.get())) {
        const std::string name = item->d_name;
        if (name.starts_with('.'))
            continue;
        // No fstatat for folders: another file system, which may hang, may be mounted there.
        if (item->d_type == DT_DIR)
            entries.push_back({.name = name, .isFolder = true});
        else if (item->d_type == DT_LNK || item->d_type == DT_UNKNOWN)
            links.push_back(name);
        else if (auto entry = entryOf(::dirfd(open.get()), name, extensions))
            entries.push_back(std::move(*entry));
        errno = 0;
    }
    const std::error_code error(errno, std::generic_category());
    found(std::move(entries));
    for (const std::string& name : links)
        if (auto entry = entryOf(::dirfd(open.get()), name, extensions))
            found({std::move(*entry)});
    return error;
}

FileKind fileKind(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return FileKind::Missing;
    return std::filesystem::is_directory(status) ? FileKind::Folder : FileKind::File;
}

} // namespace complexion
